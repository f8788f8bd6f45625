#pragma once

#include "image/picture_format.h"

namespace vellumcaster::bench {

/// Items of one size on a frame, as they are timed. They lie side by side, row by row.
struct MixCase {
    const char* pszName;
    PictureFormat frame;
    SIZE item;
    LONG nItems;

    [[nodiscard]] PictureFormat Overlay() const { return OverlayFormat(frame.dwFormat, item); }

    [[nodiscard]] RECT Place(LONG i) const {
        const LONG perRow = frame.nWidth / item.cx;
        const LONG left = i % perRow * item.cx;
        const LONG top = i / perRow * item.cy;
        return {left, top, left + item.cx, top + item.cy};
    }
};

inline constexpr MixCase full1080p{"I420_1080p", {format_code::I420, 1920, 1080}, {1920, 1080}, 1};
inline constexpr MixCase full2160p{"RGB32_2160p", {format_code::RGB32, 3840, -2160}, {3840, 2160}, 1};
inline constexpr MixCase tenItems{"YUY2_1080p_ten_items", {format_code::YUY2, 1920, 1080}, {480, 120}, 10};
inline constexpr MixCase mixCases[] = {full1080p, full2160p, tenItems};

} // namespace vellumcaster::bench
