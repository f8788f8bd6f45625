#include "image/convert.h"

#include "image/plane_layout.h"
#include "support/guarded_buffer.h"
#include "support/pixel_model.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellumcaster {
namespace {

using namespace format_code;
using testing_support::CGuardedBuffer;
using testing_support::CPictureModel;
using testing_support::IsPlanar;
using testing_support::IsRgb;
using testing_support::PixelSamples;

bool Is32(std::uint32_t f) { return f == ARGB32 || f == RGB32; }
bool IsWord(std::uint32_t f) { return f == RGB565 || f == RGB555; }

bool BottomUp(const PictureFormat& pf) { return IsRgb(pf.dwFormat) && pf.nHeight > 0; }

int Clamp(int v) { return std::clamp(v, 0, 255); }

/// What a pixel becomes, worked out for that pixel by itself.
class CRule {
public:
    CRule(std::uint32_t from, std::uint32_t to, CPictureModel& source) : m_From(from), m_To(to), m_Source(source) {}

    PixelSamples At(LONG x, LONG y) {
        const PixelSamples s = m_Source.Read(x, y);
        if (IsRgb(m_From) && IsRgb(m_To)) return Is32(m_From) ? s : PixelSamples{0, 0, 0, s.b, s.g, s.r, 255};
        if (Is32(m_From)) return FromRgb32(x, y, s);
        if (m_From == RGB24) return FromRgb24(x, y, s);
        if (!IsRgb(m_To)) return FromYuv(x, y, s);
        return IsPlanar(m_From) ? FromPlanes(s) : FromPacked(s);
    }

private:
    /// The sum of the pixels that share a pixel's chroma.
    PixelSamples Block(LONG x, std::initializer_list<LONG> rows) {
        PixelSamples sum;
        for (const LONG row : rows)
            for (const LONG column : {x & ~1, x | 1}) {
                const PixelSamples p = m_Source.Read(column, row);
                sum.b += p.b, sum.g += p.g, sum.r += p.r;
            }
        return sum;
    }

    PixelSamples FromRgb32(LONG x, LONG y, const PixelSamples& s) {
        const auto sum = Block(x, {IsPlanar(m_To) ? y & ~1 : y}); // chroma of the odd rows is dropped
        return {.y = (6423 * s.b + 33030 * s.g + 16843 * s.r + 0x108000) >> 16,
                .u = (28770 * sum.b - 19071 * sum.g - 9699 * sum.r + 0x1010000) >> 17,
                .v = (-4653 * sum.b - 24117 * sum.g + 28770 * sum.r + 0x100FFFE) >> 17};
    }

    /// Byte 0, which is blue, is taken for red, and V and U change places.
    PixelSamples FromRgb24(LONG x, LONG y, const PixelSamples& s) {
        const bool bPlanar = IsPlanar(m_To);
        const auto sum = bPlanar ? Block(x, {y & ~1, y | 1}) : Block(x, {y});
        const int half = bPlanar ? 33587200 : 0x1010000, shift = bPlanar ? 18 : 17;
        return {.y = (16843 * s.b + 33030 * s.g + 6423 * s.r + (bPlanar || x % 2 == 0 ? 0x108000 : 0x100000)) >> 16,
                .u = (28770 * sum.b - 24117 * sum.g - 4653 * sum.r + half) >> shift,
                .v = (-9699 * sum.b - 19071 * sum.g + 28770 * sum.r + half) >> shift};
    }

    PixelSamples FromYuv(LONG x, LONG y, const PixelSamples& s) {
        if (!IsPlanar(m_To) || IsPlanar(m_From)) return s;
        const PixelSamples even = m_Source.Read(x, y & ~1);
        return {.y = s.y, .u = even.u, .v = even.v};
    }

