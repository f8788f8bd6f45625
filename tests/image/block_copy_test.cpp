#include "image/block_copy.h"

#include "image/resize.h"
#include "support/block_check.h"

#include <gtest/gtest.h>

#include <utility>

namespace vellumcaster {
namespace {

using namespace format_code;
using namespace testing_support;

HRESULT Copy(Inputs inputs, BYTE* pDst, const BlockCase& block) {
    return CPictureFormats::CopyBlock(inputs[0], pDst, &block.a, &block.b, &block.inA, &block.inB);
}

/// Blocks of one size are copied, whatever the way in which others would be scaled.
HRESULT ResizeToTheSameSize(Inputs inputs, BYTE* pDst, const BlockCase& block) {
    return Img_Resize(inputs[0], pDst, &block.a, &block.b, &block.inA, &block.inB, 99, nullptr, 9);
}

TEST(CopyBlock, CopiesWhatLiesInBothPicturesInEveryFormat) {
    const auto rule = [](BYTE, std::span<const BYTE> in) { return in[0]; };
    CBlockCheck copied(rule, Copy, 1), resized(rule, ResizeToTheSameSize, 1);
    const std::pair<RECT, RECT> places[] = {{{0, 0, 8, 6}, {2, 2, 10, 8}},
                                            {{2, 2, 6, 6}, {12, 8, 16, 12}},
                                            {{0, 0, 8, 6}, {-4, -2, 4, 4}},
                                            {{-2, 0, 8, 6}, {0, 0, 10, 6}},
                                            {{0, 0, 8, 6}, {14, 0, 22, 6}}};
    for (const std::uint32_t code : processedFormats)
        for (const int order : {-1, 1})
            for (const auto& [inA, inB] : places) {
                const BlockCase block{{code, 8, 6 * order, 10}, {code, 14, 10 * order, 0}, inA, inB};
                EXPECT_EQ(copied.FirstFailure(block), std::nullopt);
                EXPECT_EQ(resized.FirstFailure(block), std::nullopt);
            }
}

TEST(CopyBlock, KeepsRowsInTheOrderInWhichTheyLie) {
    const PictureFormat topDown{RGB32, 1, -2, 0};
    const PictureFormat bottomUp{RGB32, 1, 2, 0};
    const std::vector<BYTE> src{1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<BYTE> dst(8);
    ASSERT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &topDown, &bottomUp, nullptr, nullptr), S_OK);
    EXPECT_EQ(dst, src);
    const PictureFormat argb{ARGB32, 1, -2, 0};
    EXPECT_EQ(CPictureFormats::CopyBlock(src.data(), dst.data(), &topDown, &argb, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(CPictureFormats::CopyBlock(nullptr, dst.data(), &topDown, &argb, nullptr, nullptr), E_INVALIDARG);
}

} // namespace
} // namespace vellumcaster
