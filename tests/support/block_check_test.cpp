#include "support/block_check.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellumcaster::testing_support {
namespace {

/// Adds the rows of a top-down RGB24 block to those of another picture; each fault of its own is switched on.
struct Adder {
    LONG nRowsTooMany = 0;
    std::size_t nBytesTooMany = 0;
    std::size_t cbMissingInPitch = 0;
    bool bMindsTheRowOrder = true;
    bool bClips = true;

    HRESULT operator()(Inputs inputs, BYTE* pInOut, const BlockCase& block) const {
        RECT a = block.inA;
        RECT b = block.inB;
        if (bClips) {
            const LONG before = std::max({0, -a.left, -b.left});
            a.left += before, b.left += before;
        }
        if (a.left >= a.right) return S_FALSE;
        const auto pitch = [](const PictureFormat& pf) { return std::size_t{EffectiveStride(pf)} * 3; };
        const bool bUpward = block.b.nHeight > 0 && bMindsTheRowOrder;
        for (LONG y = 0; y < a.bottom - a.top + nRowsTooMany; ++y) {
            const LONG rowB = bUpward ? block.b.nHeight - 1 - (b.top + y) : b.top + y;
            const BYTE* pFrom = inputs[0] + std::size_t(a.top + y) * pitch(block.a) + std::size_t(a.left) * 3;
            BYTE* pTo = pInOut + std::size_t(rowB) * (pitch(block.b) - cbMissingInPitch) + std::size_t(b.left) * 3;
            for (std::size_t i = 0; i < std::size_t(a.right - a.left) * 3 + nBytesTooMany; ++i)
                pTo[i] = static_cast<BYTE>(pTo[i] + pFrom[i]);
        }
        return S_OK;
    }
};

// Widths whose rows are multiples of four, so that the pitch is plain.
constexpr PictureFormat overlay{format_code::RGB24, 8, -6, 0};
constexpr BlockCase cases[] = {
    {overlay, {format_code::RGB24, 12, -9, 16}, {1, 1, 7, 5}, {3, 2, 9, 6}},
    {overlay, {format_code::RGB24, 12, 9, 16}, {1, 1, 7, 5}, {3, 2, 9, 6}},
    {overlay, {format_code::RGB24, 12, -9, 0}, {0, 0, 8, 6}, {-3, 0, 5, 6}},
    {overlay, {format_code::RGB24, 12, -9, 0}, {0, 0, 8, 6}, {-8, 0, 0, 6}},
};

std::optional<std::string> Check(const Adder& adder) {
    const ByteRule rule = [](BYTE dst, std::span<const BYTE> inputs) { return static_cast<BYTE>(dst + inputs[0]); };
    CBlockCheck check(rule, adder, 1);
    for (const BlockCase& block : cases)
        if (const auto failure = check.FirstFailure(block)) return failure;
    return std::nullopt;
}

TEST(BlockCheck, LetsAnExactOperationPass) { EXPECT_EQ(Check({}), std::nullopt); }

TEST(BlockCheck, RefusesEveryBrokenOperation) {
    const struct {
        const char* pszName;
        Adder adder;
    } broken[] = {
        {"one row too many", {.nRowsTooMany = 1}},
        {"one row too few", {.nRowsTooMany = -1}},
        {"one byte too many in a row", {.nBytesTooMany = 1}},
        {"a pitch without the padding", {.cbMissingInPitch = 12}},
        {"rows in the order of memory", {.bMindsTheRowOrder = false}},
        {"no clipping", {.bClips = false}},
    };
    for (const auto& c : broken) {
        const std::optional<std::string> told = Check(c.adder);
        ASSERT_TRUE(told) << c.pszName;
        EXPECT_NE(told->find("seed "), std::string::npos) << *told;
    }
}

} // namespace
} // namespace vellumcaster::testing_support
