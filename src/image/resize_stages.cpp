#include "image/resize_stages.h"

#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "image/yuv422_reorder.h"

#include <algorithm>

namespace vellumcaster {

namespace {

/// By how many bits the size of a chroma plane is below that of the picture.
struct ChromaShift {
    int x;
    int y;
};

PlanePair MainPlane(const ResizeCall& call, std::int32_t nChannels) {
    const auto& [source, target, method] = call;
    const auto dstPitch = static_cast<std::int32_t>(target.layout.strides[0]);
    return {nChannels,
            source.pBuffer,
            static_cast<std::int32_t>(source.layout.strides[0]),
            source.size,
            source.block,
            target.pBuffer + std::ptrdiff_t{target.block.y} * dstPitch + std::ptrdiff_t{target.block.x} * nChannels,
            dstPitch,
            {target.block.width, target.block.height}};
}

PlanePair ChromaPlane(const ResizeCall& call, std::size_t slot, ChromaShift shift) {
    const auto& [source, target, method] = call;
    const auto dstPitch = static_cast<std::int32_t>(target.layout.strides[slot]);
    return {1,
            source.pBuffer + source.layout.offsets[slot],
            static_cast<std::int32_t>(source.layout.strides[slot]),
            {source.size.width >> shift.x, source.size.height >> shift.y},
            {source.block.x >> shift.x, source.block.y >> shift.y, source.block.width >> shift.x,
             source.block.height >> shift.y},
            target.pBuffer + target.layout.offsets[slot] + std::ptrdiff_t{target.block.y >> shift.y} * dstPitch +
                (target.block.x >> shift.x),
            dstPitch,
            {target.block.width >> shift.x, target.block.height >> shift.y}};
}

HRESULT ResizeThreePlanes(const ResizeCall& call, ChromaShift shift) {
    HRESULT hr = ResizeMainPlane(MainPlane(call, 1), call.method);
    for (const std::size_t slot : {1u, 2u})
        if (hr == S_OK) hr = ResizeChromaPlane(ChromaPlane(call, slot, shift), call.method);
    return hr;
}

template <class Byte>
Byte* FirstPackedByte(const ResizeSide<Byte>& side) {
    return side.pBuffer + std::ptrdiff_t{side.block.y} * side.packedPitch + std::ptrdiff_t{side.block.x} * 2;
}

void SwapRows(const BYTE* pSrc, BYTE* pDst, std::int32_t pitch, PrimSize size) {
    for (std::ptrdiff_t y = 0; y < size.height; ++y)
        Yuv422SwapPairs(pSrc + y * pitch, pDst + y * pitch, static_cast<std::size_t>(size.width & ~1) * 2);
}

/// A side whose picture is the block alone, its planes at `pBuffer`.
template <class Byte, class Other>
ResizeSide<Byte> Unpacked(const ResizeSide<Other>& side, Byte* pBuffer) {
    const PrimSize size{side.block.width, side.block.height};
    return {pBuffer, side.layout, side.packedPitch, size, {0, 0, size.width, size.height}};
}

template <class Byte>
std::size_t UnpackedBytes(const ResizeSide<Byte>& side) {
    return std::size_t{side.layout.strides[0]} * static_cast<std::size_t>(side.size.height) * 2;
}

/// Arrays of planes and steps as primitives take them.
struct Planes {
    BYTE* planes[3];
    std::int32_t steps[3];

    Planes(BYTE* pBuffer, const PlaneLayout& layout) {
        for (std::size_t slot = 0; slot < 3; ++slot) {
            planes[slot] = pBuffer + layout.offsets[slot];
            steps[slot] = static_cast<std::int32_t>(layout.strides[slot]);
        }
    }
};

PrimSize BlockSize(const PrimRect& block) { return {block.width, block.height}; }

} // namespace

HRESULT ResizePixels(const ResizeCall& call, std::int32_t nChannels) {
    return ResizeMainPlane(MainPlane(call, nChannels), call.method);
}

HRESULT ResizePlanar(const ResizeCall& call) { return ResizeThreePlanes(call, {1, 1}); }

// The work memory, with A the bytes of the larger picture of the two:
//
//     0            A            2 A               3 A                4 A
//     | source     | target     | target's luma   | source with      | luma rows between
//     | planes     | planes     | before filter   | luma first       | two passes
//
// With W the largest width or stride and H the largest height, the rows take at most 2 W H bytes and A is at most
// 2 W H, so all of it fits the 16 W H bytes of a scratch block.
HRESULT ResizePacked(const ResizeCall& call, BYTE* pWork, bool bChromaFirst) {
    const auto& [source, target, method] = call;
    const std::size_t cbArea = std::max(UnpackedBytes(source), UnpackedBytes(target));
    BYTE* pTargetPlanes = pWork + cbArea;
    BYTE* pLumaFirst = pWork + 3 * cbArea;

    const BYTE* pPacked = FirstPackedByte(source);
    if (bChromaFirst) {
        SwapRows(pPacked, pLumaFirst, source.packedPitch, BlockSize(source.block));
        pPacked = pLumaFirst;
    }
    const Planes sourcePlanes(pWork, source.layout);
    HRESULT hr = ResultFromStatus(ippiYCbCr422_8u_C2P3R(pPacked, source.packedPitch, sourcePlanes.planes,
                                                        sourcePlanes.steps, BlockSize(source.block)));
    if (hr != S_OK) return hr;

    ResizeCall planes{Unpacked<const BYTE>(source, pWork), Unpacked<BYTE>(target, pTargetPlanes), method};
    planes.method.pUnfiltered = pWork + 2 * cbArea;
    planes.method.pRows = pWork + 4 * cbArea;
    // The last pixel of an odd width has no whole group and was not unpacked.
    planes.source.size.width = planes.source.block.width = source.block.width & ~1;
    planes.method.xFactor = static_cast<double>(target.block.width) / planes.source.block.width;
    hr = ResizeThreePlanes(planes, {1, 0});
    if (hr != S_OK) return hr;

    const Planes targetPlanes(pTargetPlanes, target.layout);
    const PrimSize size{target.block.width & ~1, target.block.height};
    BYTE* pTarget = FirstPackedByte(target);
    hr = ResultFromStatus(
        ippiYCbCr422_8u_P3C2R(targetPlanes.planes, targetPlanes.steps, pTarget, target.packedPitch, size));
    if (hr == S_OK && bChromaFirst) SwapRows(pTarget, pTarget, target.packedPitch, size);
    return hr;
}

} // namespace vellumcaster
