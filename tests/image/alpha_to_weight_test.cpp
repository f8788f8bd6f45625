#include "image/alpha_to_weight.h"

#include "image/plane_layout.h"
#include "support/guarded_buffer.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

using namespace format_code;
using testing_support::CGuardedBuffer;

/// The weight of each byte by the rule of its format; -1 where nothing is written.
std::vector<int> Want(std::uint32_t format, const std::vector<std::uint32_t>& pixels, const SIZE& size) {
    const auto at = [&](LONG x, LONG y) {
        return static_cast<int>(pixels[static_cast<std::size_t>(y * size.cx + x)] >> 24);
    };
    std::vector<int> want;
    for (LONG y = 0; y < size.cy; ++y) {
        for (LONG x = 0; x < size.cx; ++x) {
            const int mean = (at(x & ~1, y) + at(std::min(x | 1, size.cx - 1), y)) / 2;
            switch (format) {
            case RGB32: want.insert(want.end(), 4, at(x, y)); break;
            case RGB24: want.insert(want.end(), 3, at(x, y)); break;
            case UYVY: want.insert(want.end(), {mean, at(x, y)}); break;
            case YUY2:
            case YVYU: want.insert(want.end(), {at(x, y), mean}); break;
            default: want.push_back(at(x, y));
            }
        }
        while (format == RGB24 && want.size() % 4 != 0)
            want.push_back(-1);
    }
    for (int plane = 0; plane < 2 && (format == I420 || format == YV12); ++plane)
        for (LONG y = 0; y < size.cy; y += 2)
            for (LONG x = 0; x < size.cx; x += 2)
                want.push_back(x < (size.cx & ~7) ? (at(x, y) + at(x + 1, y) + at(x, y + 1) + at(x + 1, y + 1)) / 4
                                                  : at(x + 1, y + 1));
    return want;
}

TEST(AlphaToWeight, GivesEveryByteItsWeight) {
    const std::uint64_t seed = testing_support::FreshSeed();
    SCOPED_TRACE(seed);
    for (const std::uint32_t format : {RGB32, RGB24, YUY2, YVYU, UYVY, YV12, I420})
        for (const SIZE size :
             {SIZE{2, 2}, SIZE{6, 2}, SIZE{8, 4}, SIZE{10, 2}, SIZE{30, 6}, SIZE{66, 4}, SIZE{3, 3}}) {
            if (size.cx % 2 != 0 && format != RGB24) continue;
            std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.cx * size.cy));
            testing_support::FillRandom({reinterpret_cast<BYTE*>(pixels.data()), pixels.size() * 4}, seed);
            const std::vector<int> weights = Want(format, pixels, size);
            CGuardedBuffer got(weights.size(), 0, seed + 1);
            CGuardedBuffer want = got;
            for (std::size_t i = 0; i < weights.size(); ++i)
                if (weights[i] >= 0) want.Data()[i] = static_cast<BYTE>(weights[i]);
            EXPECT_EQ(weights.size(), CPictureFormats::GetBufferSize({format, size.cx, -size.cy, 0}));
            ASSERT_EQ(CImageHelp::AlphaToWeight(format, pixels.data(), got.Data(), &size), S_OK);
            EXPECT_EQ(got.DifferenceFrom(want).value_or(""), "") << std::hex << format << std::dec << " " << size.cx;
        }
}

TEST(AlphaToWeight, RefusesWhatAFormatCannotHave) {
    std::uint32_t pixels[16] = {};
    BYTE weights[64] = {};
    const struct {
        std::uint32_t format;
        SIZE size;
        HRESULT hr;
    } cases[] = {{ARGB32, {2, 2}, E_NOTIMPL},   {RGB565, {2, 2}, E_NOTIMPL},   {RGB32, {3, 2}, E_INVALIDARG},
                 {RGB32, {2, 3}, E_INVALIDARG}, {YUY2, {2, 1}, E_INVALIDARG},  {UYVY, {1, 2}, E_INVALIDARG},
                 {I420, {0, 2}, E_INVALIDARG},  {YV12, {2, -2}, E_INVALIDARG}, {RGB24, {0, 1}, E_INVALIDARG},
                 {RGB24, {1, 0}, E_INVALIDARG}};
    for (const auto& c : cases)
        EXPECT_EQ(CImageHelp::AlphaToWeight(c.format, pixels, weights, &c.size), c.hr);
    const SIZE size{2, 2};
    for (const std::uint32_t format : {RGB32, RGB24, YUY2, I420})
        for (const int missing : {0, 1, 2})
            EXPECT_EQ(CImageHelp::AlphaToWeight(format, missing == 0 ? nullptr : pixels,
                                                missing == 1 ? nullptr : weights, missing == 2 ? nullptr : &size),
                      E_INVALIDARG);
}

} // namespace
} // namespace vellumcaster
