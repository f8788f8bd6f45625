#include "image/convert.h"

#include "image/blob_holder.h"
#include "image/convert_rivals.h"
#include "image/format_names.h"
#include "support/random_bytes.h"
#include "support/ratio_table.h"
#include "support/this_build.h"

#include <cstdlib>

namespace vellumcaster::bench {

namespace {

using namespace format_code;

constexpr SIZE size{1920, 1080};
constexpr double slowestAgainstLibyuv = 3.0;
constexpr double slowestAgainstZimg = 0.4;

/// A picture and room for what becomes of it.
struct Buffers {
    CVirtualBlob picture;
    CVirtualBlob target;

    Buffers() {
        constexpr std::size_t cb = std::size_t{1920} * 1080 * 4;
        if (FAILED(picture.Alloc(cb)) || FAILED(target.Alloc(cb, true))) std::abort();
        testing_support::FillRandom({picture.Data(), cb}, 1);
    }

    void Convert(std::uint32_t dwTarget) {
        const PictureFormat from{RGB32, size.cx, -size.cy, 0};
        const PictureFormat to{dwTarget, size.cx, -size.cy, 0};
        if (Img_Convert(picture.Data(), target.Data(), &from, &to, nullptr, nullptr, 0, nullptr) != S_OK) std::abort();
    }
};

std::vector<RatioLine> AddRoutes() {
    std::vector<RatioLine> lines;
    const auto spBuffers = std::make_shared<Buffers>();
    for (const std::uint32_t dwTarget : {YUY2, UYVY, YVYU, I420, YV12, RGB24}) {
        const std::string row = "RGB32_to_" + std::string(CPictureFormats::NameFromFormat(dwTarget));
        AddBenchmark(row, "ours", [=] { spBuffers->Convert(dwTarget); });
#if defined(VELLUM_BENCH_LIBYUV)
        AddBenchmark(row, "libyuv",
                     [=] { ConvertByLibyuv(dwTarget, spBuffers->picture.Data(), spBuffers->target.Data(), size); });
        lines.push_back({row, "ours", "libyuv", slowestAgainstLibyuv});
#endif
#if defined(VELLUM_BENCH_ZIMG)
        if (dwTarget == RGB24) continue; // to which it has no way
        const auto spZimg = std::make_shared<CZimgConversion>(size, dwTarget == I420 || dwTarget == YV12);
        AddBenchmark(row, "zimg", [=] { spZimg->Run(); });
        lines.push_back({row, "ours", "zimg", slowestAgainstZimg});
#endif
    }
    return lines;
}

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster::bench;
#if defined(VELLUM_BENCH_LIBYUV)
    HoldLibyuvToThisBuild(true);
#endif
    return RunAndPrintTable(argc, argv, AddRoutes());
}
