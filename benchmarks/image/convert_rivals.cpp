#include "image/convert_rivals.h"

#include "support/random_bytes.h"
#include "support/this_build.h"

#include <cstdlib>
#include <new>

#if defined(VELLUM_BENCH_LIBYUV)
#include <libyuv.h>
#endif
#if defined(VELLUM_BENCH_ZIMG)
#include <zimg.h>
#endif

namespace vellumcaster::bench {

#if defined(VELLUM_BENCH_LIBYUV)
void ConvertByLibyuv(std::uint32_t dwTarget, const BYTE* pSrc, BYTE* pDst, const SIZE& size) {
    using namespace format_code;
    const int srcPitch = size.cx * 4;
    BYTE* pLast = pDst + std::ptrdiff_t{size.cx} * size.cy;
    switch (dwTarget) {
    case RGB24: libyuv::ARGBToRGB24(pSrc, srcPitch, pDst, size.cx * 3, size.cx, size.cy); break;
    case UYVY: libyuv::ARGBToUYVY(pSrc, srcPitch, pDst, size.cx * 2, size.cx, size.cy); break;
    case YUY2:
    case YVYU: libyuv::ARGBToYUY2(pSrc, srcPitch, pDst, size.cx * 2, size.cx, size.cy); break;
    default:
        libyuv::ARGBToI420(pSrc, srcPitch, pDst, size.cx, pLast, size.cx / 2,
                           pLast + std::ptrdiff_t{size.cx} * size.cy / 4, size.cx / 2, size.cx, size.cy);
    }
}
#endif

#if defined(VELLUM_BENCH_ZIMG)

namespace {

constexpr std::size_t alignment = 64;

struct AlignedDelete {
    void operator()(BYTE* p) const { ::operator delete[](p, std::align_val_t{alignment}); }
};
using Plane = std::unique_ptr<BYTE[], AlignedDelete>;

Plane MakePlane(std::size_t cb) {
    Plane plane(static_cast<BYTE*>(::operator new[](cb, std::align_val_t{alignment})));
    testing_support::FillRandom({plane.get(), cb}, cb);
    return plane;
}

zimg_image_format Describe(const SIZE& size, zimg_color_family_e family, zimg_matrix_coefficients_e matrix) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(size.cx);
    format.height = static_cast<unsigned>(size.cy);
    format.pixel_type = ZIMG_PIXEL_BYTE;
    format.color_family = family;
    format.matrix_coefficients = matrix;
    format.pixel_range = family == ZIMG_COLOR_RGB ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    return format;
}

} // namespace

struct CZimgConversion::Graph {
    zimg_filter_graph* pGraph = nullptr;
    zimg_image_buffer_const source{};
    zimg_image_buffer target{};
    Plane planes[6];
    Plane scratch;
};

CZimgConversion::CZimgConversion(const SIZE& size, bool bHalfRows) : m_spGraph(std::make_unique<Graph>()) {
    Graph& g = *m_spGraph;
    const zimg_image_format source = Describe(size, ZIMG_COLOR_RGB, ZIMG_MATRIX_RGB);
    zimg_image_format target = Describe(size, ZIMG_COLOR_YUV, ZIMG_MATRIX_BT470_BG);
    target.subsample_w = 1;
    target.subsample_h = bHalfRows ? 1 : 0;
    zimg_graph_builder_params params;
    zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
#if defined(__x86_64__)
    params.cpu_type = bWideBuild ? ZIMG_CPU_X86_AVX2 : ZIMG_CPU_X86_SSE2;
#endif
    g.pGraph = zimg_filter_graph_build(&source, &target, &params);
    std::size_t cbScratch = 0;
    if (!g.pGraph || zimg_filter_graph_get_tmp_size(g.pGraph, &cbScratch) != ZIMG_ERROR_SUCCESS) std::abort();
    g.scratch = MakePlane(cbScratch + 1);

    const auto cbRow = static_cast<std::size_t>(size.cx);
    const auto nRows = static_cast<std::size_t>(size.cy);
    g.source.version = g.target.version = ZIMG_API_VERSION;
    for (std::size_t i = 0; i < 3; ++i) {
        g.planes[i] = MakePlane(cbRow * nRows);
        g.planes[3 + i] = MakePlane(cbRow * nRows);
        const std::size_t cbTargetRow = i == 0 ? cbRow : cbRow / 2;
        g.source.plane[i] = {g.planes[i].get(), static_cast<std::ptrdiff_t>(cbRow), ZIMG_BUFFER_MAX};
        g.target.plane[i] = {g.planes[3 + i].get(), static_cast<std::ptrdiff_t>(cbTargetRow), ZIMG_BUFFER_MAX};
    }
}

CZimgConversion::~CZimgConversion() { zimg_filter_graph_free(m_spGraph->pGraph); }

void CZimgConversion::Run() {
    Graph& g = *m_spGraph;
    const auto code =
        zimg_filter_graph_process(g.pGraph, &g.source, &g.target, g.scratch.get(), nullptr, nullptr, nullptr, nullptr);
    if (code != ZIMG_ERROR_SUCCESS) std::abort();
}

#endif

} // namespace vellumcaster::bench
