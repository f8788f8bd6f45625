#pragma once

#include "platform/text/text_face.h"

#include <vellumcaster/log_font.h>

#include <optional>
#include <unordered_map>

namespace vellumcaster {

/// A bar along a line, in pixels from the baseline downward.
struct LineBar {
    LONG top;
    LONG height;
};

/// A font that was asked for, with the faces that it has needed so far. Used under the lock.
class CLogicalFont {
public:
    /// Fonts that were used lately are kept.
    /// \return null with the last error: ERROR_INVALID_PARAMETER for a height beyond 32767 pixels or a face name without
    ///         an end. A face that does not exist is no failure; another stands in.
    [[nodiscard]] static std::shared_ptr<CLogicalFont> Find(const LOGFONT& logFont);

    CLogicalFont(const LOGFONT& logFont, double em);
    CLogicalFont(const CLogicalFont&) = delete;
    CLogicalFont& operator=(const CLogicalFont&) = delete;
    ~CLogicalFont();

    /// To lay a text out with. The one layout serves all texts in turn.
    [[nodiscard]] PangoLayout* Layout() const { return m_spLayout.get(); }
    [[nodiscard]] const std::shared_ptr<const TextFace>& FaceOf(PangoFont* pFont);
    /// The face that was asked for, or what stands in for it.
    [[nodiscard]] const std::shared_ptr<const TextFace>& FirstFace() { return FaceOf(m_spFirst.get()); }

    [[nodiscard]] double Em() const { return m_em; }           ///< pixels
    [[nodiscard]] double Ascent() const { return m_ascent; }   ///< pixels
    [[nodiscard]] double Descent() const { return m_descent; } ///< pixels
    [[nodiscard]] double AverageWidth() const { return m_averageWidth; }
    [[nodiscard]] bool IsSmooth() const { return m_bSmooth; }
    [[nodiscard]] const std::optional<LineBar>& Underline() const { return m_Underline; }
    [[nodiscard]] const std::optional<LineBar>& StrikeOut() const { return m_StrikeOut; }
    /// From along the line to the canvas; the identity for a level line.
    [[nodiscard]] const cairo_matrix_t& Slope() const { return m_Slope; }

private:
    void Measure(const LOGFONT& logFont);

    CGObjectPtr<PangoContext> m_spContext;
    CGObjectPtr<PangoFont> m_spFirst;
    CGObjectPtr<PangoLayout> m_spLayout;
    std::unordered_map<PangoFont*, std::shared_ptr<const TextFace>> m_Faces;
    double m_em;
    double m_ascent = 0;
    double m_descent = 0;
    double m_averageWidth = 0;
    bool m_bSmooth;
    std::optional<LineBar> m_Underline;
    std::optional<LineBar> m_StrikeOut;
    cairo_matrix_t m_Slope;
};

/// Whether there is any font to draw with.
[[nodiscard]] bool HasFonts();

} // namespace vellumcaster
