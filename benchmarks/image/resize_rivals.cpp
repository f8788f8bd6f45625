#include "image/resize_rivals.h"

#include "image/blob_holder.h"
#include "support/random_bytes.h"

#include <cstdlib>
#include <vector>

#if defined(VELLUM_BENCH_LIBYUV)
#include <libyuv.h>
#endif
#if defined(VELLUM_BENCH_ZIMG)
#include <zimg.h>
#endif

namespace vellumcaster::bench {

#if defined(VELLUM_BENCH_LIBYUV)

void ScaleByBox(const ScaleCase& scaleCase, const BYTE* pSrc, BYTE* pDst) {
    const SIZE& from = scaleCase.from;
    const SIZE& to = scaleCase.to;
    const int channels = scaleCase.channels;
    if (channels == 4 && from.cx == 2 * to.cx && from.cy == 2 * to.cy)
        libyuv::ARGBScale(pSrc, 4 * from.cx, from.cx, from.cy, pDst, 4 * to.cx, to.cx, to.cy, libyuv::kFilterBox);
    else
        libyuv::ScalePlane(pSrc, channels * from.cx, channels * from.cx, from.cy, pDst, channels * to.cx,
                           channels * to.cx, to.cy, libyuv::kFilterBox);
}

#endif

#if defined(VELLUM_BENCH_ZIMG)

namespace {

#if defined(__AVX2__)
constexpr zimg_cpu_type_e buildCpu = ZIMG_CPU_X86_AVX2;
#elif defined(__SSE2__)
constexpr zimg_cpu_type_e buildCpu = ZIMG_CPU_X86_SSE2;
#else
constexpr zimg_cpu_type_e buildCpu = ZIMG_CPU_AUTO;
#endif
constexpr std::size_t cbAlignment = 64;

/// A plane, or the working memory of a graph: pages start where every vector may.
CVirtualBlob RandomBlob(std::size_t cb, std::uint64_t seed) {
    CVirtualBlob blob;
    if (blob.Alloc(cb) != S_OK) std::abort();
    testing_support::FillRandom({blob.Data(), cb}, seed);
    return blob;
}

struct Plane {
    Plane(const SIZE& size, std::uint64_t seed)
        : stride((static_cast<std::size_t>(size.cx) + cbAlignment - 1) / cbAlignment * cbAlignment),
          pixels(RandomBlob(stride * static_cast<std::size_t>(size.cy), seed)) {}

    std::size_t stride;
    CVirtualBlob pixels;
};

zimg_image_format PlaneFormat(const SIZE& size) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(size.cx);
    format.height = static_cast<unsigned>(size.cy);
    format.pixel_type = ZIMG_PIXEL_BYTE;
    format.color_family = ZIMG_COLOR_GREY;
    format.pixel_range = ZIMG_RANGE_FULL;
    return format;
}

} // namespace

struct CPlanesByZimg::State {
    zimg_filter_graph* pGraph = nullptr;
    CVirtualBlob work;
    std::vector<Plane> from;
    std::vector<Plane> to;
};

CPlanesByZimg::CPlanesByZimg(const ScaleCase& scaleCase) : m_spState(std::make_unique<State>()) {
    const zimg_image_format from = PlaneFormat(scaleCase.from);
    const zimg_image_format to = PlaneFormat(scaleCase.to);
    zimg_graph_builder_params params;
    zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
    params.resample_filter = ZIMG_RESIZE_BICUBIC;
    params.cpu_type = buildCpu;
    m_spState->pGraph = zimg_filter_graph_build(&from, &to, &params);
    std::size_t cbWork = 0;
    if (!m_spState->pGraph || zimg_filter_graph_get_tmp_size(m_spState->pGraph, &cbWork) != ZIMG_ERROR_SUCCESS)
        std::abort();
    m_spState->work = RandomBlob(cbWork, 0);
    for (std::int32_t c = 0; c < scaleCase.channels; ++c) {
        m_spState->from.emplace_back(scaleCase.from, 1 + static_cast<std::uint64_t>(c));
        m_spState->to.emplace_back(scaleCase.to, 0);
    }
}

CPlanesByZimg::~CPlanesByZimg() { zimg_filter_graph_free(m_spState->pGraph); }

void CPlanesByZimg::Scale() {
    for (std::size_t i = 0; i < m_spState->from.size(); ++i) {
        Plane& from = m_spState->from[i];
        Plane& to = m_spState->to[i];
        zimg_image_buffer_const source{};
        zimg_image_buffer target{};
        source.version = target.version = ZIMG_API_VERSION;
        source.plane[0] = {from.pixels.Data(), static_cast<std::ptrdiff_t>(from.stride), ZIMG_BUFFER_MAX};
        target.plane[0] = {to.pixels.Data(), static_cast<std::ptrdiff_t>(to.stride), ZIMG_BUFFER_MAX};
        if (zimg_filter_graph_process(m_spState->pGraph, &source, &target, m_spState->work.Data(), nullptr, nullptr,
                                      nullptr, nullptr) != ZIMG_ERROR_SUCCESS)
            std::abort();
    }
}

#endif

} // namespace vellumcaster::bench
