#pragma once

#include "engine/overlay_engine.h"
#include "host/item_option.h"

#include <array>

namespace vellumcaster {

/// A text as the command line asks for it.
struct Caption {
    std::string option; ///< "--text" and so on
    std::string words;  ///< what stood behind it
    ITEM_TYPE eType = eText;
    std::string string; ///< the text, or the picture of a date or a time; empty: the engine's own
    LOGFONT font;
    LONG nTextFormat = 4;
    OVERLAY_PROPS props;
};

/// The options that bring a text.
struct CaptionOption {
    const char* pszName;
    ITEM_TYPE eType;
};
inline constexpr std::array<CaptionOption, 5> captionOptions{{
    {"--text", eText},
    {"--date", eDate},
    {"--time", eTime},
    {"--frame-number", eFrameNumber},
    {"--timecode", eSMPTETimeCode},
}};

/// What may stand behind them, for the help.
inline constexpr const char* pszCaptionFields =
    "x=, y=, font=NAME, height=N (pixels; negative: of the em), weight=1..1000, bold, italic, underline, strikeout, "
    "color=#[AA]RRGGBB, back=, outline=, width=N (of the outline), align=left|center|right, format=N, start=, alpha=, "
    "dx=, "
    "dy=, wrap";

/// Reads the fields behind an option, the last of which may be "text=" (of a date or a time "picture=") with all that
/// follows, commas too. Words without such a field behind `--text` are the text. A `Refusal` says what is wrong.
[[nodiscard]] Caption ParseCaption(const CaptionOption& option, const std::string& words);

/// Draws a caption and puts it on top of an engine's stack, shown. A `Refusal` says why that cannot be.
void AddCaption(COverlayEngine& engine, const Caption& caption);

} // namespace vellumcaster