    PixelSamples FromPlanes(const PixelSamples& s) const {
        const int du = s.u - 128, dv = s.v - 128;
        if (Is32(m_To))
            return {.b = Clamp(((s.y << 16) + du * 74711 + 32768) >> 16),
                    .g = Clamp(((s.y << 16) - du * 38076 - dv * 25821 + 32768) >> 16),
                    .r = Clamp(((s.y << 16) + dv * 133169 + 32768) >> 16)};
        if (m_To == RGB24)
            return {.b = Clamp((s.y * 76284 + du * 104595 - 1220544) >> 16),
                    .g = Clamp((s.y * 76284 - dv * 25690 - du * 53281 - 1220544) >> 16),
                    .r = Clamp((s.y * 76284 + dv * 132186 - 1220544) >> 16)};
        const int y = ((s.y - 16) * 1220480) >> 16;
        return {.b = Clamp((y + ((du * 128 * 13074) >> 16)) >> 4),
                .g = Clamp((y - ((dv * 128 * 3211) >> 16) - ((du * 128 * 6660) >> 16)) >> 4),
                .r = Clamp((y + ((dv * 128 * 16523) >> 16)) >> 4)};
    }

    PixelSamples FromPacked(const PixelSamples& s) const {
        const int du = s.u - 128, dv = s.v - 128, l = (s.y - 16) * 76282;
        if (Is32(m_To))
            return {.b = Clamp((l + du * 132184 + 32768) >> 16),
                    .g = Clamp((l - du * 25689 - dv * 53279 + 32768) >> 16),
                    .r = Clamp((l + dv * 104593 + 32768) >> 16),
                    .a = 255};
        return {.b = Clamp((s.y * 76284 + s.u * 104595 - 14608761) >> 16),
                .g = Clamp((s.y * 76284 - s.v * 25690 - s.u * 53281 + 8887730) >> 16),
                .r = Clamp((s.y * 76284 + s.v * 132186 - 18140365) >> 16)};
    }

