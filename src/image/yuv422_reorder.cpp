#include "image/yuv422_reorder.h"

#include "image/primitives/pixel_math.h"

#include <bit>

namespace vellumcaster {

namespace {

template <class Order>
void ReorderWords(const BYTE* pSrc, BYTE* pDst, std::size_t cb, Order order) {
    std::size_t i = 0;
    for (; i + 4 <= cb; i += 4)
        StoreWord(pDst + i, order(LoadWord(pSrc + i)));
    for (; i < cb; ++i)
        pDst[i] = pSrc[i];
}

/// A loop of its own for a row in place: only where compilers see that both pointers are one do they know that
/// words cannot meet.
template <class Order>
void Reorder(const BYTE* pSrc, BYTE* pDst, std::size_t cb, Order order) {
    if (pSrc == pDst)
        ReorderWords(pDst, pDst, cb, order);
    else
        ReorderWords(pSrc, pDst, cb, order);
}

} // namespace

void Yuv422SwapPairs(const BYTE* pSrc, BYTE* pDst, std::size_t cb) {
    Reorder(pSrc, pDst, cb, [](std::uint32_t w) { return (w & 0x00FF00FF) << 8 | (w >> 8 & 0x00FF00FF); });
}

void Yuv422SwapChroma(const BYTE* pSrc, BYTE* pDst, std::size_t cb) {
    Reorder(pSrc, pDst, cb, [](std::uint32_t w) { return (w & 0x00FF00FF) | (w & 0xFF00) << 16 | (w >> 16 & 0xFF00); });
}

void Yuv422RotateDown(const BYTE* pSrc, BYTE* pDst, std::size_t cb) {
    Reorder(pSrc, pDst, cb, [](std::uint32_t w) { return std::rotr(w, 8); });
}

void Yuv422RotateUp(const BYTE* pSrc, BYTE* pDst, std::size_t cb) {
    Reorder(pSrc, pDst, cb, [](std::uint32_t w) { return std::rotl(w, 8); });
}

} // namespace vellumcaster
