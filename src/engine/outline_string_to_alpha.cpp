#include "engine/outline_string_to_alpha.h"

#include "engine/text_rasteriser.h"
#include "engine/text_steps.h"
#include "image/picture_format.h"
#include "image/resize.h"
#include "image/rounding.h"
#include "platform/com/no_exceptions.h"
#include "platform/kernel/trace.h"

#include <algorithm>
#include <cstdlib>

namespace vellumcaster::CImageHelp {

namespace {

constexpr std::int64_t nWidthStep = 8;
constexpr std::int64_t nHeightStep = 2;
constexpr BYTE NONANTIALIASED_QUALITY = 3;
constexpr std::int64_t nWidestPen = 32767;

/// Small fonts are drawn larger; a font that is given by its em height counts as small.
struct LeastScale {
    LONG belowHeight;
    LONG scale;
};
constexpr LeastScale leastScales[] = {{10, 16}, {14, 12}, {18, 8}};

LONG EffectiveScale(const LOGFONT& logFont, LONG nScale) {
    for (const LeastScale& least : leastScales)
        if (logFont.lfHeight < least.belowHeight) nScale = std::max(nScale, least.scale);
    return nScale;
}

LOGFONT Enlarge(const LOGFONT& logFont, LONG nScale) {
    LOGFONT large = logFont;
    large.lfHeight = SaturateToInt32(std::int64_t{logFont.lfHeight} * nScale);
    large.lfWidth = SaturateToInt32(std::int64_t{logFont.lfWidth} * nScale);
    large.lfQuality = NONANTIALIASED_QUALITY;
    return large;
}

/// Pixels of the large canvas. A pen has a width, whatever its sign, and none is thinner than a pixel.
std::int64_t PenWidth(double dblOutlineWidth, LONG nScale) {
    const std::int64_t width = RoundToInt64(nScale * std::abs(dblOutlineWidth));
    return std::clamp<std::int64_t>(width, 1, nWidestPen + 1);
}

HRESULT ScaleDown(CTaskBlob& picture, SIZE& size, LONG nScale) {
    const SIZE scaledSize{size.cx / nScale, size.cy / nScale};
    CTaskBlob scaled;
    HRESULT hr = scaled.Resize(static_cast<std::size_t>(scaledSize.cx) * static_cast<std::size_t>(scaledSize.cy) * 4);
    if (FAILED(hr)) return hr;
    const PictureFormat pfLarge{format_code::RGB32, size.cx, -size.cy, 0};
    const PictureFormat pfScaled{format_code::RGB32, scaledSize.cx, -scaledSize.cy, 0};
    hr = Img_Resize(picture.Data(), scaled.Data(), &pfLarge, &pfScaled, nullptr, nullptr, resizeBest, nullptr, 0);
    if (FAILED(hr)) return hr;
    picture = std::move(scaled);
    size = scaledSize;
    return S_OK;
}

/// One drawing at a multiple of its size.
class COutlineDrawing {
public:
    explicit COutlineDrawing(const OutlineJob& job)
        : m_Job(job),
          m_nScale(job.pLogFont ? EffectiveScale(*job.pLogFont, job.nScale) : job.nScale),
          m_nPen(PenWidth(job.dblOutlineWidth, m_nScale)) {}

    /// Measures, sets the canvas up and places the text on it.
    HRESULT Prepare(const SIZE& least, OutlineRoad road) {
        if (m_nScale < 1 || m_nPen > nWidestPen) return E_INVALIDARG;
        SIZE extent;
        HRESULT hr = OpenFont();
        if (SUCCEEDED(hr)) hr = MeasureText(m_DC, m_Job.pszText, !m_Job.pLogFont, extent);
        if (FAILED(hr)) return hr;
        SetSize(extent, least);
        m_bAveraged =
            road == OutlineRoad::Shortest && CTextCanvas::CanAverage(m_DC, static_cast<LONG>(m_nPen), m_nScale);
        hr = CreateCanvas(m_Canvas, m_cx, m_cy, m_bAveraged ? m_nScale : 1);
        if (FAILED(hr)) return hr;
        return PlaceText(m_DC, m_Job.pszText, m_cx, m_cy, m_Job.nMargin, m_Job.nTextFormat, m_Text);
    }

