#include "image/resize.h"

#include "image/clip_rects.h"
#include "image/plane_layout.h"
#include "image/primitives/primitives.h"
#include "image/resample_plane.h"
#include "support/allocation_counter.h"
#include "support/guarded_buffer.h"
#include "support/pixel_model.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

using namespace format_code;
using testing_support::CGuardedBuffer;
using testing_support::CPictureModel;
using testing_support::IsPackedYuv;
using testing_support::IsRgb;
using testing_support::PixelSamples;

struct ResizeCase {
    PictureFormat from, to;
    std::optional<RECT> rcFrom, rcTo;
    std::int32_t nMode, nSharpen;

    [[nodiscard]] const RECT* From() const { return rcFrom ? &*rcFrom : nullptr; }
    [[nodiscard]] const RECT* To() const { return rcTo ? &*rcTo : nullptr; }
};

using Bytes = std::vector<BYTE>;
std::size_t Area(PrimSize size) { return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height); }

/// One sample of a picture's pixels as a plane of its own, rows as they lie in memory.
struct SamplePlane {
    CPictureModel picture;
    const PictureFormat& pf;
    PrimRect area;
    int PixelSamples::*sample;
    int xShift, yShift;

    [[nodiscard]] PrimSize Size() const { return {area.width >> xShift, area.height >> yShift}; }

    template <class Visitor>
    void Visit(Visitor visit) {
        for (LONG y = 0; y < Size().height; ++y)
            for (LONG x = 0; x < Size().width; ++x) {
                const LONG row = ((area.y >> yShift) + y) << yShift, column = ((area.x >> xShift) + x) << xShift;
                const LONG fromTop = IsRgb(pf.dwFormat) && pf.nHeight > 0 ? pf.nHeight - 1 - row : row;
                PixelSamples pixel = picture.Read(column, fromTop);
                visit(pixel.*sample);
                picture.Write(column, fromTop, pixel);
            }
    }
    Bytes Read() {
        Bytes bytes;
        Visit([&](int& value) { bytes.push_back(static_cast<BYTE>(value)); });
        return bytes;
    }
};

PrimRect InMemory(const PictureFormat& pf, const RECT& rc) {
    const LONG y = IsRgb(pf.dwFormat) && pf.nHeight > 0 ? pf.nHeight - rc.bottom : rc.top;
    return {rc.left, y, rc.right - rc.left, rc.bottom - rc.top};
}

/// Scales one plane by the primitives. `block` lies in `source`; what they leave of `target` stays as it was.
void ScalePlane(const ResizeCase& c, const Bytes& source, PrimSize srcSize, PrimRect block, Bytes& target,
                PrimSize size, double xFactor, double yFactor, bool bChroma) {
    const BYTE* pBlock = source.data() + std::ptrdiff_t{block.y} * srcSize.width + block.x;
    const auto primitive = [&](std::int32_t interpolation) {
        return ippiResize_8u_C1R(source.data(), srcSize, srcSize.width, block, target.data(), size.width, size, xFactor,
                                 yFactor, interpolation);
    };
    if (bChroma) {
        ASSERT_EQ(primitive(c.nMode == 32 || c.nMode == 1 ? 1 : 2), 0);
        return;
    }
    if (c.nMode == 35) {
        const ResampleParams params{c.nSharpen != 0 ? 64 : 67};
        const PrimSize mid{block.width, size.height};
        Bytes rows(Area(mid));
        ASSERT_EQ(ResamplePlane(pBlock, rows.data(), mid.width, block.height, mid.width, mid.height, srcSize.width, 0,
                                &params, nullptr),
                  S_OK);
        ASSERT_EQ(ippiResize_8u_C1R(rows.data(), mid, mid.width, {0, 0, mid.width, mid.height}, target.data(),
                                    size.width, size, xFactor, 1.0, 4),
                  0);
    } else if (c.nMode >= 64 && !IsRgb(c.from.dwFormat)) {
        const ResampleParams params{c.nMode};
        ASSERT_EQ(ResamplePlane(pBlock, target.data(), block.width, block.height, size.width, size.height,
                                srcSize.width, 0, &params, nullptr),
                  S_OK);
    } else {
        const std::int32_t named[] = {1, 2, xFactor <= 1 && yFactor <= 1 ? 8 : 4};
        ASSERT_EQ(primitive(c.nMode >= 64 ? 4 : c.nMode >= 32 ? named[c.nMode - 32] : c.nMode), 0);
    }
    if (c.nSharpen == 0 || size.width < 3 || size.height < 3) return;
    const Bytes before = target;
    const std::int32_t n = std::clamp(c.nSharpen, -50, 50), w = size.width;
    const std::int32_t m = n > 0 ? 60 - n : n + 52, e = n > 0 ? -1 : 2, k = n > 0 ? -1 : 1;
    const std::int32_t kernel[] = {k, e, k, e, m, e, k, e, k};
    ASSERT_EQ(ippiFilter_8u_C1R(before.data() + w + 1, w, target.data() + w + 1, w, {w - 2, size.height - 2}, kernel,
                                {3, 3}, {1, 1}, n > 0 ? m - 8 : m + 12),
              0);
}

