#include "image/mix_rivals.h"

#include <cstring>

#if defined(VELLUM_BENCH_LIBYUV)
#include <libyuv.h>
#endif

namespace vellumcaster::bench {

namespace {

#if defined(__AVX2__)
constexpr std::size_t cbVector = 32;
#else
constexpr std::size_t cbVector = 16;
#endif
constexpr std::size_t cbLine = 64;

using Vector [[gnu::vector_size(cbVector)]] = BYTE;

void MoveVector(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight) {
    Vector dst;
    Vector src;
    Vector w;
    std::memcpy(&dst, pDst, cbVector);
    std::memcpy(&src, pSrc, cbVector);
    std::memcpy(&w, pWeight, cbVector);
#if defined(__SSE2__)
    // To the compiler this may change all that was loaded, so that no load and no store can be left out.
    asm volatile("" : "+x"(dst), "+x"(src), "+x"(w));
#else
    dst ^= src ^ w;
#endif
    std::memcpy(pDst, &dst, cbVector);
}

} // namespace

void MoveRow(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb) {
    std::size_t at = 0;
    for (; at + cbLine <= cb; at += cbLine)
        for (std::size_t i = at; i < at + cbLine; i += cbVector)
            MoveVector(pDst + i, pSrc + i, pWeight + i);
    for (; at + cbVector <= cb; at += cbVector)
        MoveVector(pDst + at, pSrc + at, pWeight + at);
}

void MoveItems(const CMixScene& scene, BYTE* pFrame) {
    for (const RowBlock& block : scene.Blocks())
        for (std::size_t y = 0; y < block.nRows; ++y) {
            const std::size_t overlayAt = block.overlayStart + y * block.overlayPitch;
            MoveRow(pFrame + block.frameStart + y * block.framePitch, scene.Color() + overlayAt,
                    scene.Weight() + overlayAt, block.cbRow);
        }
}

#if defined(VELLUM_BENCH_LIBYUV)

void BlendItems(const CMixScene& scene, BYTE* pFrame) {
    for (const RowBlock& block : scene.Blocks()) {
        const auto overlayPitch = static_cast<int>(block.overlayPitch);
        const auto framePitch = static_cast<int>(block.framePitch);
        BYTE* pPlace = pFrame + block.frameStart;
        libyuv::BlendPlane(scene.Color() + block.overlayStart, overlayPitch, pPlace, framePitch,
                           scene.Weight() + block.overlayStart, overlayPitch, pPlace, framePitch,
                           static_cast<int>(block.cbRow), static_cast<int>(block.nRows));
    }
}

void BlendRow(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb) {
    const auto n = static_cast<int>(cb);
    libyuv::BlendPlane(pSrc, n, pDst, n, pWeight, n, pDst, n, n, 1);
}

#endif

} // namespace vellumcaster::bench
