#pragma once

#include "platform/kernel/fault_guard.h"
#include "support/guarded_buffer.h"
#include "support/page_buffer.h"

#include <functional>
#include <memory>

namespace vellumcaster::testing_support {

/// The streams that a kernel only reads.
using Inputs = std::span<const BYTE* const>;

/// A kernel on plain memory: changes `cb` bytes in place, each by what the inputs hold at the same place.
using RowKernel = std::function<void(BYTE* pInOut, Inputs inputs, std::size_t cb)>;

/// Puts a kernel next to a reference: random bytes between guards, every width at which the last bytes are taken
/// another way, every alignment, and the edge of what memory can be touched at all.
class CKernelCheck {
public:
    CKernelCheck(RowKernel reference, RowKernel kernel, std::size_t nInputs, std::uint64_t seed = FreshSeed())
        : m_Reference(std::move(reference)), m_Kernel(std::move(kernel)), m_nInputs(nInputs), m_Seed(seed) {}

    /// \return the first place at which the kernel is wrong, with the seed that leads there again; or nothing.
    [[nodiscard]] std::optional<std::string> FirstFailure() {
        for (const std::size_t cb : Widths()) {
            for (std::size_t offset = 0; offset <= largestOffset; ++offset)
                if (const auto failure = Compare(cb, offset)) return Describe(cb, offset, *failure);
            if (TouchesOutside(cb, false)) return Describe(cb, 0, "touches memory before the first byte");
            if (TouchesOutside(cb, true)) return Describe(cb, 0, "touches memory behind the last byte");
        }
        return std::nullopt;
    }

private:
    static constexpr std::size_t largestOffset = 33;

    static std::vector<std::size_t> Widths() {
        std::vector<std::size_t> widths{127, 128, 129, 480, 383, 384, 385, 447, 448, 449, 1920, 4095};
        for (std::size_t cb = 0; cb <= 67; ++cb)
            widths.push_back(cb);
        return widths;
    }

    std::string Describe(std::size_t cb, std::size_t offset, const std::string& failure) const {
        return "seed " + std::to_string(m_Seed) + ", " + std::to_string(cb) + " bytes at offset " +
               std::to_string(offset) + ": " + failure;
    }

    std::optional<std::string> Compare(std::size_t cb, std::size_t offset) {
        std::vector<CGuardedBuffer> inputs;
        std::vector<const BYTE*> pointers;
        for (std::size_t i = 0; i < m_nInputs; ++i) // every input at another distance from the first
            inputs.emplace_back(cb, (offset * (i + 2) + 5 * i + cb) % (largestOffset + 1), m_Seed + i);
        for (CGuardedBuffer& input : inputs)
            pointers.push_back(input.Data());
        const std::vector<CGuardedBuffer> before = inputs;
        CGuardedBuffer got(cb, offset, m_Seed + m_nInputs);
        CGuardedBuffer want = got;
        m_Reference(want.Data(), pointers, cb);
        m_Kernel(got.Data(), pointers, cb);
        for (std::size_t i = 0; i < m_nInputs; ++i)
            if (const auto difference = inputs[i].DifferenceFrom(before[i])) return "input, " + *difference;
        return got.DifferenceFrom(want);
    }

    bool TouchesOutside(std::size_t cb, bool bAtEnd) {
        if (cb > cbPage) return false;
        std::vector<const BYTE*> pointers;
        for (std::size_t i = 0; i <= m_nInputs; ++i) {
            if (m_Pages.size() <= i) m_Pages.push_back(std::make_unique<CPageBuffer>(1));
            pointers.push_back(bAtEnd ? m_Pages[i]->End() - cb : m_Pages[i]->Begin());
        }
        BYTE* pInOut = const_cast<BYTE*>(pointers.back());
        pointers.pop_back();
        return CallGuarded([&] { m_Kernel(pInOut, pointers, cb); }) != faultNone;
    }

    RowKernel m_Reference;
    RowKernel m_Kernel;
    std::size_t m_nInputs;
    std::uint64_t m_Seed;
    std::vector<std::unique_ptr<CPageBuffer>> m_Pages;
};

} // namespace vellumcaster::testing_support