void ScaleByPlanes(const ResizeCase& c, BYTE* pSrc, BYTE* pDst, const RECT& rcFrom, const RECT& rcTo) {
    const PrimRect from = InMemory(c.from, rcFrom), to = InMemory(c.to, rcTo);
    // Planes that are unpacked hold the block alone; else neighbours of the block are seen, too.
    const bool bPacked = IsPackedYuv(c.from.dwFormat);
    const PrimRect seen = bPacked ? from : PrimRect{0, 0, c.from.nWidth, static_cast<LONG>(RowCount(c.from))};
    const auto scale = [&](int PixelSamples::*sample, bool bChroma) {
        const int xShift = bChroma, yShift = bChroma && !bPacked;
        SamplePlane source{{c.from, pSrc}, c.from, seen, sample, xShift, yShift};
        SamplePlane target{{c.to, pDst}, c.to, to, sample, xShift, yShift};
        Bytes bytes = target.Read();
        ScalePlane(
            c, source.Read(), source.Size(),
            {(from.x - seen.x) >> xShift, (from.y - seen.y) >> yShift, from.width >> xShift, from.height >> yShift},
            bytes, target.Size(), static_cast<double>(to.width) / from.width,
            static_cast<double>(to.height) / from.height, bChroma);
        target.Visit([next = bytes.begin()](int& value) mutable { value = *next++; });
    };
    if (IsRgb(c.from.dwFormat))
        for (const auto sample : {&PixelSamples::b, &PixelSamples::g, &PixelSamples::r, &PixelSamples::a})
            scale(sample, false);
    else
        scale(&PixelSamples::y, false), scale(&PixelSamples::u, true), scale(&PixelSamples::v, true);
}

/// Once with memory of its own and once with the caller's, exactly as much as is promised.
void Check(const ResizeCase& c, bool bByPlanes = true) {
    SCOPED_TRACE(testing::Message() << std::hex << c.from.dwFormat << std::dec << ", " << c.from.nWidth << "x"
                                    << c.from.nHeight << ", mode " << c.nMode << ", sharpen " << c.nSharpen);
    CGuardedBuffer source(CPictureFormats::GetBufferSize(c.from), 0, 1);
    const CGuardedBuffer sourceBefore = source;
    CGuardedBuffer got(CPictureFormats::GetBufferSize(c.to), 0, 2);
    CGuardedBuffer gotWithWork = got, want = got;
    CGuardedBuffer work(CPictureFormats::GetScratchSize(c.from, c.to), 0, 3);
    CGuardedBuffer workWant = work;
    RECT rcFrom, rcTo;
    ASSERT_EQ(CPictureFormats::ClipRects(&c.from, &c.to, &rcFrom, &rcTo, true, c.From(), c.To()), S_OK);
    const auto resize = [&](CGuardedBuffer& target, void* pWork) {
        return Img_Resize(source.Data(), target.Data(), &c.from, &c.to, c.From(), c.To(), c.nMode, pWork, c.nSharpen);
    };
    EXPECT_EQ(resize(got, nullptr), S_OK);
    EXPECT_EQ(resize(gotWithWork, work.Data()), S_OK);
    EXPECT_EQ(gotWithWork.DifferenceFrom(got).value_or(""), "");
    EXPECT_EQ(source.DifferenceFrom(sourceBefore).value_or(""), "");
    std::copy_n(work.Data(), work.Size(), workWant.Data()); // what is in it is its own business
    EXPECT_EQ(work.DifferenceFrom(workWant).value_or(""), "");
    if (!bByPlanes) return;
    ScaleByPlanes(c, source.Data(), want.Data(), rcFrom, rcTo);
    EXPECT_EQ(got.DifferenceFrom(want).value_or(""), "");
}

