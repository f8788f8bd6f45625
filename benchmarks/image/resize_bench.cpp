#include "image/blob_holder.h"
#include "image/primitives/primitives.h"
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
    {{"three_quarters_of_1080p", 4, {1920, 1080}, {1440, 810}}, Rival::libyuv, std::nullopt},
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
        const auto scale = m_Case.channels == 1 ? px::ippiResize_8u_C1R : px::ippiResize_8u_C4R;
        const bool bShrinks = m_Case.to.cx <= m_Case.from.cx && m_Case.to.cy <= m_Case.from.cy;
        const PrimStatus status =
            scale(m_Source.Data(), {m_Case.from.cx, m_Case.from.cy}, m_Case.from.cx * m_Case.channels,
                  {0, 0, m_Case.from.cx, m_Case.from.cy}, m_Target.Data(), m_Case.to.cx * m_Case.channels,
                  {m_Case.to.cx, m_Case.to.cy}, static_cast<double>(m_Case.to.cx) / m_Case.from.cx,
                  static_cast<double>(m_Case.to.cy) / m_Case.from.cy,
                  bShrinks ? interpolationSuper : interpolationCubic);
        if (status != 0) std::abort();
    }

#if defined(VELLUM_BENCH_LIBYUV)
    void ScaleByLibyuv() { ScaleByBox(m_Case, m_Source.Data(), m_Target.Data()); }
#endif

private:
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
