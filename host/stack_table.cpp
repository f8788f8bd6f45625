#include "host/stack_table.h"

#include "host/plain_text.h"
#include "host/saved_stack.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

namespace vellumcaster {

namespace {

constexpr std::size_t nColumns = 11;
using Row = std::array<std::string, nColumns>;

const char* KindOf(ITEM_TYPE eType) {
    constexpr std::array kinds{"picture", "rectangle", "text", "date", "time", "frame number", "timecode"};
    const auto n = static_cast<std::size_t>(eType);
    return n < kinds.size() ? kinds[n] : "unknown";
}

template <class... Values>
std::string Format(const char* pszFormat, Values... values) {
    std::array<char, 128> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), pszFormat, values...));
    return text.data();
}

/// #RRGGBB, with the alpha behind it where the colour is not opaque.
std::string ColorText(LONG color) {
    const auto word = static_cast<DWORD>(color);
    const DWORD alpha = word >> 24;
    if (alpha == 0) return "-";
    const std::string rgb = Format("#%02X%02X%02X", word & 0xFF, word >> 8 & 0xFF, word >> 16 & 0xFF);
    return alpha == 255 ? rgb : rgb + Format("/%u", alpha);
}

std::string OutlineText(const OVERLAY_PROPS& props) {
    if (props.dblOutlineWidth == 0.0) return "-";
    return Format("%g ", props.dblOutlineWidth) + ColorText(props.lOutColor);
}

std::string FontText(const StoredItem& item) {
    const char* pszFace = item.logFont.lfFaceName;
    const std::string_view face(pszFace,
                                strnlen(pszFace, sizeof item.logFont.lfFaceName)); // of a file, perhaps endless
    return PlainText(face.empty() ? "default" : ToUtf8(FromUtf8(face))) + Format(" %d", item.logFont.lfHeight);
}

Row RowOf(std::size_t nPlace, const StoredItem& item) {
    const OVERLAY_PROPS& props = item.props;
    const bool bText = item.eType >= eText && item.eType <= eSMPTETimeCode;
    const bool bMoves = props.dblXDelta != 0.0 || props.dblYDelta != 0.0;
    return {Format("%zu", nPlace),
            KindOf(item.eType),
            props.bShow ? "yes" : "no",
            Format("%d,%d", props.nPosX, props.nPosY),
            item.size == SIZE{} ? "-" : Format("%dx%d", item.size.cx, item.size.cy),
            Format("%d", int{props.sAlphaValue}),
            bMoves ? Format("%g,%g%s", props.dblXDelta, props.dblYDelta, props.bNoOffscreen ? " wraps" : "") : "-",
            bText ? ColorText(props.lForeColor) + " on " + ColorText(props.lBackColor) : "-",
            bText ? OutlineText(props) : "-",
            bText ? FontText(item) : "-",
            PlainText(item.bsName.View())};
}

/// Characters, not bytes.
std::size_t WidthOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

void Print(const std::vector<Row>& rows) {
    std::array<std::size_t, nColumns> widths{};
    for (const Row& row : rows)
        for (std::size_t i = 0; i < nColumns; ++i)
            widths[i] = std::max(widths[i], WidthOf(row[i]));
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < nColumns; ++i)
            line += row[i] + std::string(i + 1 < nColumns ? widths[i] - WidthOf(row[i]) + 2 : 0, ' ');
        std::puts(line.c_str());
    }
}

} // namespace

void PrintStack(const std::string& path) {
    std::vector<Row> rows{{"place", "kind", "shown", "position", "size", "alpha", "movement", "colours", "outline",
                           "font", "name or text"}};
    try {
        ReadStack(path, [&rows](const StoredItem& item) { rows.push_back(RowOf(rows.size() - 1, item)); });
    } catch (...) {
        if (rows.size() > 1) Print(rows);
        throw;
    }
    Print(rows);
}

} // namespace vellumcaster
