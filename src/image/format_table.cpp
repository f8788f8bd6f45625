#include "image/format_table.h"

#include "platform/media/media_subtypes.h"

#include <algorithm>

namespace vellumcaster::CPictureFormats {

namespace {

// clang-format off
constexpr std::array<PixelFormatEntry, 11> formatTable{{
    // subtype          bits  sub    dib    offsets    steps     planar  yuv
    {MEDIASUBTYPE_YV12,   12, 2, 2,  4, 2, {0, 0, 0}, {1, 1, 1}, true,  true},
    {MEDIASUBTYPE_I420,   12, 2, 2,  4, 2, {0, 0, 0}, {1, 1, 1}, true,  true},
    {MEDIASUBTYPE_YUY2,   16, 2, 1,  4, 2, {0, 1, 3}, {2, 4, 4}, false, true},
    {MEDIASUBTYPE_UYVY,   16, 2, 1,  4, 2, {1, 0, 2}, {2, 4, 4}, false, true},
    {MEDIASUBTYPE_YVYU,   16, 2, 1,  4, 2, {0, 3, 1}, {2, 4, 4}, false, true},
    {MEDIASUBTYPE_IYU2,   24, 1, 1,  4, 2, {2, 1, 0}, {3, 3, 3}, false, true},
    {MEDIASUBTYPE_RGB32,  32, 1, 1,  1, 1, {2, 1, 0}, {4, 4, 4}, false, false},
    {MEDIASUBTYPE_RGB24,  24, 1, 1,  1, 1, {2, 1, 0}, {3, 3, 3}, false, false},
    {MEDIASUBTYPE_RGB565, 16, 1, 1,  1, 1, {1, 0, 0}, {2, 2, 2}, false, false},
    {MEDIASUBTYPE_RGB555, 16, 1, 1,  1, 1, {1, 0, 0}, {2, 2, 2}, false, false},
    {MEDIASUBTYPE_ARGB32, 32, 1, 1,  1, 1, {2, 1, 0}, {4, 4, 4}, false, false},
}};
// clang-format on

template <class Matches>
int FindRow(Matches matches) {
    const auto row = std::find_if(formatTable.begin(), formatTable.end(), matches);
    return row == formatTable.end() ? -1 : static_cast<int>(row - formatTable.begin());
}

} // namespace

std::span<const PixelFormatEntry> FormatTable() { return formatTable; }

int FormatIndexFromCode(std::uint32_t code) {
    return FindRow([code](const PixelFormatEntry& entry) { return entry.subtype.Data1 == code; });
}

int FormatIndexFromSubtype(const GUID& subtype) {
    return FindRow([&subtype](const PixelFormatEntry& entry) { return entry.subtype == subtype; });
}

std::uint32_t BitsPerPixel(std::uint32_t code) {
    if (code == format_code::RGB8) return 8;
    if (code == format_code::YVU9) return 9;
    const int row = FormatIndexFromCode(code);
    return row < 0 ? 0 : formatTable[static_cast<std::size_t>(row)].nBitCount;
}

bool IsPlanarFormat(std::uint32_t code) { return code == format_code::YV12 || code == format_code::I420; }

bool IsRgbFormat(std::uint32_t code) {
    if (code == format_code::RGB8) return true;
    const int row = FormatIndexFromCode(code);
    return row >= 0 && !formatTable[static_cast<std::size_t>(row)].bYuv;
}

std::uint32_t GetRowBytes(const PixelFormatEntry& entry, std::int32_t width) {
    const auto nPixels = static_cast<std::uint32_t>(width);
    return entry.bPlanar ? nPixels : (nPixels * entry.nBitCount / 8 + 3) & ~3u;
}

HRESULT GetImageSize(std::uint32_t code, std::int32_t width, std::int32_t height, std::uint32_t* pcb) {
    if (!pcb) return E_POINTER;
    const int row = FormatIndexFromCode(code);
    const std::int64_t nRows = RowCount({code, width, height});
    if (row < 0 || width < 0 || width > nLargestSide || nRows > nLargestSide) return E_INVALIDARG;

    const PixelFormatEntry& entry = formatTable[static_cast<std::size_t>(row)];
    std::int64_t cb = nRows * GetRowBytes(entry, width);
    if (entry.bPlanar && entry.bYuv) cb += 2 * std::int64_t{width / entry.nSubX} * (nRows / entry.nSubY);
    if (cb > cbLargestPicture) return E_INVALIDARG;
    *pcb = static_cast<std::uint32_t>(cb);
    return S_OK;
}

int CheckDibGeometry(std::uint32_t code, std::int32_t width, std::int32_t height, std::int32_t stride) {
    if (width == 0 || height == 0) return -1;
    if (stride != 0 && stride < width) return -1;
    const int row = FormatIndexFromCode(code);
    if (row < 0) return -1;
    const PixelFormatEntry& entry = formatTable[static_cast<std::size_t>(row)];
    const bool bAligned =
        width % entry.nDibAlignX == 0 && stride % entry.nDibAlignX == 0 && height % entry.nDibAlignY == 0;
    return bAligned ? row : -1;
}

} // namespace vellumcaster::CPictureFormats
