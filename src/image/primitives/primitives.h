#pragma once

#include "image/primitives/primitive_types.h"

#include <array>
#include <cstddef>

namespace vellumcaster {

/// Every primitive with its signature: X(name, signature).
///
/// A name says operation, element type and layout: 8u bytes, 16u words; C1 to C4 interleaved channels, AC4 four
/// bytes whose fourth is left out, P3 three planes; a final R for a region, IR in place. P1 and P2 are places: which
/// of them is U is settled by the caller. Chroma of 4:2:0 stands at (x >> 1, y >> 1), of 4:2:2 at (x >> 1, y).
///
/// No primitive keeps a state, takes a lock or reports anything; one that fails a check has written nothing.
#define VELLUM_PRIMITIVES(X)                                                                                           \
    /* planar 4:2:0 to pixels */                                                                                       \
    X(ippiYUV420ToRGB_8u_P3AC4R, PlanesToBytes)        /* full range; the fourth byte becomes 0 */                     \
    X(ippiYCbCr420ToRGB_8u_P3C3R, PlanesToBytes)       /* video range, truncated */                                    \
    X(ippiYCbCr420ToRGB565_8u16u_P3C3R, PlanesToWords) /* the channel that P2 drives in the lowest bits */             \
    X(ippiYCbCr420ToRGB555_8u16u_P3C3R, PlanesToWords) /* the same; the top bit is 0 */                                \
    /* planes to packed samples; odd sizes are rounded down */                                                         \
    X(ippiYCrCb420ToCbYCr422_8u_P3C2R, PlanesToBytes) /* P2 Y0 P1 Y1 */                                                \
    X(ippiYCrCb420ToYCbCr422_8u_P3C2R, PlanesToBytes) /* Y0 P2 Y1 P1 */                                                \
    X(ippiYCbCr422_8u_P3C2R, PlanesToBytes)           /* planar 4:2:2; Y0 P1 Y1 P2 */                                  \
    /* pixels to samples */                                                                                            \
    X(ippiRGBToYCbCr422_8u_C3C2R, BytesToBytes)  /* Y0 C1 Y1 C2 */                                                     \
    X(ippiRGBToYCbCr420_8u_C3P3R, BytesToPlanes) /* chroma is the mean of 2 x 2 pixels */                              \
    X(ippiBGRToCbYCr422_8u_AC4C2R, BytesToBytes) /* C1 Y0 C2 Y1 */                                                     \
    /* packed samples to planes; odd sizes are rounded down */                                                         \
    X(ippiYCbCr422To420_8u_C2P3R, BytesToPlanes) /* from Y0 C1 Y1 C2; chroma of the even rows */                       \
    X(ippiCbYCr422To420_8u_C2P3R, BytesToPlanes) /* from C1 Y0 C2 Y1; the same */                                      \
    X(ippiYCbCr422_8u_C2P3R, BytesToPlanes)      /* from Y0 P1 Y1 P2 into planar 4:2:2 */                              \
    /* packed samples to pixels */                                                                                     \
    X(ippiYCbCr422ToRGB555_8u16u_C2C3R, BytesToWords) /* from Y0 U Y1 V, truncated; as the planar ones packed */       \
    X(ippiYCbCr422ToRGB565_8u16u_C2C3R, BytesToWords)                                                                  \
    X(ippiYCbCr422ToRGB_8u_C2C3R, BytesToBytes)                                                                        \
    X(ippiCbYCr422ToBGR_8u_C2C4R, BytesToBytesWithAlpha) /* from U Y0 V Y1, rounded; alpha in the fourth byte */       \
    /* mirrors: rows, columns or both, as PrimFlip says */                                                             \
    X(ippiMirror_8u_C3IR, MirrorBytesInPlace)                                                                          \
    X(ippiMirror_8u_C4IR, MirrorBytesInPlace)                                                                          \
    X(ippiMirror_16u_C1IR, MirrorWordsInPlace)                                                                         \
    X(ippiMirror_8u_C3R, MirrorBytes)                                                                                  \
    X(ippiMirror_8u_C4R, MirrorBytes)                                                                                  \
    X(ippiMirror_16u_C1R, MirrorWords)                                                                                 \
    /* scaling: a factor of 2 doubles; nothing is written beyond trunc(region x factor) */                             \
    X(ippiResize_8u_C1R, Resize)                                                                                       \
    X(ippiResize_8u_C3R, Resize)                                                                                       \
    X(ippiResize_8u_C4R, Resize)                                                                                       \
    /* convolution by an integer kernel; pSrc is the first pixel that has an output */                                 \
    X(ippiFilter_8u_C1R, Filter)                                                                                       \
    X(ippiFilter_8u_C3R, Filter)                                                                                       \
    X(ippiFilter_8u_C4R, Filter)

/// The portable code of each primitive, which defines its result.
namespace px {
#define VELLUM_DECLARE(name, Signature) prim_signature::Signature name;
VELLUM_PRIMITIVES(VELLUM_DECLARE)
#undef VELLUM_DECLARE
} // namespace px

/// The place of each primitive in the table.
enum class PrimIndex : std::size_t {
#define VELLUM_ENUMERATE(name, Signature) name,
    VELLUM_PRIMITIVES(VELLUM_ENUMERATE)
#undef VELLUM_ENUMERATE
        count
};

/// The code of a primitive, its signature forgotten.
using PrimEntry = void (*)();

/// What each primitive's callers reach at the moment. Holds the portable code from the start of the process on, so
/// that a call before anything was bound runs that.
extern std::array<PrimEntry, static_cast<std::size_t>(PrimIndex::count)> g_PrimSlots;

/// The entry of a primitive: called as the primitive itself, it jumps through the slot and does nothing else.
template <PrimIndex index, class Signature>
struct PrimStub;

template <PrimIndex index, class... Arguments>
struct PrimStub<index, PrimStatus(Arguments...)> {
    PrimStatus operator()(Arguments... arguments) const {
        using Function = PrimStatus (*)(Arguments...);
        return reinterpret_cast<Function>(g_PrimSlots[static_cast<std::size_t>(index)])(arguments...);
    }
};

#define VELLUM_DECLARE_STUB(name, Signature)                                                                           \
    inline constexpr PrimStub<PrimIndex::name, prim_signature::Signature> name{};
VELLUM_PRIMITIVES(VELLUM_DECLARE_STUB)
#undef VELLUM_DECLARE_STUB

} // namespace vellumcaster
