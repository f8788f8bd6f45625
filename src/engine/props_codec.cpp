#include "engine/props_codec.h"

#include <bit>
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

/// The unsigned integer that has the bits of a field.
template <class Field>
using BitsOf = std::conditional_t<sizeof(Field) == 8, std::uint64_t,
                                  std::conditional_t<sizeof(Field) == 4, std::uint32_t, std::uint16_t>>;

} // namespace

std::array<BYTE, cbStoredProps> EncodeProps(const OVERLAY_PROPS& props) {
    std::array<BYTE, cbStoredProps> stored{};
    ForEachStoredField(props, [&stored](std::size_t offset, const auto& field) {
        auto bits = std::bit_cast<BitsOf<std::decay_t<decltype(field)>>>(field);
        for (std::size_t i = 0; i < sizeof(bits); ++i)
            stored[offset + i] = static_cast<BYTE>(bits >> (8 * i));
    });
    return stored;
}

OVERLAY_PROPS DecodeProps(std::span<const BYTE, cbStoredProps> stored) {
    OVERLAY_PROPS props;
    ForEachStoredField(props, [&stored](std::size_t offset, auto& field) {
        using Field = std::decay_t<decltype(field)>;
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < sizeof(Field); ++i)
            bits |= std::uint64_t{stored[offset + i]} << (8 * i);
        field = std::bit_cast<Field>(static_cast<BitsOf<Field>>(bits));
    });
    return props;
}

} // namespace vellumcaster
