#include "image/blob_holder.h"
#include "image/primitives/primitives.h"
#include "image/resize.h"
#include "image/resize_rivals.h"
#include "support/random_bytes.h"
#include "support/ratio_table.h"
#include "support/this_build.h"

#include <cstdio>
#include <cstdlib>

namespace vellumcaster::bench {

namespace {

enum class Rival { libyuv, zimg };

struct ScaleRow {
    ScaleCase scaleCase;
    Rival rival;
    std::optional<double> goal;
};

constexpr ScaleRow scaleRows[] = {
    {{"half_of_2160p", 4, {3840, 2160}, {1920, 1080}}, Rival::libyuv, 2.0},
    {{"sixteenth_of_text", 4, {7680, 1024}, {480, 64}}, Rival::libyuv, std::nullopt},
    {{"sixteenth_of_plane", 1, {7680, 1024}, {480, 64}}, Rival::libyuv, std::nullopt},
    {{"cubic_720p_to_1080p", 4, {1280, 720}, {1920, 1080}}, Rival::zimg, 1.0},
};

/// A picture and the room for its scaled copy.
class CScaling {
public:
    explicit CScaling(const ScaleCase& scaleCase) : m_Case(scaleCase) {
        if (m_Source.Alloc(scaleCase.SourceSize()) != S_OK || m_Target.Alloc(scaleCase.TargetSize()) != S_OK)
            std::abort();
        testing_support::FillRandom({m_Source.Data(), m_Source.Size()}, 1);
    }

    void Scale() {
        const HRESULT hr = m_Case.channels == 4 ? ScalePicture() : ScalePlane();
        if (hr != S_OK) std::abort();
    }

#if defined(VELLUM_BENCH_LIBYUV)
    void ScaleByLibyuv() { ScaleByBox(m_Case, m_Source.Data(), m_Target.Data()); }
#endif

private:
    HRESULT ScalePicture() {
        const auto format = [](const SIZE& size) { return OverlayFormat(format_code::RGB32, size); };
        const PictureFormat from = format(m_Case.from);
        const PictureFormat to = format(m_Case.to);
        return Img_Resize(m_Source.Data(), m_Target.Data(), &from, &to, nullptr, nullptr, resizeBest, nullptr, 0);
    }

    PrimStatus ScalePlane() {
        const SIZE& from = m_Case.from;
        const SIZE& to = m_Case.to;
        return ippiResize_8u_C1R(m_Source.Data(), {from.cx, from.cy}, from.cx, {0, 0, from.cx, from.cy},
                                 m_Target.Data(), to.cx, {to.cx, to.cy}, static_cast<double>(to.cx) / from.cx,
                                 static_cast<double>(to.cy) / from.cy, interpolationSuper);
    }

    ScaleCase m_Case;
    CVirtualBlob m_Source;
    CVirtualBlob m_Target;
};

std::vector<RatioLine> RegisterRows() {
    std::vector<RatioLine> lines;
    for (const ScaleRow& row : scaleRows) {
        const std::string name = row.scaleCase.pszName;
        const auto spScaling = std::make_shared<CScaling>(row.scaleCase);
        AddBenchmark(name, "ours", [=] { spScaling->Scale(); });
        if (row.rival == Rival::libyuv) {
#if defined(VELLUM_BENCH_LIBYUV)
            AddBenchmark(name, "libyuv", [=] { spScaling->ScaleByLibyuv(); });
            lines.push_back({name, "ours", "libyuv", row.goal});
#endif
        } else {
#if defined(VELLUM_BENCH_ZIMG)
            const auto spPlanes = std::make_shared<CPlanesByZimg>(row.scaleCase);
            AddBenchmark(name, "zimg", [=] { spPlanes->Scale(); });
            lines.push_back({name, "ours", "zimg", row.goal});
#endif
        }
    }
    return lines;
}

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster;
#if defined(VELLUM_BENCH_LIBYUV)
    bench::HoldLibyuvToThisBuild(false);
#else
    std::puts("libyuv is not installed: no race against it");
#endif
#if !defined(VELLUM_BENCH_ZIMG)
    std::puts("zimg is not installed: no race against it");
#endif
    return bench::RunAndPrintTable(argc, argv, bench::RegisterRows());
}
