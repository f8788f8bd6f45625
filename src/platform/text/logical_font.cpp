#include "platform/text/logical_font.h"

#include "platform/com/utf8.h"
#include "platform/kernel/last_error.h"
#include "platform/text/recently_used.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <string>

namespace vellumcaster {

namespace {

constexpr BYTE NONANTIALIASED_QUALITY = 3;
constexpr LONG nDefaultCell = 16; ///< pixels
constexpr LONG nLargestEm = 32767;
constexpr std::size_t nFontsKept = 32;

struct ReleaseDescription {
    void operator()(PangoFontDescription* p) const { pango_font_description_free(p); }
};
using CDescription = std::unique_ptr<PangoFontDescription, ReleaseDescription>;

struct ReleaseMetrics {
    void operator()(PangoFontMetrics* p) const { pango_font_metrics_unref(p); }
};
using CMetrics = std::unique_ptr<PangoFontMetrics, ReleaseMetrics>;

/// The fonts of the machine as Pango sees them, for the next context. A font map remembers every font that it ever gave
/// out, so now and then a new one takes its place; the old one lives as long as the contexts on it.
PangoFontMap* FontMap() {
    constexpr int nContextsOnOneMap = 128;
    static CGObjectPtr<PangoFontMap>& spMap = *new CGObjectPtr<PangoFontMap>;
    static int nContexts = 0;
    if (nContexts++ % nContextsOnOneMap == 0) spMap.reset(pango_cairo_font_map_new());
    return spMap.get();
}

double Pixels(int units) { return static_cast<double>(units) / PANGO_SCALE; }

/// Outlines and widths as they are designed, whatever the desktop says of hinting: a text is as wide at sixteen times
/// its size as it is at its own, and looks alike everywhere.
CGObjectPtr<PangoContext> MakeContext() {
    CGObjectPtr<PangoContext> spContext(pango_font_map_create_context(FontMap()));
    cairo_font_options_t* pOptions = cairo_font_options_create();
    cairo_font_options_set_hint_style(pOptions, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(pOptions, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_antialias(pOptions, CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(spContext.get(), pOptions);
    cairo_font_options_destroy(pOptions);
    pango_context_set_round_glyph_positions(spContext.get(), FALSE);
    return spContext;
}

CDescription Describe(const LOGFONT& logFont, double em) {
    CDescription spDescription(pango_font_description_new());
    const std::string face = ToUtf8(FromUtf8(logFont.lfFaceName));
    pango_font_description_set_family(spDescription.get(), face.empty() ? "Sans" : face.c_str());
    pango_font_description_set_style(spDescription.get(), logFont.lfItalic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    const LONG weight = logFont.lfWeight == 0 ? PANGO_WEIGHT_NORMAL : std::clamp(logFont.lfWeight, 100, 1000);
    pango_font_description_set_weight(spDescription.get(), static_cast<PangoWeight>(weight));
    pango_font_description_set_absolute_size(spDescription.get(), em * PANGO_SCALE);
    return spDescription;
}

/// How high the cell of the font is whose em square has one pixel.
double CellOfOnePixel(const LOGFONT& logFont) {
    constexpr double em = 1024;
    const CGObjectPtr<PangoContext> spContext = MakeContext();
    const CGObjectPtr<PangoFont> spFont(pango_context_load_font(spContext.get(), Describe(logFont, em).get()));
    const CMetrics spMetrics(pango_font_get_metrics(spFont.get(), nullptr));
    const int units = pango_font_metrics_get_ascent(spMetrics.get()) + pango_font_metrics_get_descent(spMetrics.get());
    return units > 0 ? Pixels(units) / em : 1;
}

/// The em height in pixels that a font is asked for in.
double EmHeight(const LOGFONT& logFont) {
    if (logFont.lfHeight < 0) return -static_cast<double>(logFont.lfHeight);
    return (logFont.lfHeight == 0 ? nDefaultCell : logFont.lfHeight) / CellOfOnePixel(logFont);
}

cairo_matrix_t SlopeOf(LONG tenthsOfDegree) {
    cairo_matrix_t slope;
    if (tenthsOfDegree % 3600 == 0)
        cairo_matrix_init_identity(&slope);
    else
        cairo_matrix_init_rotate(&slope, -(tenthsOfDegree % 3600) * std::numbers::pi / 1800);
    return slope;
}

LineBar BarFrom(int unitsAboveBaseline, int unitsHigh) {
    return {static_cast<LONG>(std::lround(-Pixels(unitsAboveBaseline))),
            std::max(1, static_cast<LONG>(std::lround(Pixels(unitsHigh))))};
}

struct LogFontHash {
    std::size_t operator()(const LOGFONT& logFont) const {
        return std::hash<std::string_view>{}({reinterpret_cast<const char*>(&logFont), sizeof logFont});
    }
};

struct LogFontKey : LOGFONT {
    friend bool operator==(const LogFontKey& a, const LogFontKey& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
};

/// The same font with nothing behind the end of its name. \return false where that has none.
bool MakeKey(const LOGFONT& logFont, LogFontKey& key) {
    const void* pEnd = std::memchr(logFont.lfFaceName, 0, sizeof logFont.lfFaceName);
    if (!pEnd) return false;
    static_cast<LOGFONT&>(key) = logFont;
    const auto length = static_cast<std::size_t>(static_cast<const char*>(pEnd) - logFont.lfFaceName);
    std::memset(key.lfFaceName + length, 0, sizeof key.lfFaceName - length);
    return true;
}

using CFonts = CRecentlyUsed<LogFontKey, CLogicalFont, LogFontHash>;

CFonts& Fonts() {
    static CFonts& fonts = *new CFonts(nFontsKept);
    return fonts;
}

std::uint64_t NextFaceId() {
    static std::uint64_t last = 0;
    return ++last;
}

} // namespace

bool HasFonts() {
    const CAutoLock lock(TextLock());
    const FcFontSet* pFonts = FcInit() ? FcConfigGetFonts(nullptr, FcSetSystem) : nullptr;
    return pFonts && pFonts->nfont > 0;
}

std::shared_ptr<CLogicalFont> CLogicalFont::Find(const LOGFONT& logFont) {
    const CAutoLock lock(TextLock());
    LogFontKey key;
    if (!MakeKey(logFont, key)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    std::shared_ptr<CLogicalFont> spFont = Fonts().Find(key);
    if (spFont) return spFont;

    const double em = EmHeight(key);
    if (em > nLargestEm) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    spFont = std::make_shared<CLogicalFont>(key, em);
    Fonts().Insert(key, spFont, 1);
    return spFont;
}

CLogicalFont::CLogicalFont(const LOGFONT& logFont, double em)
    : m_spContext(MakeContext()),
      m_em(em),
      m_bSmooth(logFont.lfQuality != NONANTIALIASED_QUALITY),
      m_Slope(SlopeOf(logFont.lfEscapement)) {
    const CDescription spDescription = Describe(logFont, em);
    m_spFirst.reset(pango_context_load_font(m_spContext.get(), spDescription.get()));
    Measure(logFont);
    const PangoMatrix slope{m_Slope.xx, m_Slope.xy, m_Slope.yx, m_Slope.yy, 0, 0};
    pango_context_set_matrix(m_spContext.get(), &slope);
    m_spFirst.reset(pango_context_load_font(m_spContext.get(), spDescription.get()));
    m_spLayout.reset(pango_layout_new(m_spContext.get()));
    pango_layout_set_font_description(m_spLayout.get(), spDescription.get());
}

void CLogicalFont::Measure(const LOGFONT& logFont) {
    const CMetrics spMetrics(pango_font_get_metrics(m_spFirst.get(), nullptr));
    PangoFontMetrics* p = spMetrics.get();
    m_ascent = Pixels(pango_font_metrics_get_ascent(p));
    m_descent = Pixels(pango_font_metrics_get_descent(p));
    m_averageWidth = Pixels(pango_font_metrics_get_approximate_char_width(p));
    if (logFont.lfUnderline)
        m_Underline =
            BarFrom(pango_font_metrics_get_underline_position(p), pango_font_metrics_get_underline_thickness(p));
    if (logFont.lfStrikeOut)
        m_StrikeOut = BarFrom(pango_font_metrics_get_strikethrough_position(p),
                              pango_font_metrics_get_strikethrough_thickness(p));
}

CLogicalFont::~CLogicalFont() {
    const CAutoLock lock(TextLock());
    m_Faces.clear();
    m_spLayout.reset();
    m_spFirst.reset();
    m_spContext.reset();
}

const std::shared_ptr<const TextFace>& CLogicalFont::FaceOf(PangoFont* pFont) {
    auto& spFace = m_Faces[pFont];
    if (!spFace) spFace = std::make_shared<TextFace>(NextFaceId(), pFont, m_Slope);
    return spFace;
}

} // namespace vellumcaster