TEST(Resize, ScalesEverySampleAsItsModeSays) {
    for (const std::uint32_t code : {ARGB32, RGB32, RGB24, YUY2, YVYU, UYVY, YV12, I420})
        for (const std::int32_t nMode : {32, 33, 34, 35, 64, 67, 1, 4})
            for (const std::int32_t n : {0, 5, 80, -5}) {
                Check({{code, 24, 14, 26}, {code, 16, 10, 16}, {}, {}, nMode, n});
                Check({{code, 24, -14, 24}, {code, 40, -34, 44}, {}, {}, nMode, n});
                Check({{code, 24, 14, 28}, {code, 30, 12, 30}, RECT{4, 2, 20, 14}, RECT{2, -2, 34, 6}, nMode, n});
                Check({{code, 2, 2, 2}, {code, 2, 6, 2}, {}, {}, nMode, n});
                Check({{code, 2, 40, 2}, {code, 40, 2, 40}, {}, {}, nMode, n});
                Check({{code, 40, 2, 40}, {code, 2, 40, 2}, {}, {}, nMode, n});
                Check({{code, 12, 10, 12}, {code, 20, 14, 20}, RECT{1, 3, 10, 8}, RECT{3, 9, 20, 14}, nMode, n},
                      !IsPackedYuv(code)); // in the middle of a group of pixels: nothing but in bounds
            }
}

TEST(Resize, AnswersInTheOrderOfItsChecks) {
    const PictureFormat rgb{RGB32, 8, 4}, large{RGB32, 16, 8}, down{RGB32, 16, -8}, rgb24{RGB24, 16, 8},
        word{RGB565, 8, 4}, largeWord{RGB565, 16, 8}, odd{I420, 7, 4}, i420{I420, 8, 4}, largeI420{I420, 16, 8},
        yuy2{YUY2, 8, 4, 8}, noStride{YUY2, 16, 8};
    const RECT whole{0, 0, 8, 4}, empty{4, 0, 4, 4}, outside{9, 0, 13, 4}, column{0, 0, 1, 4};
    const struct {
        const PictureFormat *from, *to;
        const RECT* rcFrom;
        std::int32_t nMode;
        HRESULT hr;
        // clang-format off
    } cases[] = {{nullptr, &rgb, &whole, 34, E_INVALIDARG},  {&rgb, nullptr, &whole, 34, E_INVALIDARG},
                 {&rgb, &rgb24, &whole, 34, E_INVALIDARG},   {&i420, &odd, &whole, 34, E_INVALIDARG},
                 {&rgb, &down, &outside, 34, E_INVALIDARG},  {&rgb, &large, &empty, 34, E_INVALIDARG},
                 {&rgb, &large, &outside, 34, S_FALSE},      {&word, &largeWord, &whole, 34, S_OK},
                 {&rgb, &large, &whole, 3, -22},             {&yuy2, &noStride, &column, 34, -6},
                 {&noStride, &yuy2, nullptr, 34, -14},       {&yuy2, &noStride, &whole, 34, -14},
                 {&i420, &largeI420, &whole, 68, E_INVALIDARG}};
    // clang-format on
    Bytes source(1024, 7), target(1024);
    for (const auto& c : cases)
        EXPECT_EQ(Img_Resize(source.data(), target.data(), c.from, c.to, c.rcFrom, nullptr, c.nMode, nullptr, 0), c.hr)
            << "case " << &c - cases;
    EXPECT_EQ(target, Bytes(1024));
    EXPECT_EQ(Img_Resize(nullptr, target.data(), &rgb, &large, nullptr, nullptr, 34, nullptr, 0), E_INVALIDARG);
}

TEST(Resize, AnswersWhenItsWorkMemoryIsLacking) {
    if (!testing_support::CFailingAllocation::IsAvailable()) GTEST_SKIP() << "the sanitizer owns the allocator";
    const PictureFormat from{YUY2, 8, 4, 8}, to{YUY2, 16, 8, 16};
    const Bytes source(64);
    Bytes target(256);
    const testing_support::CFailingAllocation failure(0);
    EXPECT_EQ(Img_Resize(source.data(), target.data(), &from, &to, nullptr, nullptr, 32, nullptr, 0), E_OUTOFMEMORY);
}

} // namespace
} // namespace vellumcaster
