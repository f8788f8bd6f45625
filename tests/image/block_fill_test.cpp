#include "image/block_fill.h"
#include "image/plane_layout.h"
#include "support/guarded_buffer.h"
#include "support/pixel_model.h"

#include <gtest/gtest.h>

#include <utility>

namespace vellumcaster::CPictureFormats {
namespace {

using namespace format_code;
using testing_support::CGuardedBuffer;
using testing_support::PixelSamples;

constexpr std::uint32_t red = 0x000000FF;

TEST(FillBlock, ColoursThePixelsOfTheBlockDrawnInToEvenCoordinates) {
    const std::pair<std::uint32_t, PixelSamples> colors[] = {{0xAA3264C8, {123, 91, 175, 50, 100, 200, 255}},
                                                             {red, {82, 90, 240, 0, 0, 255, 255}},
                                                             {0x00FFFFFF, {235, 128, 128, 255, 255, 255, 255}}};
    // The block asked for in a picture of 8 x 6 pixels, and the block that is to be written.
    const std::pair<RECT, RECT> blocks[] = {
        {{1, 1, 4, 4}, {2, 2, 4, 4}}, {{-3, -1, 5, 3}, {0, 0, 4, 2}},
        {{2, 0, 7, 9}, {2, 0, 6, 6}}, {{7, 0, 12, 9}, {8, 0, 8, 6}},
        {{2, 2, 2, 2}, {2, 2, 2, 2}}, {{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, {0, 0, 8, 6}}};
    for (const std::uint32_t code : testing_support::processedFormats)
        for (const PictureFormat& pf : {PictureFormat{code, 8, 6, 0}, PictureFormat{code, 8, -6, 14}})
            for (const auto& [asked, written] : blocks)
                for (const auto& [color, samples] : colors) {
                    CGuardedBuffer got(GetBufferSize(pf), 0, 1);
                    CGuardedBuffer want = got;
                    testing_support::CPictureModel model(pf, want.Data());
                    for (LONG y = written.top; y < written.bottom; ++y)
                        for (LONG x = written.left; x < written.right; ++x)
                            model.Write(x, y, samples);
                    const HRESULT hr = written.left == written.right ? S_FALSE : S_OK;
                    EXPECT_EQ(FillBlock(got.Data(), &pf, color, &asked), hr);
                    EXPECT_EQ(got.DifferenceFrom(want).value_or(""), "") << std::hex << code << " at " << asked.left;
                }
}

TEST(FillBlock, ReachesTheLastColumnAndRowOfAnOddPicture) {
    const PictureFormat pf{RGB24, 5, -5, 0};
    const RECT beyond{0, 0, 6, 6};
    std::vector<BYTE> frame(GetBufferSize(pf), 0x5A);
    EXPECT_EQ(FillBlock(frame.data(), &pf, 0x00FFFFFF, &beyond), S_OK);
    EXPECT_EQ(std::count(frame.begin(), frame.end(), 0xFF), 5 * 5 * 3);
}

TEST(FillBlock, RefusesBadArguments) {
    const PictureFormat pf{RGB24, 4, 4, 0};
    const PictureFormat refused{YUY2, 3, 4, 0};
    const RECT crossed{3, 0, 2, 4};
    std::vector<BYTE> frame(64, 0);
    EXPECT_EQ(FillBlock(nullptr, &pf, red, nullptr), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), nullptr, red, nullptr), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), &refused, red, nullptr), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), &pf, red, &crossed), E_INVALIDARG);
    EXPECT_EQ(frame, std::vector<BYTE>(64, 0));
}

} // namespace
} // namespace vellumcaster::CPictureFormats
