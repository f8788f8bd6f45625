#pragma once

#include <vellumcaster/log_font.h>
#include <vellumcaster/results.h>

namespace vellumcaster::CImageHelp {

/// The two ways of drawing at a multiple of the size. They give the same bytes.
enum class OutlineRoad {
    Literal,  ///< paints the large canvas and scales it down: what defines the result
    Shortest, ///< an averaged canvas, where the text allows it
};

/// What `OutlineString2Alpha` is asked for.
struct OutlineJob {
    const char* pszText;
    const LOGFONT* pLogFont; ///< may be null
    double dblOutlineWidth;
    LONG nTextFormat;
    LONG nMargin;
    LONG nScale;
};

/// `OutlineString2Alpha` by a given road; arguments and results as there.
[[nodiscard]] HRESULT DrawOutlined(const OutlineJob& job, OutlineRoad road, SIZE* pSize, BYTE** ppFore, BYTE** ppBack,
                                   BYTE** ppOutline);

} // namespace vellumcaster::CImageHelp
