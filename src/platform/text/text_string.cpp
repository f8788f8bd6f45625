#include "platform/text/text_string.h"

#include "platform/com/utf8.h"
#include "platform/text/text_format.h"

#include <algorithm>
#include <cstring>

namespace vellumcaster {

namespace {

constexpr std::size_t cbLongestText = 65535;

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void UnifyBreaks(std::string& text) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool bReturn = text[i] == '\r';
        text[end++] = bReturn ? '\n' : text[i];
        if (bReturn && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    }
    text.resize(end);
}

} // namespace

bool ReadText(const char* pszText, DWORD format, std::string& text) {
    const std::size_t cb = strnlen(pszText, cbLongestText + 1);
    if (cb > cbLongestText) return false;
    const std::string_view raw(pszText, cb);
    text = IsAscii(raw) ? std::string(raw) : ToUtf8(FromUtf8(raw));
    UnifyBreaks(text);
    if (text.ends_with('\n')) text.pop_back();
    if ((format & DT_EXPANDTABS) == 0) std::replace(text.begin(), text.end(), '\t', ' ');
    if ((format & DT_SINGLELINE) != 0) std::replace(text.begin(), text.end(), '\n', ' ');
    return true;
}

std::size_t LongestLine(const std::string& text) {
    std::size_t longest = 0;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        longest = std::max(longest, end - begin);
        begin = end + 1;
    }
    return longest;
}

} // namespace vellumcaster
