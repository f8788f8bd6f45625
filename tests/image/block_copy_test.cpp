#include "image/block_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace vellumcaster {
namespace {

using namespace format_code;
using Bytes = std::vector<BYTE>;

/// Bytes that are all different as far as a byte goes.
Bytes Ramp(std::size_t cb, BYTE first = 1) {
    Bytes bytes(cb);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

TEST(CopyBlock, MovesAnRgbBlockInMemoryOrder) {
    const PictureFormat a{RGB24, 3, -2, 0}; // pitch 12
    const PictureFormat b{RGB24, 4, -3, 0}; // pitch 12
    const Bytes src = Ramp(24);
    const RECT inA{1, 0, 3, 2};
    const RECT inB{3, 1, 5, 3}; // one column hangs over the right edge
    Bytes dst(36, 0);
    ASSERT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &a, &b, &inA, &inB), S_OK);
    Bytes expected(36, 0);
    for (const std::size_t y : {0u, 1u})
        std::copy_n(src.begin() + static_cast<std::ptrdiff_t>(y * 12 + 3), 3,
                    expected.begin() + static_cast<std::ptrdiff_t>((y + 1) * 12 + 9));
    EXPECT_EQ(dst, expected);

    // Row orders are not brought together: the first row in memory stays the first.
    const PictureFormat bottomUp{RGB24, 3, 2, 0};
    Bytes same(24, 0);
    ASSERT_EQ(CPictureFormats::CopyBlock(src.data(), same.data(), &a, &bottomUp, nullptr, nullptr), S_OK);
    EXPECT_EQ(Bytes(same.begin(), same.begin() + 9), Bytes(src.begin(), src.begin() + 9));
}

TEST(CopyBlock, TakesTheChromaOfAPlanarBlockAlong) {
    const PictureFormat pf{I420, 4, 4, 0};
    const Bytes src = Ramp(24);
    const RECT lowerRight{2, 2, 4, 4};
    const RECT upperLeft{0, 0, 2, 2};
    Bytes dst(24, 0);
    ASSERT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &pf, &pf, &lowerRight, &upperLeft), S_OK);
    Bytes expected(24, 0);
    expected[0] = src[10], expected[1] = src[11], expected[4] = src[14], expected[5] = src[15];
    expected[16] = src[19];
    expected[20] = src[23];
    EXPECT_EQ(dst, expected);
}

TEST(CopyBlock, AnswersWhatKeepsItFromCopying) {
    const PictureFormat rgb{RGB32, 4, 4, 0};
    const PictureFormat argb{ARGB32, 4, 4, 0};
    const PictureFormat refused{YUY2, 3, 4, 0};
    const RECT outside{4, 0, 8, 4};
    const RECT whole{0, 0, 4, 4};
    const Bytes src(64, 1);
    Bytes dst(64, 0);
    EXPECT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &rgb, &argb, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &refused, &refused, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &rgb, &rgb, &whole, &outside), S_FALSE);
    EXPECT_EQ(CPictureFormats::CopyBlock(nullptr, dst.data(), &rgb, &rgb, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(dst, Bytes(64, 0));
}

} // namespace
} // namespace vellumcaster
