#include "platform/text/text_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace vellumcaster {

namespace {

/// A shape that stands further out than this covers no pixel of any canvas.
constexpr double nFarthestPlace = 1 << 20;
constexpr double nCharactersToTab = 8;

double Pixels(int units) { return static_cast<double>(units) / PANGO_SCALE; }

/// Whole pixels that cover a length; what Pango's units cannot tell from a whole number counts as one.
LONG Cover(double pixels) { return static_cast<LONG>(std::ceil(pixels - 1.0 / PANGO_SCALE)); }

/// The place of a part in a whole by a pair of bits of the format word.
double Align(double whole, double part, bool bMiddle, bool bEnd) {
    if (bMiddle) return std::floor((whole - part) / 2);
    return bEnd ? whole - part : 0;
}

double AlignAcross(double whole, double part, DWORD format) {
    return Align(whole, part, (format & DT_CENTER) != 0, (format & DT_RIGHT) != 0);
}

double AlignDown(double whole, double part, DWORD format) {
    if ((format & DT_SINGLELINE) == 0) return 0;
    return Align(whole, part, (format & DT_VCENTER) != 0, (format & DT_BOTTOM) != 0);
}

LONG FarEdge(LONG near, double length) {
    constexpr double most = std::numeric_limits<LONG>::max();
    return static_cast<LONG>(std::min(near + length, most));
}

} // namespace

CTextLayout::CTextLayout(CLogicalFont& font, const std::string& text, const RECT& rc, DWORD format) : m_Font(font) {
    SetUp(text, rc, format);
    CollectLines();
}

void CTextLayout::SetUp(const std::string& text, const RECT& rc, DWORD format) {
    PangoLayout* pLayout = m_Font.Layout();
    const bool bWrap = (format & DT_WORDBREAK) != 0 && (format & DT_SINGLELINE) == 0;
    const double width = std::clamp(static_cast<double>(rc.right) - rc.left, 0.0, nFarthestPlace);
    pango_layout_set_width(pLayout, bWrap ? static_cast<int>(width * PANGO_SCALE) : -1);
    if ((format & DT_EXPANDTABS) != 0) {
        const double stop = nCharactersToTab * m_Font.AverageWidth() * PANGO_SCALE;
        PangoTabArray* pTabs = pango_tab_array_new_with_positions(1, FALSE, PANGO_TAB_LEFT, static_cast<int>(stop));
        pango_layout_set_tabs(pLayout, pTabs);
        pango_tab_array_free(pTabs);
    }
    pango_layout_set_text(pLayout, text.data(), static_cast<int>(text.size()));
}

/// A line has the height of the font's cell, and more where other faces that had to help reach beyond it.
void CTextLayout::CollectLines() {
    const auto cell = static_cast<LONG>(std::lround(m_Font.Ascent() + m_Font.Descent()));
    const auto ascent = static_cast<LONG>(std::lround(m_Font.Ascent()));
    for (GSList* p = pango_layout_get_lines_readonly(m_Font.Layout()); p; p = p->next) {
        auto* pLine = static_cast<PangoLayoutLine*>(p->data);
        PangoRectangle box;
        pango_layout_line_get_extents(pLine, nullptr, &box);
        const LONG above = std::max(0, Cover(Pixels(-box.y) - m_Font.Ascent()));
        const LONG below = std::max(0, Cover(Pixels(box.y + box.height) - m_Font.Descent()));
        m_Lines.push_back({pLine, Cover(Pixels(box.width)), m_nHeight + above + ascent});
        m_nHeight += above + std::max(cell, 1) + below;
        m_nWidth = std::max(m_nWidth, m_Lines.back().width);
    }
}

bool CTextLayout::IsLevel() const { return m_Font.Slope().yx == 0 && m_Font.Slope().xx > 0; }

CTextLayout::Box CTextLayout::TurnedBox() const {
    const cairo_matrix_t& slope = m_Font.Slope();
    const std::array<double, 4> x{0, m_nWidth * slope.xx, m_nHeight * slope.xy,
                                  m_nWidth * slope.xx + m_nHeight * slope.xy};
    const std::array<double, 4> y{0, m_nWidth * slope.yx, m_nHeight * slope.yy,
                                  m_nWidth * slope.yx + m_nHeight * slope.yy};
    const auto [left, right] = std::minmax_element(x.begin(), x.end());
    const auto [top, bottom] = std::minmax_element(y.begin(), y.end());
    return {*left, *top, *right - *left, *bottom - *top};
}

