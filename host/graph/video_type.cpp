#include "host/graph/video_type.h"

#include "image/format_table.h"
#include "image/plane_layout.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/video_info.h"

namespace vellumcaster {

HRESULT MakeVideoType(const PictureFormat& pf, REFERENCE_TIME avgTimePerFrame, AM_MEDIA_TYPE& mt) {
    const int nRow = CPictureFormats::FormatIndexFromCode(pf.dwFormat);
    const std::size_t cbFrame = CPictureFormats::GetBufferSize(pf);
    if (nRow < 0 || cbFrame == 0) return E_INVALIDARG;
    const PixelFormatEntry& entry = CPictureFormats::FormatTable()[static_cast<std::size_t>(nRow)];

    VIDEOINFOHEADER info;
    const auto stride = static_cast<LONG>(EffectiveStride(pf));
    if (stride != pf.nWidth) info.rcTarget = {0, 0, pf.nWidth, static_cast<LONG>(RowCount(pf))};
    info.AvgTimePerFrame = avgTimePerFrame;
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = stride;
    info.bmiHeader.biHeight = pf.nHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = entry.nBitCount;
    info.bmiHeader.biCompression = entry.bYuv ? pf.dwFormat : BI_RGB;
    info.bmiHeader.biSizeImage = static_cast<DWORD>(cbFrame);
    const HRESULT hr = MT_Set(mt, MEDIATYPE_Video, entry.subtype, FORMAT_VideoInfo, sizeof info, &info);
    if (SUCCEEDED(hr)) mt.lSampleSize = static_cast<ULONG>(cbFrame);
    return hr;
}

} // namespace vellumcaster
