#pragma once

#include "platform/media/bitmap_info.h"

#include <cstddef>

namespace vellumcaster {

/// The format block of video under `FORMAT_VideoInfo`. More may follow behind it.
struct VIDEOINFOHEADER {
    RECT rcSource;                      ///< the part of the picture that is used; empty: all of it
    RECT rcTarget;                      ///< where it goes; empty: the whole buffer
    DWORD dwBitRate = 0;                ///< bits a second
    DWORD dwBitErrorRate = 0;           ///< errors a second
    REFERENCE_TIME AvgTimePerFrame = 0; ///< 100 ns; 0 where it is not known
    BITMAPINFOHEADER bmiHeader;
};
static_assert(sizeof(VIDEOINFOHEADER) == 88);

/// The format block of video under `FORMAT_VideoInfo2`.
struct VIDEOINFOHEADER2 {
    RECT rcSource;
    RECT rcTarget;
    DWORD dwBitRate = 0;
    DWORD dwBitErrorRate = 0;
    REFERENCE_TIME AvgTimePerFrame = 0; ///< 100 ns; 0 where it is not known
    DWORD dwInterlaceFlags = 0;
    DWORD dwCopyProtectFlags = 0;
    DWORD dwPictAspectRatioX = 0;
    DWORD dwPictAspectRatioY = 0;
    DWORD dwControlFlags = 0;
    DWORD dwReserved2 = 0;
    BITMAPINFOHEADER bmiHeader;
};
static_assert(sizeof(VIDEOINFOHEADER2) == 112);

/// Up to the frame time the two read alike.
static_assert(offsetof(VIDEOINFOHEADER, AvgTimePerFrame) == offsetof(VIDEOINFOHEADER2, AvgTimePerFrame));

} // namespace vellumcaster
