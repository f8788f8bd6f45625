#pragma once

#include <vellumcaster/types.h>

/// The format word of a text: how its lines stand in their rectangle. Other bits are read over.
namespace vellumcaster {

inline constexpr DWORD DT_LEFT = 0x0;
inline constexpr DWORD DT_CENTER = 0x1;
inline constexpr DWORD DT_RIGHT = 0x2;
inline constexpr DWORD DT_VCENTER = 0x4;     ///< with DT_SINGLELINE alone
inline constexpr DWORD DT_BOTTOM = 0x8;      ///< with DT_SINGLELINE alone
inline constexpr DWORD DT_WORDBREAK = 0x10;  ///< lines are also broken between words where the rectangle ends
inline constexpr DWORD DT_SINGLELINE = 0x20; ///< line breaks in the text are spaces
inline constexpr DWORD DT_EXPANDTABS =
    0x40;                                   ///< a tab goes to the next multiple of eight characters; else it is a space
inline constexpr DWORD DT_CALCRECT = 0x400; ///< measure only
inline constexpr DWORD DT_NOPREFIX = 0x800; ///< an ampersand is an ordinary character, which here it always is
inline constexpr DWORD DT_INTERNAL = 0x1000; ///< measure by the default font, which is the one that is selected then

} // namespace vellumcaster
