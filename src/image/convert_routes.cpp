#include "image/convert_routes.h"

#include "image/guarded_memory.h"
#include "image/picture_format.h"
#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "image/rgb_repack.h"

#include <algorithm>

namespace vellumcaster {

namespace {

RowPair RowsOfSlot(const ConvertCall& call, std::size_t slot) {
    return {call.target.starts[slot], call.source.starts[slot], call.target.pitches[slot], call.source.pitches[slot]};
}

template <std::size_t bytesPerPixel>
PrimStatus CopyRowsOf(const ConvertCall& call) {
    const auto cbRow = static_cast<std::size_t>(call.size.width) * bytesPerPixel;
    static_cast<void>(CopyRows(RowsOfSlot(call, 0), call.size.height, cbRow));
    return prim_status::ok;
}

PrimStatus CopyPlanes(const ConvertCall& call) {
    for (std::size_t slot = 0; slot < 3; ++slot) {
        const int shift = slot == 0 ? 0 : 1;
        const auto cbRow = static_cast<std::size_t>(call.size.width >> shift);
        static_cast<void>(CopyRows(RowsOfSlot(call, slot), call.size.height >> shift, cbRow));
    }
    return prim_status::ok;
}

template <RgbRepack& repack>
PrimStatus Repack(const ConvertCall& call) {
    repack(RowsOfSlot(call, 0), call.size.width, call.size.height);
    return prim_status::ok;
}

void ReorderRows(Yuv422Reorder& reorder, const RowPair& rows, PrimSize size) {
    const auto cbRow = static_cast<std::size_t>(size.width) * 2;
    for (std::int32_t y = 0; y < size.height; ++y)
        reorder(rows.pSrc + y * rows.srcPitch, rows.pDst + y * rows.dstPitch, cbRow);
}

template <Yuv422Reorder& reorder>
PrimStatus Reorder(const ConvertCall& call) {
    ReorderRows(reorder, RowsOfSlot(call, 0), call.size);
    return prim_status::ok;
}

template <const auto& primitive>
PrimStatus Packed(const ConvertCall& call) {
    return primitive(call.source.starts[0], call.source.pitches[0], call.target.starts[0], call.target.pitches[0],
                     call.size);
}

template <const auto& primitive>
PrimStatus ToWords(const ConvertCall& call) {
    return primitive(call.source.starts[0], call.source.pitches[0],
                     reinterpret_cast<std::uint16_t*>(call.target.starts[0]), call.target.pitches[0], call.size);
}

template <const auto& primitive>
PrimStatus Opaque(const ConvertCall& call) {
    return primitive(call.source.starts[0], call.source.pitches[0], call.target.starts[0], call.target.pitches[0],
                     call.size, 0xFF);
}

/// The order in which a primitive is handed the slots as its planes P0, P1, P2.
using PlaneOrder = std::array<std::size_t, 3>;
constexpr PlaneOrder inYVU{0, 1, 2};
constexpr PlaneOrder inYUV{0, 2, 1};

struct PlaneArrays {
    BYTE* planes[3];
    std::int32_t steps[3];

