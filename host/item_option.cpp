#include "host/item_option.h"

#include "host/refusal.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace vellumcaster {

namespace {

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t comma = text.find(',');
        fields.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return fields;
        text.remove_prefix(comma + 1);
    }
}

template <class Number>
bool ReadWhole(std::string_view field, Number& number) {
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    return error == std::errc() && end == field.data() + field.size();
}

} // namespace

void ItemPlacement::ApplyTo(OVERLAY_PROPS& props) const {
    props.bShow = 1;
    props.sAlphaValue = alpha;
    props.nPosX = x;
    props.nPosY = y;
    props.dblXDelta = dx;
    props.dblYDelta = dy;
    props.bNoOffscreen = bWrap;
}

CItemOption::CItemOption(std::string_view option, std::string_view text)
    : m_Option(option), m_Text(text), m_Fields(SplitAtCommas(text)) {}

void CItemOption::Refuse(const std::string& what) const {
    throw Refusal(std::string(m_Option) + " " + std::string(m_Text) + ": " + what);
}

LONG CItemOption::Integer(std::string_view name, std::string_view field, LONG lowest, LONG highest) const {
    LONG number = 0;
    if (!ReadWhole(field, number) || number < lowest || number > highest)
        Refuse(std::string(name) + " has to be a whole number from " + std::to_string(lowest) + " to " +
               std::to_string(highest) + ", not \"" + std::string(field) + "\"");
    return number;
}

LONG CItemOption::Coordinate(std::string_view name, std::string_view field) const {
    return Integer(name, field, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max());
}

double CItemOption::Real(std::string_view name, std::string_view field) const {
    double number = 0;
    if (!ReadWhole(field, number) || !std::isfinite(number))
        Refuse(std::string(name) + " has to be a number, not \"" + std::string(field) + "\"");
    return number;
}

bool CItemOption::ReadHex(std::string_view digits, std::size_t nDigits, std::uint32_t& word) const {
    if (digits.size() != nDigits || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
        return false;
    std::from_chars(digits.data(), digits.data() + digits.size(), word, 16);
    return true;
}

bool CItemOption::ReadPlacement(std::string_view field, ItemPlacement& placement) const {
    const auto [name, value] = NamedField(field);
    if (field == "wrap")
        placement.bWrap = true;
    else if (name == "alpha")
        placement.alpha = static_cast<BYTE>(Integer(name, value, 0, 255));
    else if (name == "dx")
        placement.dx = Real(name, value);
    else if (name == "dy")
        placement.dy = Real(name, value);
    else
        return false;
    return true;
}

NamedField::NamedField(std::string_view field) : name(field.substr(0, field.find('='))) {
    if (name.size() < field.size()) value = field.substr(name.size() + 1);
}

} // namespace vellumcaster
