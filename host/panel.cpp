#include "host/panel.h"

#include "host/refusal.h"
#include "image/block_fill.h"
#include "image/plane_layout.h"

namespace vellumcaster {

namespace {

constexpr std::size_t nRequiredFields = 5;

std::uint32_t ReadColor(const CItemOption& option, std::string_view field) {
    std::uint32_t rgb = 0;
    if (field.empty() || field.front() != '#' || !option.ReadHex(field.substr(1), 6, rgb))
        option.Refuse("the colour has to be #RRGGBB, not \"" + std::string(field) + "\"");
    return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
}

void Prepare(OverlayLayer& layer, const PictureFormat& pf, const Panel& panel) {
    const std::size_t cb = CPictureFormats::GetBufferSize(pf);
    if (cb == 0) throw Refusal("a panel is above 1 GiB");
    if (FAILED(layer.planeColor.Resize(cb)) || FAILED(layer.planeWeight.Alloc(cb, true, panel.placement.alpha)))
        throw Refusal("there is no memory for a panel of " + std::to_string(cb) + " bytes");
    if (CPictureFormats::FillBlock(layer.planeColor.Data(), &pf, panel.color, nullptr) != S_OK)
        throw Refusal("a panel cannot be drawn in this pixel format");
}

} // namespace

Panel ParsePanel(const std::string& text) {
    const CItemOption option("--panel", text);
    const std::vector<std::string_view>& fields = option.Fields();
    if (fields.size() < nRequiredFields) option.Refuse("what is wanted is X,Y,W,H,#RRGGBB");

    Panel panel;
    panel.placement.x = option.Coordinate("X", fields[0]);
    panel.placement.y = option.Coordinate("Y", fields[1]);
    panel.size.cx = option.Integer("W", fields[2], 2, nLargestSide) & ~1;
    panel.size.cy = option.Integer("H", fields[3], 2, nLargestSide) & ~1;
    panel.color = ReadColor(option, fields[4]);
    for (std::size_t i = nRequiredFields; i < fields.size(); ++i)
        if (!option.ReadPlacement(fields[i], panel.placement))
            option.Refuse("there is no \"" + std::string(fields[i]) +
                          "\"; what can follow the colour is alpha=, dx=, dy= and wrap");
    return panel;
}

OverlayItem MakeFlatItem(const Panel& panel, std::uint32_t dwFormat) {
    OverlayItem item;
    item.eType = eImage;
    item.sizeItem = panel.size;
    panel.placement.ApplyTo(item.props);
    item.SnapToSetPosition();
    Prepare(item.layerFore, OverlayFormat(dwFormat, panel.size), panel);
    return item;
}

} // namespace vellumcaster