    HRESULT DrawFill(CTaskBlob& picture, SIZE& size) {
        m_Canvas.FillText(m_Text);
        return Read(picture, size);
    }

    HRESULT DrawStroke(CTaskBlob& picture) {
        m_Canvas.FillBlack();
        m_Canvas.StrokePath(m_Text, static_cast<LONG>(m_nPen));
        SIZE size;
        return Read(picture, size);
    }

private:
    HRESULT OpenFont() {
        if (!m_Job.pLogFont) return OpenContext(m_DC, nullptr);
        const LOGFONT large = Enlarge(*m_Job.pLogFont, m_nScale);
        return OpenContext(m_DC, &large);
    }

    void SetSize(const SIZE& extent, const SIZE& least) {
        const std::int64_t nOutline =
            std::clamp<std::int64_t>(RoundToInt64(m_Job.dblOutlineWidth), INT32_MIN, INT32_MAX);
        const std::int64_t beyond = 2 * std::int64_t{m_Job.nMargin} + nOutline;
        m_cx = std::max(extent.cx + beyond, std::int64_t{least.cx} * m_nScale);
        m_cy = std::max(extent.cy + beyond, std::int64_t{least.cy} * m_nScale);
        m_cx = RoundUp(m_cx, nWidthStep * m_nScale);
        m_cy = RoundUp(m_cy, nHeightStep * m_nScale);
    }

    HRESULT Read(CTaskBlob& picture, SIZE& size) const {
        const HRESULT hr = ReadCanvas(m_Canvas, picture, size);
        if (FAILED(hr) || m_bAveraged || m_nScale == 1) return hr;
        return ScaleDown(picture, size, m_nScale);
    }

    const OutlineJob& m_Job;
    LONG m_nScale;
    std::int64_t m_nPen;
    std::int64_t m_cx = 0; ///< of the large canvas
    std::int64_t m_cy = 0;
    bool m_bAveraged = false;
    CTextDC m_DC;
    CTextCanvas m_Canvas;
    PlacedText m_Text;
};

HRESULT DrawPictures(const OutlineJob& job, OutlineRoad road, SIZE* pSize, BYTE** ppFore, BYTE** ppBack,
                     BYTE** ppOutline) {
    COutlineDrawing drawing(job);
    CTaskBlob fore;
    CTaskBlob back;
    CTaskBlob outline;
    SIZE size;
    HRESULT hr = drawing.Prepare(pSize ? *pSize : SIZE{}, road);
    if (SUCCEEDED(hr)) hr = drawing.DrawFill(fore, size);
    if (SUCCEEDED(hr) && ppBack) back = ComplementOf(fore);
    if (SUCCEEDED(hr) && ppOutline) hr = drawing.DrawStroke(outline);
    if (FAILED(hr)) return hr;
    if (pSize) *pSize = size;
    GiveOut(fore, ppFore);
    GiveOut(back, ppBack);
    GiveOut(outline, ppOutline);
    return S_OK;
}

} // namespace

HRESULT DrawOutlined(const OutlineJob& job, OutlineRoad road, SIZE* pSize, BYTE** ppFore, BYTE** ppBack,
                     BYTE** ppOutline) {
    if (!job.pszText || !ppFore) return E_POINTER;
    *ppFore = nullptr;
    if (ppBack) *ppBack = nullptr;
    if (ppOutline) *ppOutline = nullptr;
    return WithoutExceptions([&] { return DrawPictures(job, road, pSize, ppFore, ppBack, ppOutline); });
}

// NOLINTNEXTLINE(readability-function-size) the signature that callers know
HRESULT OutlineString2Alpha(const char* pszText, const LOGFONT* pLogFont, SIZE* pSize, BYTE** ppFore, BYTE** ppBack,
                            BYTE** ppOutline, double dblOutlineWidth, LONG nTextFormat, LONG nMargin, LONG nScale) {
    const OutlineJob job{pszText, pLogFont, dblOutlineWidth, nTextFormat, nMargin, nScale};
    return DrawOutlined(job, OutlineRoad::Shortest, pSize, ppFore, ppBack, ppOutline);
}

} // namespace vellumcaster::CImageHelp
