#include "engine/props_codec.h"

#include "platform/kernel/little_endian.h"

#include <type_traits>

namespace vellumcaster {

namespace {

/// Calls `visit(offset, field)` for every stored field of a record, const or not.
template <class Props, class Visit>
void ForEachStoredField(Props& props, const Visit& visit) {
    visit(0, props.bShow);
    visit(4, props.nCounterStart);
    visit(8, props.nCounterCur);
    visit(12, props.nPosX);
    visit(16, props.nPosY);
    visit(24, props.dblXDelta);
    visit(32, props.dblYDelta);
    visit(40, props.bNoOffscreen);
    visit(44, props.lForeColor);
    visit(48, props.lBackColor);
    visit(52, props.lOutColor);
    visit(56, props.sAlphaValue);
    visit(64, props.nColorKeyMin);
    visit(68, props.nColorKeyMax);
    visit(72, props.dblOutlineWidth);
}

} // namespace

std::array<BYTE, cbStoredProps> EncodeProps(const OVERLAY_PROPS& props) {
    std::array<BYTE, cbStoredProps> stored{};
    ForEachStoredField(
        props, [&stored](std::size_t offset, const auto& field) { StoreLittleEndian(stored.data() + offset, field); });
    return stored;
}

OVERLAY_PROPS DecodeProps(std::span<const BYTE, cbStoredProps> stored) {
    OVERLAY_PROPS props;
    ForEachStoredField(props, [&stored](std::size_t offset, auto& field) {
        field = LoadLittleEndian<std::decay_t<decltype(field)>>(stored.data() + offset);
    });
    return props;
}

} // namespace vellumcaster
