#include "image/bmp_headers.h"

#include <concepts>
#include <type_traits>

namespace vellumcaster {

namespace {

/// A record of the given kind, const or not.
template <class Header, class Record>
concept RecordOf = std::same_as<std::remove_const_t<Header>, Record>;

/// Calls `visit(offset, field)` for every stored field.
template <RecordOf<BITMAPFILEHEADER> Header, class Visit>
void ForEachField(Header& header, const Visit& visit) {
    visit(0, header.bfType);
    visit(2, header.bfSize);
    visit(10, header.bfOffBits);
}

template <RecordOf<BITMAPINFOHEADER> Header, class Visit>
void ForEachField(Header& header, const Visit& visit) {
    visit(0, header.biSize);
    visit(4, header.biWidth);
    visit(8, header.biHeight);
    visit(12, header.biPlanes);
    visit(14, header.biBitCount);
    visit(16, header.biCompression);
    visit(20, header.biSizeImage);
    visit(24, header.biXPelsPerMeter);
    visit(28, header.biYPelsPerMeter);
    visit(32, header.biClrUsed);
    visit(36, header.biClrImportant);
}

template <RecordOf<BmpMasks> Masks, class Visit>
void ForEachField(Masks& masks, const Visit& visit) {
    for (std::size_t i = 0; i < masks.size(); ++i)
        visit(sizeof masks[i] * i, masks[i]);
}

template <class Header, std::size_t cb>
void Encode(const Header& header, std::span<BYTE, cb> stored) {
    ForEachField(header, [stored](std::size_t offset, const auto& field) {
        for (std::size_t i = 0; i < sizeof field; ++i)
            stored[offset + i] = static_cast<BYTE>(static_cast<DWORD>(field) >> (8 * i));
    });
}

template <class Header, std::size_t cb>
void Decode(std::span<const BYTE, cb> stored, Header& header) {
    ForEachField(header, [stored](std::size_t offset, auto& field) {
        DWORD bits = 0;
        for (std::size_t i = 0; i < sizeof field; ++i)
            bits |= DWORD{stored[offset + i]} << (8 * i);
        field = static_cast<std::remove_reference_t<decltype(field)>>(bits);
    });
}

} // namespace

void EncodeBmpHeader(const BITMAPFILEHEADER& header, std::span<BYTE, cbBmpFileHeader> stored) {
    Encode(header, stored);
}

void EncodeBmpHeader(const BITMAPINFOHEADER& header, std::span<BYTE, cbBmpInfoHeader> stored) {
    Encode(header, stored);
}

void EncodeBmpHeader(const BmpMasks& masks, std::span<BYTE, cbBmpMasks> stored) { Encode(masks, stored); }

void DecodeBmpHeader(std::span<const BYTE, cbBmpFileHeader> stored, BITMAPFILEHEADER& header) {
    Decode(stored, header);
}

void DecodeBmpHeader(std::span<const BYTE, cbBmpInfoHeader> stored, BITMAPINFOHEADER& header) {
    Decode(stored, header);
}

} // namespace vellumcaster
