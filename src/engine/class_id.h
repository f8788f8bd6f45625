#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// The class of the overlay filter, under which its streams are known.
inline constexpr GUID CLSID_CoVellumcaster{
    0x957C0DCF, 0x37B6, 0x4968, {0x9C, 0x2F, 0x2B, 0x66, 0xE2, 0x66, 0x25, 0xA6}};

} // namespace vellumcaster
