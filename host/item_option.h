#pragma once

#include <vellumcaster/item.h>

#include <string>
#include <string_view>
#include <vector>

namespace vellumcaster {

/// Where an item of the command line stands, how it moves and how much of it shows.
struct ItemPlacement {
    LONG x = 0; ///< pixels, any value
    LONG y = 0;
    BYTE alpha = 255; ///< 0 invisible to 255 opaque
    double dx = 0.0;  ///< pixels a frame
    double dy = 0.0;
    bool bWrap = false; ///< comes in again at the opposite edge

    /// Shows an item so.
    void ApplyTo(OVERLAY_PROPS& props) const;
};

/// The text behind one option, fields with commas between them. What is wrong with a field is said together with the
/// whole text, in a `Refusal`.
class CItemOption {
public:
    /// \param option  "--panel"; \param text  alive as long as this.
    CItemOption(std::string_view option, std::string_view text);

    [[nodiscard]] const std::vector<std::string_view>& Fields() const { return m_Fields; }

    [[noreturn]] void Refuse(const std::string& what) const;
    [[nodiscard]] LONG Integer(std::string_view name, std::string_view field, LONG lowest, LONG highest) const;
    /// Any whole number of pixels.
    [[nodiscard]] LONG Coordinate(std::string_view name, std::string_view field) const;
    [[nodiscard]] double Real(std::string_view name, std::string_view field) const;
    /// The digits of a word in base 16, without a sign, a mark or blanks; they have to be `nDigits`.
    [[nodiscard]] bool ReadHex(std::string_view digits, std::size_t nDigits, std::uint32_t& word) const;

    /// Reads a field "alpha=", "dx=", "dy=" or "wrap". \return false for any other.
    [[nodiscard]] bool ReadPlacement(std::string_view field, ItemPlacement& placement) const;

private:
    std::string_view m_Option;
    std::string_view m_Text;
    std::vector<std::string_view> m_Fields;
};

/// "name=value" in its two parts; without a sign the value is empty.
struct NamedField {
    explicit NamedField(std::string_view field);

    std::string_view name;
    std::string_view value;
};

} // namespace vellumcaster
