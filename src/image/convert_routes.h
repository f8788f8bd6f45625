#pragma once

#include "image/primitives/primitive_types.h"
#include "image/yuv422_reorder.h"

#include <array>

namespace vellumcaster {

/// One side of a conversion: where the block begins and how far rows are apart, by slot.
struct ConvertSide {
    std::array<BYTE*, 3> starts{};
    std::array<std::int32_t, 3> pitches{}; ///< bytes
};

/// One block on its way from a picture to another, rows in memory order on both sides.
struct ConvertCall {
    ConvertSide source;
    ConvertSide target;
    PrimSize size;         ///< of the block in pixels
    BYTE* pWork = nullptr; ///< work memory, where the route asks for it
    bool bKeepSource = false;
};

/// The formats that one cell of the route table names.
struct FormatGroup {
    std::uint32_t code;
    std::uint32_t otherCode = code;

    [[nodiscard]] constexpr bool Contains(std::uint32_t wanted) const { return wanted == code || wanted == otherCode; }
};

/// The way from one format to another: a kernel or primitive, with a byte order before or behind it where the
/// samples have to stand otherwise for it than they do in the picture.
struct ConvertRoute {
    FormatGroup source;
    FormatGroup target;
    Yuv422Reorder* pfnFirst; ///< of the source, in place or into the work memory; may be null
    PrimStatus (*pfnConvert)(const ConvertCall& call);
    Yuv422Reorder* pfnThen; ///< of the target, in place; may be null
};

/// The route between two formats; null from RGB565 and RGB555, from which there is none.
[[nodiscard]] const ConvertRoute* FindRoute(std::uint32_t dwSource, std::uint32_t dwTarget);

/// Whether the route wants `pWork`: as many bytes as the block's rows take at the source's pitch.
[[nodiscard]] bool WantsWorkMemory(const ConvertRoute& route, bool bKeepSource);

/// Goes the route. \return the status of the last primitive that ran.
[[nodiscard]] PrimStatus GoRoute(const ConvertRoute& route, ConvertCall call);

} // namespace vellumcaster
