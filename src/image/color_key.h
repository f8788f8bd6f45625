#pragma once

#include <vellumcaster/results.h>

namespace vellumcaster {

/// The keys that leave a picture as it is, and those by which the colour of its first pixel becomes transparent.
inline constexpr LONG nNoColorKeyMin = -1;
inline constexpr LONG nNoColorKeyMax = -1;
inline constexpr LONG nTopLeftKeyMin = -1;
inline constexpr LONG nTopLeftKeyMax = 0;

/// Copies a picture and sets the alpha bytes of the pixels that a colour key takes. Colours never change.
///
/// The bytes of a key, low to high, are bounds for the bytes B, G, R of a pixel, and an alpha value. Where no lower
/// bound is above its upper one and the alpha values are not both 255, pixels within the bounds get the alpha value;
/// where the two values differ it runs from the lower corner's to the upper one's, which makes a soft edge. Any other
/// keys are none: with an upper key of 0 pixels of the first pixel's colour get alpha 0, else it is a plain copy.
///
/// \param src, dst  cx * cy pixels, rows without a gap; the same block or apart.
/// \return S_OK; E_INVALIDARG for a null pointer or a size below 1.
[[nodiscard]] HRESULT ApplyColorKey(const std::uint32_t* src, std::uint32_t* dst, LONG cx, LONG cy, LONG nColorKeyMin,
                                    LONG nColorKeyMax);

} // namespace vellumcaster
