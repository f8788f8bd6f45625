#pragma once

#include "platform/text/logical_font.h"
#include "platform/text/text_format.h"

#include <string>
#include <vector>

namespace vellumcaster {

/// A text broken into lines. Takes the font's one layout, so one lives at a time, under the lock.
///
/// Lines stand below each other in a block; a sloping font turns the block as a whole.
class CTextLayout {
public:
    /// \param text  as `ReadText` gives it. \param rc  whose width breaks lines under DT_WORDBREAK.
    CTextLayout(CLogicalFont& font, const std::string& text, const RECT& rc, DWORD format);

    /// Moves right and bottom of `rc` to the text's.
    void Measure(RECT& rc) const;

    void Place(const RECT& rc, DWORD format, PlacedText& placed);

    /// Pixels from top to bottom, at least 1.
    [[nodiscard]] LONG Height() const;

private:
    struct Line {
        PangoLayoutLine* pLine;
        LONG width;
        LONG baseline; ///< from the top of the block
    };

    struct Box {
        double left;
        double top;
        double width;
        double height;
    };

    void SetUp(const std::string& text, const RECT& rc, DWORD format);
    void CollectLines();
    [[nodiscard]] bool IsLevel() const;
    [[nodiscard]] Box TurnedBox() const;
    void PlaceLine(const Line& line, double left, PlacedText& placed);
    void PlaceRun(const PangoGlyphItem& run, double left, LONG baseline, PlacedText& placed);
    void PlaceBar(const std::optional<LineBar>& bar, const Line& line, double left, PlacedText& placed);
    void PlaceShape(const std::shared_ptr<const TextFace>& spFace, TextShape shape, double along, double down,
                    PlacedText& placed) const;

    CLogicalFont& m_Font;
    std::vector<Line> m_Lines;
    LONG m_nWidth = 0;
    LONG m_nHeight = 0;
    double m_OriginX = 0; ///< of the block on the canvas
    double m_OriginY = 0;
};

} // namespace vellumcaster
