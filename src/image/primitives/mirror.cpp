#include "image/primitives/pixel_math.h"
#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"

#include <algorithm>
#include <initializer_list>

namespace vellumcaster {

namespace {

/// One thing that changes places. Bytes alone, so that no step can put it where it may not stand.
template <std::size_t cb>
struct Element {
    BYTE bytes[cb];
};

template <std::size_t cb>
using Row = Element<cb>*;
template <std::size_t cb>
using ConstRow = const Element<cb>*;

PrimStatus Check(bool bAnyNull, std::initializer_list<std::int32_t> steps, PrimSize size, std::int32_t flip) {
    if (bAnyNull) return prim_status::nullPointer;
    if (std::min(steps) < 1) return prim_status::badStep;
    if (std::min(size.width, size.height) < 1) return prim_status::badSize;
    if (flip != flipRows && flip != flipColumns && flip != flipBoth) return prim_status::badFlip;
    return prim_status::ok;
}

template <std::size_t cb>
void SwapRows(Row<cb> pUpper, Row<cb> pLower, std::int32_t width, std::int32_t flip) {
    if (flip == flipRows)
        std::swap_ranges(pUpper, pUpper + width, pLower);
    else
        std::swap_ranges(pUpper, pUpper + width, std::make_reverse_iterator(pLower + width));
}

template <std::size_t cb>
PrimStatus MirrorInPlace(void* pInOut, std::int32_t step, PrimSize size, std::int32_t flip) {
    if (const PrimStatus status = Check(!pInOut, {step}, size, flip)) return status;
    const auto rowAt = [=](std::int32_t y) { return RowAt(static_cast<Row<cb>>(pInOut), step, y); };
    if (flip == flipColumns) {
        for (std::int32_t y = 0; y < size.height; ++y)
            std::reverse(rowAt(y), rowAt(y) + size.width);
        return prim_status::ok;
    }
    const std::int32_t half = size.height / 2;
    for (std::int32_t y = 0; y < half; ++y)
        SwapRows<cb>(rowAt(y), rowAt(size.height - 1 - y), size.width, flip);
    if (flip == flipBoth && size.height % 2 != 0) std::reverse(rowAt(half), rowAt(half) + size.width);
    return prim_status::ok;
}

template <std::size_t cb>
PrimStatus Mirror(const void* pSrc, std::int32_t srcStep, void* pDst, std::int32_t dstStep, PrimSize size,
                  std::int32_t flip) {
    if (const PrimStatus status = Check(!pSrc || !pDst, {srcStep, dstStep}, size, flip)) return status;
    for (std::int32_t y = 0; y < size.height; ++y) {
        const std::int32_t from = flip == flipColumns ? y : size.height - 1 - y;
        const ConstRow<cb> pFrom = RowAt(static_cast<ConstRow<cb>>(pSrc), srcStep, from);
        const Row<cb> pTo = RowAt(static_cast<Row<cb>>(pDst), dstStep, y);
        if (flip == flipRows)
            std::copy(pFrom, pFrom + size.width, pTo);
        else
            std::reverse_copy(pFrom, pFrom + size.width, pTo);
    }
    return prim_status::ok;
}

} // namespace

namespace px {

PrimStatus ippiMirror_8u_C3IR(BYTE* pInOut, std::int32_t step, PrimSize size, std::int32_t flip) {
    return MirrorInPlace<3>(pInOut, step, size, flip);
}

PrimStatus ippiMirror_8u_C4IR(BYTE* pInOut, std::int32_t step, PrimSize size, std::int32_t flip) {
    return MirrorInPlace<4>(pInOut, step, size, flip);
}

PrimStatus ippiMirror_16u_C1IR(std::uint16_t* pInOut, std::int32_t step, PrimSize size, std::int32_t flip) {
    return MirrorInPlace<2>(pInOut, step, size, flip);
}

PrimStatus ippiMirror_8u_C3R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                             std::int32_t flip) {
    return Mirror<3>(pSrc, srcStep, pDst, dstStep, size, flip);
}

PrimStatus ippiMirror_8u_C4R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                             std::int32_t flip) {
    return Mirror<4>(pSrc, srcStep, pDst, dstStep, size, flip);
}

PrimStatus ippiMirror_16u_C1R(const std::uint16_t* pSrc, std::int32_t srcStep, std::uint16_t* pDst,
                              std::int32_t dstStep, PrimSize size, std::int32_t flip) {
    return Mirror<2>(pSrc, srcStep, pDst, dstStep, size, flip);
}

} // namespace px
} // namespace vellumcaster
