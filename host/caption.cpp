#include "host/caption.h"

#include "engine/timecode.h"
#include "host/refusal.h"
#include "platform/com/utf8.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>

namespace vellumcaster {

namespace {

constexpr LONG nMachineClock = -1;
constexpr LONG nDefaultHeight = 40;
constexpr LONG nRegular = 400;
constexpr LONG nBold = 700;

/// "#RRGGBB" or "#AARRGGBB" as 0xAABBGGRR.
LONG ReadColor(const CItemOption& option, const NamedField& field) {
    std::uint32_t argb = 0;
    const std::string_view digits = field.value.substr(std::min<std::size_t>(1, field.value.size()));
    const bool bMarked = !field.value.empty() && field.value.front() == '#';
    if (bMarked && option.ReadHex(digits, 6, argb))
        argb |= 0xFF000000;
    else if (!bMarked || !option.ReadHex(digits, 8, argb))
        option.Refuse(std::string(field.name) + " has to be #RRGGBB or #AARRGGBB, not \"" + std::string(field.value) +
                      "\"");
    return static_cast<LONG>((argb & 0xFF00FF00) | (argb & 0xFF) << 16 | (argb >> 16 & 0xFF));
}

void ReadFace(const CItemOption& option, std::string_view name, LOGFONT& font) {
    if (name.empty() || name.size() >= sizeof font.lfFaceName) option.Refuse("font has to be a name of 1 to 31 bytes");
    std::memset(font.lfFaceName, 0, sizeof font.lfFaceName);
    name.copy(font.lfFaceName, sizeof font.lfFaceName - 1);
}

void ReadAlignment(const CItemOption& option, std::string_view value, Caption& caption) {
    constexpr std::array<std::pair<std::string_view, LONG>, 3> alignments{{{"left", 4}, {"center", 5}, {"right", 6}}};
    const auto* found =
        std::find_if(alignments.begin(), alignments.end(), [value](const auto& entry) { return entry.first == value; });
    if (found == alignments.end()) option.Refuse("align has to be left, center or right");
    caption.nTextFormat = found->second;
}

/// Whole numbers from 0 to their limits, with a mark between them.
template <std::size_t n>
std::optional<std::array<LONG, n>> ReadNumbers(std::string_view text, char mark, const std::array<LONG, n>& limits) {
    std::array<LONG, n> numbers{};
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t end = i + 1 < n ? text.find(mark) : text.size();
        if (end == std::string_view::npos || end == 0 || end > 4) return std::nullopt;
        for (const char c : text.substr(0, end)) {
            if (c < '0' || c > '9') return std::nullopt;
            numbers[i] = numbers[i] * 10 + (c - '0');
        }
        if (numbers[i] > limits[i]) return std::nullopt;
        text.remove_prefix(i + 1 < n ? end + 1 : end);
    }
    return numbers;
}

/// What the counter of each kind starts at.
void ReadStart(const CItemOption& option, std::string_view value, Caption& caption) {
    LONG& start = caption.props.nCounterStart;
    if (caption.eType == eFrameNumber) {
        start = option.Coordinate("start", value);
    } else if (caption.eType == eSMPTETimeCode) {
        const auto code = ReadNumbers<4>(value, ':', {99, 59, 59, 99});
        if (!code) option.Refuse("start has to be HH:MM:SS:FF");
        start = PackTimecode({(*code)[0], (*code)[1], (*code)[2], (*code)[3]});
    } else if (caption.eType == eTime) {
        const auto time = ReadNumbers<3>(value, ':', {23, 59, 59});
        if (!time) option.Refuse("start has to be HH:MM:SS");
        start = PackTimecode({(*time)[0], (*time)[1], (*time)[2], 0});
    } else if (caption.eType == eDate) {
        const auto date = ReadNumbers<3>(value, '-', {9999, 12, 31});
        if (!date) option.Refuse("start has to be YYYY-MM-DD");
        start = PackDate({(*date)[0], (*date)[1], (*date)[2]});
    } else {
        option.Refuse("a fixed text has no start");
    }
}

bool ReadFontField(const CItemOption& option, const NamedField& field, LOGFONT& font) {
    const auto& [name, value] = field;
    const bool bAlone = value.empty();
    if (name == "font")
        ReadFace(option, value, font);
    else if (name == "height")
        font.lfHeight = option.Integer(name, value, -4096, 4096);
    else if (name == "weight")
        font.lfWeight = option.Integer(name, value, 1, 1000);
    else if (name == "bold" && bAlone)
        font.lfWeight = nBold;
    else if (name == "italic" && bAlone)
        font.lfItalic = 1;
    else if (name == "underline" && bAlone)
        font.lfUnderline = 1;
    else if (name == "strikeout" && bAlone)
        font.lfStrikeOut = 1;
    else
        return false;
    return true;
}

bool ReadLookField(const CItemOption& option, const NamedField& field, Caption& caption) {
    const auto& [name, value] = field;
    if (name == "color")
        caption.props.lForeColor = ReadColor(option, field);
    else if (name == "back")
        caption.props.lBackColor = ReadColor(option, field);
    else if (name == "outline")
        caption.props.lOutColor = ReadColor(option, field);
    else if (name == "width")
        caption.props.dblOutlineWidth = option.Real(name, value);
    else if (name == "align")
        ReadAlignment(option, value, caption);
    else if (name == "format")
        caption.nTextFormat = option.Coordinate(name, value);
    else if (name == "start")
        ReadStart(option, value, caption);
    else
        return false;
    return true;
}

/// Takes the field that runs to the end, commas included, off the words.
std::string TakeString(std::string_view& words, std::string_view fieldName) {
    const std::string inside = std::string(",").append(fieldName).append("=");
    std::size_t at = words.starts_with(inside.substr(1)) ? 0 : words.find(inside);
    if (at == std::string_view::npos) return {};
    const std::size_t start = at + (at == 0 ? inside.size() - 1 : inside.size());
    std::string text(words.substr(start));
    words = words.substr(0, at);
    return text;
}

Caption Plain(const CaptionOption& option) {
    Caption caption;
    caption.option = option.pszName;
    caption.eType = option.eType;
    std::strcpy(caption.font.lfFaceName, "Sans");
    caption.font.lfHeight = nDefaultHeight;
    caption.font.lfWeight = nRegular;
    caption.props.lForeColor = static_cast<LONG>(0xFFFFFFFF);
    caption.props.lOutColor = static_cast<LONG>(0xFF000000);
    const bool bClock = option.eType == eDate || option.eType == eTime;
    caption.props.nCounterStart = bClock ? nMachineClock : 0;
    return caption;
}

} // namespace

