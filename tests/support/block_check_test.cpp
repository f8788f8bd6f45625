#include "support/block_check.h"

#include "image/block_copy.h"

#include <gtest/gtest.h>

namespace vellumcaster::testing_support {
namespace {

using Spoil = void (*)(BlockCase&);

constexpr PictureFormat block{format_code::RGB24, 9, -6, 0};
constexpr BlockCase cases[] = {
    {block, {format_code::RGB24, 12, -9, 17}, {1, 1, 7, 5}, {3, 2, 9, 6}},
    {{format_code::RGB24, 9, 6, 0}, {format_code::RGB24, 12, 9, 17}, {1, 1, 7, 5}, {3, 2, 9, 6}},
    {block, {format_code::RGB24, 12, -9, 0}, {0, 0, 8, 6}, {-3, 0, 5, 6}},
    {block, {format_code::RGB24, 12, -9, 0}, {0, 0, 8, 6}, {-8, 0, 0, 6}},
};

/// What is told of a copy that takes each case for another.
std::optional<std::string> Told(Spoil spoil) {
    const BlockOperation copy = [spoil](Inputs inputs, BYTE* pDst, const BlockCase& given) {
        BlockCase c = given;
        spoil(c);
        return CPictureFormats::CopyBlock(inputs[0], pDst, &c.a, &c.b, &c.inA, &c.inB);
    };
    CBlockCheck check([](BYTE, std::span<const BYTE> in) { return in[0]; }, copy, 1);
    for (const BlockCase& c : cases)
        if (const auto failure = check.FirstFailure(c)) return failure;
    return std::nullopt;
}

TEST(BlockCheck, RefusesEveryBrokenOperationAndNoOther) {
    EXPECT_EQ(Told([](BlockCase&) {}), std::nullopt);
    const Spoil spoils[] = {
        // a row too many, one too few, a pixel too many, no padding, another row order, no clipping
        [](BlockCase& c) { ++c.inA.bottom, ++c.inB.bottom; },
        [](BlockCase& c) { --c.inA.bottom, --c.inB.bottom; },
        [](BlockCase& c) { ++c.inA.right, ++c.inB.right; },
        [](BlockCase& c) { c.b.nStride = 0; },
        [](BlockCase& c) { c.b.nHeight = -std::abs(c.b.nHeight); },
        [](BlockCase& c) { c.inB.left = std::max(c.inB.left, 0), c.inB.right = c.inB.left + c.inA.right - c.inA.left; },
    };
    for (const Spoil spoil : spoils)
        EXPECT_NE(Told(spoil).value_or("nothing").find("seed "), std::string::npos) << &spoil - spoils;
}

} // namespace
} // namespace vellumcaster::testing_support
