#include "image/copy_frame.h"

#include "image/guarded_memory.h"
#include "image/plane_layout.h"
#include "support/page_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace vellumcaster {
namespace {

using namespace format_code;
using Bytes = std::vector<BYTE>;

Bytes Ramp(std::size_t cb) {
    Bytes bytes(cb);
    std::iota(bytes.begin(), bytes.end(), BYTE{1});
    return bytes;
}

TEST(CopyFrame, BringsRowOrdersAndStridesTogether) {
    const PictureFormat bottomUp{RGB24, 2, 2, 3}; // rows of 9 bytes: not rounded
    const PictureFormat topDown{RGB24, 2, -3, 2}; // rows of 6 bytes
    const Bytes src = Ramp(18);
    Bytes dst(18, 0);
    ASSERT_EQ(CopyFrame(&bottomUp, &topDown, src.data(), dst.data()), S_OK);
    EXPECT_EQ(dst, (Bytes{10, 11, 12, 13, 14, 15, 1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0}));

    // Between two bottom-up frames of different height it is the upper rows that are kept.
    const PictureFormat higher{RGB24, 2, 3, 2};
    Bytes dstHigher(18, 0);
    ASSERT_EQ(CopyFrame(&bottomUp, &higher, src.data(), dstHigher.data()), S_OK);
    EXPECT_EQ(dstHigher, (Bytes{0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 10, 11, 12, 13, 14, 15}));
}

TEST(CopyFrame, SkipsTheRowsOfEachPlaneThatAreNotCopied) {
    const PictureFormat large{YV12, 4, 4, 6};
    const PictureFormat small{YV12, 2, 2, 0};
    const Bytes src = Ramp(36);
    Bytes dst(6, 0);
    ASSERT_EQ(CopyFrame(&large, &small, src.data(), dst.data()), S_OK);
    EXPECT_EQ(dst, (Bytes{1, 2, 7, 8, 25, 31}));

    Bytes back(36, 0);
    ASSERT_EQ(CopyFrame(&small, &large, dst.data(), back.data()), S_OK);
    Bytes expected(36, 0);
    expected[0] = 1, expected[1] = 2, expected[6] = 7, expected[7] = 8, expected[24] = 25, expected[30] = 31;
    EXPECT_EQ(back, expected);
}

TEST(CopyFrame, NamesWhatKeepsItFromCopying) {
    const PictureFormat rgb{RGB32, 1, 1, 1};
    const PictureFormat argb{ARGB32, 1, 1, 1};
    Bytes a(4, 1);
    Bytes b(4, 0);
    for (const int missing : {0, 1, 2, 3})
        EXPECT_EQ(CopyFrame(missing == 0 ? nullptr : &rgb, missing == 1 ? nullptr : &rgb,
                            missing == 2 ? nullptr : a.data(), missing == 3 ? nullptr : b.data()),
                  E_INVALIDARG);
    EXPECT_EQ(CopyFrame(&rgb, &argb, a.data(), b.data()), static_cast<HRESULT>(0x80040248));
}

TEST(CopyFrame, StopsAtARowThatCannotBeReached) {
    testing_support::CPageBuffer src(2);
    std::fill(src.Begin(), src.End(), BYTE{7});
    src.ForbidPage(1);
    const PictureFormat pf{RGB32, 512, -4, 512}; // two rows a page
    const PictureFormat withGaps{RGB32, 512, -4, 513};
    for (const PictureFormat& pfDst : {pf, withGaps}) {
        Bytes dst(CPictureFormats::GetBufferSize(pfDst), 0);
        EXPECT_EQ(CopyFrame(&pf, &pfDst, src.Begin(), dst.data()), E_UNEXPECTED);
        const std::size_t cbRow = pfDst.nStride * 4;
        for (const std::size_t row : {0, 1})
            EXPECT_TRUE(std::all_of(&dst[row * cbRow], &dst[row * cbRow + 2048], [](BYTE b) { return b == 7; })) << row;
    }
    Bytes dst(cbPage, 0);
    EXPECT_FALSE(SEH_CopyMemory(dst.data(), src.Begin() + cbPage, 1));
    EXPECT_TRUE(SEH_CopyMemory(dst.data(), src.Begin(), cbPage));
}

} // namespace
} // namespace vellumcaster
