#pragma once

#include "image/primitives/primitive_types.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

namespace prim_status {

inline constexpr PrimStatus ok = 0;
inline constexpr PrimStatus wrongRoi = 29; ///< a warning: the region lies outside the source; nothing was done
inline constexpr PrimStatus badSize = -6;
inline constexpr PrimStatus nullPointer = -8;
inline constexpr PrimStatus noMemory = -9;
inline constexpr PrimStatus badStep = -14;
inline constexpr PrimStatus badFlip = -21;
inline constexpr PrimStatus badInterpolation = -22;
inline constexpr PrimStatus badFactor = -23;
inline constexpr PrimStatus badStride = -37;
inline constexpr PrimStatus badDivisor = -51;

} // namespace prim_status

/// A status in English; null for one that no primitive answers, and for success.
[[nodiscard]] const char* Prim_StatusText(PrimStatus status);

/// The result that an operation answers for a status: 0 is S_OK, an error stands as it is, a warning becomes
/// 0x80070000 with the status in its low word.
[[nodiscard]] constexpr HRESULT ResultFromStatus(PrimStatus status) {
    return status > 0 ? static_cast<HRESULT>(0x80070000u | (static_cast<std::uint32_t>(status) & 0xFFFF)) : status;
}

} // namespace vellumcaster