LONG CTextLayout::Height() const { return std::max(1, Cover(TurnedBox().height)); }

void CTextLayout::Measure(RECT& rc) const {
    rc.right = FarEdge(rc.left, Cover(TurnedBox().width));
    rc.bottom = FarEdge(rc.top, Height());
}

void CTextLayout::Place(const RECT& rc, DWORD format, PlacedText& placed) {
    placed.bSmooth = m_Font.IsSmooth();
    const Box box = TurnedBox();
    const double width = static_cast<double>(rc.right) - rc.left;
    const double height = static_cast<double>(rc.bottom) - rc.top;
    m_OriginX = rc.left - box.left + (IsLevel() ? 0 : AlignAcross(width, box.width, format));
    m_OriginY = rc.top - box.top + AlignDown(height, box.height, format);
    for (const Line& line : m_Lines)
        PlaceLine(line, AlignAcross(IsLevel() ? width : m_nWidth, line.width, format), placed);
}

void CTextLayout::PlaceLine(const Line& line, double left, PlacedText& placed) {
    int along = 0;
    for (GSList* p = line.pLine->runs; p; p = p->next) {
        const auto& run = *static_cast<PangoGlyphItem*>(p->data);
        PlaceRun(run, left + Pixels(along), line.baseline, placed);
        along += pango_glyph_string_get_width(run.glyphs);
    }
    PlaceBar(m_Font.Underline(), line, left, placed);
    PlaceBar(m_Font.StrikeOut(), line, left, placed);
}

void CTextLayout::PlaceRun(const PangoGlyphItem& run, double left, LONG baseline, PlacedText& placed) {
    if (!run.item->analysis.font) return;
    const auto& spFace = m_Font.FaceOf(run.item->analysis.font);
    int along = 0;
    for (int i = 0; i < run.glyphs->num_glyphs; ++i) {
        const PangoGlyphInfo& info = run.glyphs->glyphs[i];
        // A character that no face has is shown as what the face has for such.
        const std::uint32_t glyph = (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0 ? 0 : info.glyph;
        if (info.glyph != PANGO_GLYPH_EMPTY)
            PlaceShape(spFace, {spFace->id, glyph}, left + Pixels(along + info.geometry.x_offset),
                       baseline + Pixels(info.geometry.y_offset), placed);
        along += info.geometry.width;
    }
}

void CTextLayout::PlaceBar(const std::optional<LineBar>& bar, const Line& line, double left, PlacedText& placed) {
    if (!bar || line.width <= 0) return;
    const auto& spFace = m_Font.FirstFace();
    PlaceShape(spFace, {spFace->id, 0, 0, line.width, bar->height}, left, line.baseline + bar->top, placed);
}

void CTextLayout::PlaceShape(const std::shared_ptr<const TextFace>& spFace, TextShape shape, double along, double down,
                             PlacedText& placed) const {
    cairo_matrix_transform_point(&m_Font.Slope(), &along, &down);
    const double x = m_OriginX + along;
    const double y = m_OriginY + down;
    if (std::abs(x) > nFarthestPlace || std::abs(y) > nFarthestPlace) return;
    // Smoothed glyphs may stand at quarters of a pixel, which keeps their distances even at small sizes.
    const bool bQuarters = placed.bSmooth && shape.barWidth == 0;
    const auto quarters = static_cast<LONG>(bQuarters ? std::floor(x * 4 + 0.5) : 4 * std::floor(x + 0.5));
    shape.quarters = static_cast<BYTE>(quarters & 3);
    if (std::none_of(placed.faces.begin(), placed.faces.end(), [&](const auto& sp) { return sp == spFace; }))
        placed.faces.push_back(spFace);
    placed.shapes.push_back({shape, spFace.get(), quarters >> 2, static_cast<LONG>(std::floor(y + 0.5))});
}

} // namespace vellumcaster