    std::uint32_t m_From;
    std::uint32_t m_To;
    CPictureModel& m_Source;
};

struct ConvertCase {
    PictureFormat from, to;
    RECT rcFrom, rcTo;
    bool bKeepSource;
    bool bOwnWork;
};

void Check(const ConvertCase& c) {
    const std::uint64_t seed = testing_support::FreshSeed();
    SCOPED_TRACE(testing::Message() << std::hex << c.from.dwFormat << " to " << c.to.dwFormat << std::dec
                                    << ", heights " << c.from.nHeight << " to " << c.to.nHeight << ", keep "
                                    << c.bKeepSource << ", own work " << c.bOwnWork << ", seed " << seed);
    CGuardedBuffer source(CPictureFormats::GetBufferSize(c.from), 0, seed);
    CGuardedBuffer target(CPictureFormats::GetBufferSize(c.to), 0, seed + 1);
    CGuardedBuffer work(CPictureFormats::GetScratchSize(c.from, c.to), 0, seed + 2);
    const CGuardedBuffer sourceBefore = source;
    CGuardedBuffer workWant = work;
    CGuardedBuffer want = target;
    CPictureModel sourceModel(c.from, source.Data());
    CPictureModel wantModel(c.to, want.Data());
    if (!IsWord(c.from.dwFormat)) {
        CRule rule(c.from.dwFormat, c.to.dwFormat, sourceModel);
        for (LONG y = 0; y < c.rcTo.bottom - c.rcTo.top; ++y)
            for (LONG x = 0; x < c.rcTo.right - c.rcTo.left; ++x)
                wantModel.Write(c.rcTo.left + x, c.rcTo.top + y, rule.At(c.rcFrom.left + x, c.rcFrom.top + y));
    }
    EXPECT_EQ(Img_Convert(source.Data(), target.Data(), &c.from, &c.to, &c.rcFrom, &c.rcTo, c.bKeepSource,
                          c.bOwnWork ? work.Data() : nullptr),
              S_OK);
    EXPECT_EQ(target.DifferenceFrom(want).value_or(""), "");
    if (c.bKeepSource) {
        EXPECT_EQ(source.DifferenceFrom(sourceBefore).value_or(""), "");
    }
    const bool bUsed = !std::equal(work.Data(), work.Data() + work.Size(), workWant.Data());
    const bool bMirrored = BottomUp(c.from) && !BottomUp(c.to) && !IsWord(c.from.dwFormat);
    const bool bNeeded = NeedsWorkBuffer(c.bKeepSource, c.from.dwFormat, c.to.dwFormat) || (c.bKeepSource && bMirrored);
    EXPECT_EQ(bUsed, c.bOwnWork && bNeeded);
    std::copy_n(work.Data(), work.Size(), workWant.Data()); // what is in it is its own business
    EXPECT_EQ(work.DifferenceFrom(workWant).value_or(""), "");
}

TEST(Convert, GivesEveryPixelItsRouteInEveryRowOrder) {
    for (const std::uint32_t from : testing_support::processedFormats)
        for (const std::uint32_t to : testing_support::processedFormats)
            for (int variant = 0; variant < 16; ++variant) { // 46 pixels: two less than whole vectors
                const bool bBlock = (variant & 8) != 0;
                const LONG fromHeight = variant & 1 ? -22 : 22;
                const LONG toHeight = variant & 2 ? -24 : 24;
                const RECT rcFrom = bBlock ? RECT{2, 4, 40, 22} : RECT{0, 0, 46, 22};
                const RECT rcTo = bBlock ? RECT{6, 2, 44, 20} : RECT{4, 2, 50, 24};
                Check({{from, 46, fromHeight, bBlock ? 50u : 0u},
                       {to, 50, toHeight, bBlock ? 0u : 54u},
                       rcFrom,
                       rcTo,
                       (variant & 4) != 0,
                       variant % 3 == 0});
            }
}

TEST(Convert, TakesOddBlocksWhereTheFormatsHaveThem) {
    for (const std::uint32_t from : {ARGB32, RGB32, RGB24})
        for (const std::uint32_t to : {ARGB32, RGB32, RGB24, RGB565, RGB555})
            for (const LONG height : {7, -7})
                Check({{from, 9, height, 0}, {to, 5, 7, 11}, {1, 0, 6, 7}, {0, 0, 5, 7}, true, false});
}

TEST(Convert, AnswersInTheOrderOfItsChecks) {
    BYTE pixels[256] = {};
    const PictureFormat rgb{RGB32, 8, -4, 0}, i420{I420, 8, 4, 0}, refused{I420, 7, 4, 0}, unknown{RGB8, 8, 4, 0};
    const RECT whole{0, 0, 8, 4}, outside{9, 0, 17, 4}, column{0, 0, 1, 4};
    const struct {
        BYTE* pSrc;
        const PictureFormat *from, *to;
        const RECT *rcFrom, *rcTo;
        HRESULT hr;
    } cases[] = {{nullptr, &rgb, &i420, &whole, &whole, E_INVALIDARG},
                 {pixels, nullptr, &i420, &whole, &whole, E_INVALIDARG},
                 {pixels, &rgb, nullptr, &whole, &whole, E_INVALIDARG},
                 {pixels, &refused, &rgb, &outside, &whole, E_INVALIDARG},
                 {pixels, &rgb, &unknown, &outside, &whole, E_INVALIDARG},
                 {pixels, &rgb, &i420, &outside, &whole, S_FALSE},
                 {pixels, &rgb, &i420, &column, &column, -6}}; // a primitive's refusal
    for (const auto& c : cases)
        EXPECT_EQ(Img_Convert(c.pSrc, pixels + 128, c.from, c.to, c.rcFrom, c.rcTo, 0, nullptr), c.hr) << &c - cases;
    EXPECT_EQ(Img_Convert(pixels, nullptr, &rgb, &i420, nullptr, nullptr, 0, nullptr), E_INVALIDARG);
    EXPECT_TRUE(std::all_of(pixels, pixels + 256, [](BYTE byte) { return byte == 0; }));
}

} // namespace
} // namespace vellumcaster
