#include "host/panel.h"

#include "host/refusal.h"
#include "image/block_fill.h"
#include "image/plane_layout.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

namespace vellumcaster {

namespace {

constexpr std::size_t nRequiredFields = 5;

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t comma = text.find(',');
        fields.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return fields;
        text.remove_prefix(comma + 1);
    }
}

/// Reads the fields of one panel; what is wrong with them is said together with the panel's text.
class PanelFields {
public:
    explicit PanelFields(std::string_view text) : m_Text(text) {}

    [[noreturn]] void Refuse(const std::string& what) const {
        throw Refusal("--panel " + std::string(m_Text) + ": " + what);
    }

    LONG Integer(std::string_view name, std::string_view field, LONG lowest, LONG highest) const {
        LONG number = 0;
        if (!ReadWhole(field, number) || number < lowest || number > highest)
            Refuse(std::string(name) + " has to be a whole number from " + std::to_string(lowest) + " to " +
                   std::to_string(highest) + ", not \"" + std::string(field) + "\"");
        return number;
    }

    double Real(std::string_view name, std::string_view field) const {
        double number = 0;
        if (!ReadWhole(field, number) || !std::isfinite(number))
            Refuse(std::string(name) + " has to be a number, not \"" + std::string(field) + "\"");
        return number;
    }

    std::uint32_t Color(std::string_view field) const {
        std::uint32_t rgb = 0;
        const bool bHex = field.size() == 7 && field.front() == '#' &&
                          field.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string_view::npos;
        if (!bHex) Refuse("the colour has to be #RRGGBB, not \"" + std::string(field) + "\"");
        std::from_chars(field.data() + 1, field.data() + field.size(), rgb, 16);
        return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
    }

private:
    template <class Number>
    static bool ReadWhole(std::string_view field, Number& number) {
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
        return error == std::errc() && end == field.data() + field.size();
    }

    std::string_view m_Text;
};

void ReadOption(const PanelFields& fields, std::string_view field, Panel& panel) {
    const std::size_t equals = field.find('=');
    const std::string_view name = field.substr(0, equals);
    const std::string_view value = equals == std::string_view::npos ? std::string_view() : field.substr(equals + 1);
    if (field == "wrap")
        panel.bWrap = true;
    else if (name == "alpha")
        panel.alpha = static_cast<BYTE>(fields.Integer(name, value, 0, 255));
    else if (name == "dx")
        panel.dx = fields.Real(name, value);
    else if (name == "dy")
        panel.dy = fields.Real(name, value);
    else
        fields.Refuse("there is no \"" + std::string(field) +
                      "\"; what can follow the colour is alpha=, dx=, dy= and wrap");
}

void Prepare(OverlayLayer& layer, const PictureFormat& pf, const Panel& panel) {
    const std::size_t cb = CPictureFormats::GetBufferSize(pf);
    if (cb == 0) throw Refusal("a panel is above 1 GiB");
    if (FAILED(layer.planeColor.Resize(cb)) || FAILED(layer.planeWeight.Alloc(cb, true, panel.alpha)))
        throw Refusal("there is no memory for a panel of " + std::to_string(cb) + " bytes");
    if (CPictureFormats::FillBlock(layer.planeColor.Data(), &pf, panel.color, nullptr) != S_OK)
        throw Refusal("a panel cannot be drawn in this pixel format");
}

} // namespace

Panel ParsePanel(const std::string& text) {
    constexpr LONG lowest = std::numeric_limits<LONG>::min();
    constexpr LONG highest = std::numeric_limits<LONG>::max();
    const PanelFields fields(text);
    const std::vector<std::string_view> values = SplitAtCommas(text);
    if (values.size() < nRequiredFields) fields.Refuse("what is wanted is X,Y,W,H,#RRGGBB");

    Panel panel;
    panel.x = fields.Integer("X", values[0], lowest, highest);
    panel.y = fields.Integer("Y", values[1], lowest, highest);
    panel.size.cx = fields.Integer("W", values[2], 2, nLargestSide) & ~1;
    panel.size.cy = fields.Integer("H", values[3], 2, nLargestSide) & ~1;
    panel.color = fields.Color(values[4]);
    for (std::size_t i = nRequiredFields; i < values.size(); ++i)
        ReadOption(fields, values[i], panel);
    return panel;
}

OverlayItem MakeFlatItem(const Panel& panel, std::uint32_t dwFormat) {
    OverlayItem item;
    item.eType = eImage;
    item.sizeItem = panel.size;
    item.props.bShow = 1;
    item.props.sAlphaValue = panel.alpha;
    item.props.nPosX = panel.x;
    item.props.nPosY = panel.y;
    item.props.dblXDelta = panel.dx;
    item.props.dblYDelta = panel.dy;
    item.props.bNoOffscreen = panel.bWrap;
    item.SnapToSetPosition();
    Prepare(item.layerFore, OverlayFormat(dwFormat, panel.size), panel);
    return item;
}

} // namespace vellumcaster