    PlaneArrays(const ConvertSide& side, const PlaneOrder& order) {
        for (std::size_t i = 0; i < order.size(); ++i) {
            planes[i] = side.starts[order[i]];
            steps[i] = side.pitches[order[i]];
        }
    }
};

template <const auto& primitive, const PlaneOrder& order>
PrimStatus IntoPlanes(const ConvertCall& call) {
    const PlaneArrays target(call.target, order);
    return primitive(call.source.starts[0], call.source.pitches[0], target.planes, target.steps, call.size);
}

template <const auto& primitive, const PlaneOrder& order>
PrimStatus FromPlanes(const ConvertCall& call) {
    const PlaneArrays source(call.source, order);
    return primitive(source.planes, source.steps, call.target.starts[0], call.target.pitches[0], call.size);
}

template <const auto& primitive, const PlaneOrder& order>
PrimStatus FromPlanesToWords(const ConvertCall& call) {
    const PlaneArrays source(call.source, order);
    return primitive(source.planes, source.steps, reinterpret_cast<std::uint16_t*>(call.target.starts[0]),
                     call.target.pitches[0], call.size);
}

/// The rows that start `y` rows further down; `y` is even.
ConvertSide RowsFrom(const ConvertSide& side, std::int32_t y, bool bPlanar) {
    ConvertSide moved = side;
    for (std::size_t slot = 0; slot < 3; ++slot)
        if (moved.starts[slot])
            moved.starts[slot] += std::ptrdiff_t{bPlanar && slot > 0 ? y / 2 : y} * side.pitches[slot];
    return moved;
}

/// Pixels to packed samples in the work memory, and from there into planes: by bands of rows, so that the samples
/// are still near when the second step comes for them.
PrimStatus ThroughPacked(const ConvertCall& call) {
    constexpr std::int32_t nBandRows = 8;
    PrimStatus status = prim_status::ok;
    for (std::int32_t y = 0; y < call.size.height && status == prim_status::ok; y += nBandRows) {
        std::int32_t nRows = std::min(nBandRows, call.size.height - y);
        if (y > 0 && nRows == 1) break; // the odd last row has no chroma of its own and is not converted
        const PrimSize size{call.size.width, nRows};
        const ConvertSide packed{{call.pWork}, {call.size.width * 2}};
        status = Packed<ippiBGRToCbYCr422_8u_AC4C2R>({RowsFrom(call.source, y, false), packed, size});
        if (status != prim_status::ok) break;
        status = IntoPlanes<ippiCbYCr422To420_8u_C2P3R, inYUV>({packed, RowsFrom(call.target, y, true), size});
    }
    return status;
}

// ---- the table

constexpr FormatGroup rgb32s{format_code::ARGB32, format_code::RGB32};
constexpr FormatGroup rgb24{format_code::RGB24};
constexpr FormatGroup rgb565{format_code::RGB565};
constexpr FormatGroup rgb555{format_code::RGB555};
constexpr FormatGroup yuy2{format_code::YUY2};
constexpr FormatGroup yvyu{format_code::YVYU};
constexpr FormatGroup uyvy{format_code::UYVY};
constexpr FormatGroup planar{format_code::YV12, format_code::I420};
constexpr Yuv422Reorder* asItIs = nullptr;

// The primitives that read three bytes take the first for red and the second chroma sample for the one that drives
// it. A picture has blue first, so in these routes the chroma samples change places, too.
constexpr ConvertRoute routes[] = {
    // source, target, first the source, then convert, then the target
    {rgb32s, rgb32s, asItIs, CopyRowsOf<4>, asItIs},
    {rgb32s, rgb24, asItIs, Repack<Rgb32ToRgb24>, asItIs},
    {rgb32s, rgb565, asItIs, Repack<Rgb32ToRgb565>, asItIs},
    {rgb32s, rgb555, asItIs, Repack<Rgb32ToRgb555>, asItIs},
    {rgb32s, uyvy, asItIs, Packed<ippiBGRToCbYCr422_8u_AC4C2R>, asItIs},
    {rgb32s, yuy2, asItIs, Packed<ippiBGRToCbYCr422_8u_AC4C2R>, Yuv422SwapPairs},
    {rgb32s, yvyu, asItIs, Packed<ippiBGRToCbYCr422_8u_AC4C2R>, Yuv422RotateDown},
    {rgb32s, planar, asItIs, ThroughPacked, asItIs},

    {rgb24, rgb32s, asItIs, Repack<Rgb24ToRgb32>, asItIs},
    {rgb24, rgb24, asItIs, CopyRowsOf<3>, asItIs},
    {rgb24, rgb565, asItIs, Repack<Rgb24ToRgb565>, asItIs},
    {rgb24, rgb555, asItIs, Repack<Rgb24ToRgb555>, asItIs},
    {rgb24, yvyu, asItIs, Packed<ippiRGBToYCbCr422_8u_C3C2R>, asItIs},
    {rgb24, yuy2, asItIs, Packed<ippiRGBToYCbCr422_8u_C3C2R>, Yuv422SwapChroma},
    {rgb24, uyvy, asItIs, Packed<ippiRGBToYCbCr422_8u_C3C2R>, Yuv422RotateUp},
    {rgb24, planar, asItIs, IntoPlanes<ippiRGBToYCbCr420_8u_C3P3R, inYVU>, asItIs},

    {yuy2, yuy2, asItIs, CopyRowsOf<2>, asItIs},
    {yuy2, yvyu, asItIs, Reorder<Yuv422SwapChroma>, asItIs},
    {yuy2, uyvy, asItIs, Reorder<Yuv422SwapPairs>, asItIs},
    {yuy2, rgb32s, Yuv422SwapPairs, Opaque<ippiCbYCr422ToBGR_8u_C2C4R>, asItIs},
    {yuy2, rgb24, Yuv422SwapChroma, Packed<ippiYCbCr422ToRGB_8u_C2C3R>, asItIs},
    {yuy2, rgb565, Yuv422SwapChroma, ToWords<ippiYCbCr422ToRGB565_8u16u_C2C3R>, asItIs},
    {yuy2, rgb555, Yuv422SwapChroma, ToWords<ippiYCbCr422ToRGB555_8u16u_C2C3R>, asItIs},
    {yuy2, planar, asItIs, IntoPlanes<ippiYCbCr422To420_8u_C2P3R, inYUV>, asItIs},

    {yvyu, yvyu, asItIs, CopyRowsOf<2>, asItIs},
    {yvyu, yuy2, asItIs, Reorder<Yuv422SwapChroma>, asItIs},
    {yvyu, uyvy, asItIs, Reorder<Yuv422RotateUp>, asItIs},
    {yvyu, rgb32s, Yuv422RotateUp, Opaque<ippiCbYCr422ToBGR_8u_C2C4R>, asItIs},
    {yvyu, rgb24, asItIs, Packed<ippiYCbCr422ToRGB_8u_C2C3R>, asItIs},
    {yvyu, rgb565, asItIs, ToWords<ippiYCbCr422ToRGB565_8u16u_C2C3R>, asItIs},
    {yvyu, rgb555, asItIs, ToWords<ippiYCbCr422ToRGB555_8u16u_C2C3R>, asItIs},
    {yvyu, planar, asItIs, IntoPlanes<ippiYCbCr422To420_8u_C2P3R, inYVU>, asItIs},

    {uyvy, uyvy, asItIs, CopyRowsOf<2>, asItIs},
    {uyvy, yuy2, asItIs, Reorder<Yuv422SwapPairs>, asItIs},
    {uyvy, yvyu, asItIs, Reorder<Yuv422RotateDown>, asItIs},
    {uyvy, rgb32s, asItIs, Opaque<ippiCbYCr422ToBGR_8u_C2C4R>, asItIs},
    {uyvy, rgb24, Yuv422RotateDown, Packed<ippiYCbCr422ToRGB_8u_C2C3R>, asItIs},
    {uyvy, rgb565, Yuv422RotateDown, ToWords<ippiYCbCr422ToRGB565_8u16u_C2C3R>, asItIs},
    {uyvy, rgb555, Yuv422RotateDown, ToWords<ippiYCbCr422ToRGB555_8u16u_C2C3R>, asItIs},
    {uyvy, planar, asItIs, IntoPlanes<ippiCbYCr422To420_8u_C2P3R, inYUV>, asItIs},

    {planar, rgb32s, asItIs, FromPlanes<ippiYUV420ToRGB_8u_P3AC4R, inYVU>, asItIs},
    {planar, rgb24, asItIs, FromPlanes<ippiYCbCr420ToRGB_8u_P3C3R, inYVU>, asItIs},
    {planar, rgb565, asItIs, FromPlanesToWords<ippiYCbCr420ToRGB565_8u16u_P3C3R, inYVU>, asItIs},
    {planar, rgb555, asItIs, FromPlanesToWords<ippiYCbCr420ToRGB555_8u16u_P3C3R, inYVU>, asItIs},
    {planar, uyvy, asItIs, FromPlanes<ippiYCrCb420ToCbYCr422_8u_P3C2R, inYVU>, asItIs},
    {planar, yuy2, asItIs, FromPlanes<ippiYCrCb420ToYCbCr422_8u_P3C2R, inYVU>, asItIs},
    {planar, yvyu, asItIs, FromPlanes<ippiYCrCb420ToYCbCr422_8u_P3C2R, inYUV>, asItIs},
    {planar, planar, asItIs, CopyPlanes, asItIs},
};

} // namespace

const ConvertRoute* FindRoute(std::uint32_t dwSource, std::uint32_t dwTarget) {
    const auto* found = std::find_if(std::begin(routes), std::end(routes), [=](const ConvertRoute& route) {
        return route.source.Contains(dwSource) && route.target.Contains(dwTarget);
    });
    return found != std::end(routes) ? found : nullptr;
}

bool WantsWorkMemory(const ConvertRoute& route, bool bKeepSource) {
    return route.pfnFirst ? bKeepSource : route.pfnConvert == &ThroughPacked;
}

PrimStatus GoRoute(const ConvertRoute& route, ConvertCall call) {
    if (route.pfnFirst) {
        BYTE* pReordered = call.bKeepSource ? call.pWork : call.source.starts[0];
        const std::ptrdiff_t pitch = call.source.pitches[0];
        ReorderRows(*route.pfnFirst, {pReordered, call.source.starts[0], pitch, pitch}, call.size);
        call.source.starts[0] = pReordered;
    }
    const PrimStatus status = route.pfnConvert(call);
    if (status == prim_status::ok && route.pfnThen) {
        const std::ptrdiff_t pitch = call.target.pitches[0];
        ReorderRows(*route.pfnThen, {call.target.starts[0], call.target.starts[0], pitch, pitch}, call.size);
    }
    return status;
}

} // namespace vellumcaster
