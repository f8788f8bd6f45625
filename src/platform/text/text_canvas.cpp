#include "platform/text/text_canvas.h"

#include "platform/kernel/last_error.h"
#include "platform/text/block_cover.h"
#include "platform/text/shape_cache.h"

#include <algorithm>
#include <cstring>

namespace vellumcaster {

namespace {

constexpr std::int64_t nLargestSide = 32767;
constexpr std::int64_t nLargestArea = std::int64_t{1} << 28;
constexpr LONG nLargestBlock = 16;

bool FailWith(DWORD error) {
    SetLastError(error);
    return false;
}

void WriteGrey(const BYTE* pGrey, std::size_t count, BYTE* pPixels) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = pGrey[i] * 0x01010101U;
        std::memcpy(pPixels + 4 * i, &pixel, sizeof pixel);
    }
}

} // namespace

bool CTextCanvas::CanAverage(const CTextDC& dc, LONG nPen, LONG nBlock) {
    return !dc.IsSmooth() && nBlock >= 2 && nBlock <= nLargestBlock && nPen <= CShapeCache::nWidestPen &&
           dc.EmHeight() <= CShapeCache::nLargestEm;
}

bool CTextCanvas::CreateBitmap(std::int64_t cx, std::int64_t cy, LONG nBlock) {
    if (cx < 1 || cy < 1 || cx > nLargestSide || cy > nLargestSide || cx * cy > nLargestArea)
        return FailWith(ERROR_INVALID_PARAMETER);
    m_nBlock = nBlock;
    m_Size = {static_cast<LONG>(cx / nBlock), static_cast<LONG>(cy / nBlock)};
    m_Bytes.assign(static_cast<std::size_t>(m_Size.cx) * static_cast<std::size_t>(m_Size.cy), 0);
    return true;
}

void CTextCanvas::FillBlack() { std::fill(m_Bytes.begin(), m_Bytes.end(), BYTE{0}); }

void CTextCanvas::FillText(const PlacedText& text) {
    if (m_nBlock == 1 && text.bSmooth)
        CoverSmoothly(text, {m_Bytes, m_Size});
    else
        DrawInOneBit(text, 0);
}

void CTextCanvas::StrokePath(const PlacedText& text, LONG nPen) { DrawInOneBit(text, nPen); }

void CTextCanvas::DrawInOneBit(const PlacedText& text, LONG nPen) {
    if (m_nBlock == 1)
        CoverInOneBit(text, nPen, {m_Bytes, m_Size});
    else
        CoverBlocks(text, nPen, m_nBlock, {m_Bytes, m_Size});
}

bool CTextCanvas::GetDIBits(BYTE* pPixels, BITMAPINFOHEADER* pInfo) const {
    if (m_Bytes.empty() || !pInfo) return FailWith(ERROR_INVALID_PARAMETER);
    if (!pPixels) {
        *pInfo = {
            .biSize = sizeof *pInfo, .biWidth = m_Size.cx, .biHeight = m_Size.cy, .biPlanes = 1, .biBitCount = 32};
        pInfo->biSizeImage = static_cast<DWORD>(m_Bytes.size() * 4);
        return true;
    }
    const auto width = static_cast<std::size_t>(m_Size.cx);
    const auto height = static_cast<std::size_t>(m_Size.cy);
    for (std::size_t y = 0; y < height; ++y) {
        const std::size_t row = pInfo->biHeight < 0 ? y : height - 1 - y;
        WriteGrey(m_Bytes.data() + y * width, width, pPixels + row * width * 4);
    }
    return true;
}

} // namespace vellumcaster
