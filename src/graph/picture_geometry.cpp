#include "graph/picture_geometry.h"

#include "image/format_table.h"
#include "image/guarded_memory.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/video_info.h"

#include <cstdlib>
#include <optional>

namespace vellumcaster {

namespace {

constexpr int noRow = -1;

/// What counts of a format block.
struct VideoBlock {
    RECT rcTarget;
    BITMAPINFOHEADER bmiHeader;
};

template <class Header>
std::optional<VideoBlock> ReadAs(const AM_MEDIA_TYPE& mt) {
    if (mt.cbFormat < sizeof(Header)) return {};
    Header header;
    if (!SEH_CopyMemory(&header, mt.pbFormat, sizeof header)) return {};
    return VideoBlock{header.rcTarget, header.bmiHeader};
}

std::optional<VideoBlock> ReadBlock(const AM_MEDIA_TYPE* pmt) {
    if (!pmt || pmt->majortype != MEDIATYPE_Video || pmt->cbFormat == 0 || !pmt->pbFormat) return {};
    if (pmt->formattype == FORMAT_VideoInfo) return ReadAs<VIDEOINFOHEADER>(*pmt);
    if (pmt->formattype == FORMAT_VideoInfo2) return ReadAs<VIDEOINFOHEADER2>(*pmt);
    return {};
}

template <class Value>
void WriteWhereWanted(Value* p, Value value) {
    if (p) *p = value;
}

} // namespace

int MT_GetGeometry(const AM_MEDIA_TYPE* pmt, LONG* pWidth, LONG* pHeight, LONG* pStride) {
    const std::optional<VideoBlock> block = ReadBlock(pmt);
    if (!block) return noRow;
    const std::int64_t stride = block->bmiHeader.biWidth;
    const std::int64_t target = std::int64_t{block->rcTarget.right} - block->rcTarget.left;
    if (stride == 0 || block->bmiHeader.biHeight == 0 || target > stride) return noRow;
    const std::int64_t width = target == 0 ? stride : target;

    const int nRow = CPictureFormats::FormatIndexFromSubtype(pmt->subtype);
    if (nRow < 0) return noRow;
    const PixelFormatEntry& entry = CPictureFormats::FormatTable()[static_cast<std::size_t>(nRow)];
    const std::int64_t height =
        entry.bYuv ? std::abs(std::int64_t{block->bmiHeader.biHeight}) : block->bmiHeader.biHeight;
    if (width % entry.nSubX != 0 || stride % entry.nSubX != 0 || height % entry.nSubY != 0) return noRow;
    if (std::abs(stride) > nLargestSide || std::abs(height) > nLargestSide || width < -nLargestSide) return noRow;
    WriteWhereWanted(pWidth, static_cast<LONG>(width));
    WriteWhereWanted(pHeight, static_cast<LONG>(height));
    WriteWhereWanted(pStride, static_cast<LONG>(stride));
    return nRow;
}

int MT_GetPictureFormat(const AM_MEDIA_TYPE* pmt, PictureFormat* pFormat) {
    if (!pFormat) return E_POINTER;
    LONG width = 0;
    LONG height = 0;
    LONG stride = 0;
    const int nRow = MT_GetGeometry(pmt, &width, &height, &stride);
    if (nRow >= 0) *pFormat = {pmt->subtype.Data1, width, height, static_cast<DWORD>(stride)};
    return nRow;
}

} // namespace vellumcaster
