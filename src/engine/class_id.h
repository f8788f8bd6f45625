#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// The class of the overlay filter, under which its streams are known.
inline constexpr GUID CLSID_CoVellumcaster{
    0x957C0DCF, 0x37B6, 0x4968, {0x9C, 0x2F, 0x2B, 0x66, 0xE2, 0x66, 0x25, 0xA6}};

/// The class of its property page.
inline constexpr GUID CLSID_MixerPage{0x068D94B6, 0x9249, 0x44D9, {0x82, 0x3D, 0x91, 0x5D, 0xE9, 0x1B, 0x4B, 0x94}};

} // namespace vellumcaster