Caption ParseCaption(const CaptionOption& option, const std::string& words) {
    Caption caption = Plain(option);
    caption.words = words;
    std::string_view rest = words;
    caption.string = TakeString(rest, option.eType == eText ? "text" : "picture");
    const bool bWordsAreTheText = option.eType == eText && rest.size() == words.size();
    if (bWordsAreTheText) {
        caption.string = words;
        rest = {};
    }
    const CItemOption reader(option.pszName, rest);
    ItemPlacement placement;
    for (const std::string_view field : reader.Fields()) {
        const NamedField named(field);
        if (field.empty() && reader.Fields().size() == 1) break;
        if (named.name == "x")
            placement.x = reader.Coordinate(named.name, named.value);
        else if (named.name == "y")
            placement.y = reader.Coordinate(named.name, named.value);
        else if (!ReadFontField(reader, named, caption.font) && !ReadLookField(reader, named, caption) &&
                 !reader.ReadPlacement(field, placement))
            reader.Refuse("there is no \"" + std::string(field) + "\"; there are " + pszCaptionFields);
    }
    placement.ApplyTo(caption.props);
    caption.props.nCounterCur = caption.props.nCounterStart;
    if (option.eType == eText && caption.string.empty()) reader.Refuse("there is no text");
    return caption;
}

void AddCaption(COverlayEngine& engine, const Caption& caption) {
    CBstr bsText;
    HRESULT hr = caption.string.empty() ? S_OK : bsText.Assign(std::u16string_view(FromUtf8(caption.string)));
    OVERLAY_PROPS props = caption.props;
    props.bsTextString = bsText.Get();
    if (SUCCEEDED(hr))
        hr = engine.AddOutlinedText(caption.eType, &caption.font, caption.nTextFormat, &props, nullptr, nullptr);
    if (SUCCEEDED(hr)) return;
    char code[32];
    static_cast<void>(std::snprintf(code, sizeof code, "error 0x%08X", static_cast<unsigned>(hr)));
    throw Refusal(caption.option + " " + caption.words + ": " +
                  (hr == E_NOTIMPL       ? "texts cannot be prepared for this pixel format"
                   : hr == E_OUTOFMEMORY ? "there is not enough memory"
                                         : "it cannot be drawn: " + std::string(code)));
}

} // namespace vellumcaster
