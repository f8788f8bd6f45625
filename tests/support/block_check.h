#pragma once

#include "support/kernel_check.h"
#include "support/picture_pixels.h"

#include <vellumcaster/results.h>

namespace vellumcaster::testing_support {

/// A block of picture `a` laid over its place in picture `b`, without scaling.
struct BlockCase {
    PictureFormat a;
    PictureFormat b;
    RECT inA;
    RECT inB;
};

/// What becomes of one byte of `b`, given the byte at its place in each input; the inputs are all laid out as `a`.
using ByteRule = std::function<BYTE(BYTE dst, std::span<const BYTE> inputs)>;

using BlockOperation = std::function<HRESULT(Inputs inputs, BYTE* pInOut, const BlockCase& block)>;

/// Puts an operation on blocks next to a rule for single bytes. The picture is walked pixel by pixel, so that row
/// orders, padding, planes and clipping are all told by the pixels alone.
class CBlockCheck {
public:
    CBlockCheck(ByteRule rule, BlockOperation operation, std::size_t nInputs, std::uint64_t seed = FreshSeed())
        : m_Rule(std::move(rule)), m_Operation(std::move(operation)), m_nInputs(nInputs), m_Seed(seed) {}

    /// \return the first place at which the operation is wrong, with the seed that leads there again; or nothing.
    [[nodiscard]] std::optional<std::string> FirstFailure(const BlockCase& block) {
        if (const auto failure = Compare(block)) return Describe(block, *failure);
        return std::nullopt;
    }

private:
    std::optional<std::string> Compare(const BlockCase& block) {
        std::vector<CGuardedBuffer> inputs;
        std::vector<const BYTE*> pointers;
        for (std::size_t i = 0; i < m_nInputs; ++i)
            inputs.emplace_back(CPicturePixels(block.a).Size(), 0, m_Seed + i);
        for (CGuardedBuffer& input : inputs)
            pointers.push_back(input.Data());
        CGuardedBuffer got(CPicturePixels(block.b).Size(), 0, m_Seed + m_nInputs);
        CGuardedBuffer want = got;
        const HRESULT hrWant = ApplyRule(block, pointers, want.Data()) ? S_OK : S_FALSE;

        const HRESULT hr = m_Operation(pointers, got.Data(), block);
        if (hr != hrWant) return "result " + std::to_string(hr) + ", want " + std::to_string(hrWant);
        return got.DifferenceFrom(want);
    }

    /// \return whether there was a pixel that lies in both pictures.
    bool ApplyRule(const BlockCase& block, Inputs inputs, BYTE* pInOut) const {
        CPicturePixels a(block.a);
        CPicturePixels b(block.b);
        std::vector<BYTE> bytes(m_nInputs);
        bool bAny = false;
        for (LONG y = 0; y < block.inA.bottom - block.inA.top; ++y)
            for (LONG x = 0; x < block.inA.right - block.inA.left; ++x) {
                const LONG xA = block.inA.left + x, yA = block.inA.top + y;
                const LONG xB = block.inB.left + x, yB = block.inB.top + y;
                if (!a.Contains(xA, yA) || !b.Contains(xB, yB)) continue;
                bAny = true;
                const auto from = a.BytesOf(static_cast<std::size_t>(xA), static_cast<std::size_t>(yA));
                const auto to = b.BytesOf(static_cast<std::size_t>(xB), static_cast<std::size_t>(yB));
                for (std::size_t i = 0; i < to.size(); ++i) {
                    for (std::size_t k = 0; k < m_nInputs; ++k)
                        bytes[k] = inputs[k][from[i]];
                    pInOut[to[i]] = m_Rule(pInOut[to[i]], bytes);
                }
            }
        return bAny;
    }

    std::string Describe(const BlockCase& block, const std::string& failure) const {
        const auto picture = [](std::ostream& os, const PictureFormat& pf, const RECT& rc) {
            os << std::hex << pf.dwFormat << std::dec << " " << pf.nWidth << "x" << pf.nHeight << " stride "
               << pf.nStride << " (" << rc.left << "," << rc.top << "," << rc.right << "," << rc.bottom << ")";
        };
        std::ostringstream text;
        text << "seed " << m_Seed << ", ";
        picture(text, block.a, block.inA);
        picture(text << " on ", block.b, block.inB);
        text << ": " << failure;
        return text.str();
    }

    ByteRule m_Rule;
    BlockOperation m_Operation;
    std::size_t m_nInputs;
    std::uint64_t m_Seed;
};

} // namespace vellumcaster::testing_support
