#include "engine/stack_stream.h"

#include "engine/props_codec.h"
#include "platform/kernel/little_endian.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vellumcaster {

namespace {

constexpr std::u16string_view headerText = u"Quillbrook Sceneglaze Data";
constexpr std::size_t cbFont = 60;

/// The stored fields of a font before its name, in their order.
constexpr std::array fontNumbers{&LOGFONT::lfHeight, &LOGFONT::lfWidth, &LOGFONT::lfEscapement, &LOGFONT::lfOrientation,
                                 &LOGFONT::lfWeight};
constexpr std::array fontBytes{&LOGFONT::lfItalic,  &LOGFONT::lfUnderline,     &LOGFONT::lfStrikeOut,
                               &LOGFONT::lfCharSet, &LOGFONT::lfOutPrecision,  &LOGFONT::lfClipPrecision,
                               &LOGFONT::lfQuality, &LOGFONT::lfPitchAndFamily};
static_assert(fontNumbers.size() * 4 + fontBytes.size() + sizeof(LOGFONT::lfFaceName) == cbFont);

bool IsText(ITEM_TYPE eType) { return eType >= eText && eType <= eSMPTETimeCode; }
bool HasPayload(ITEM_TYPE eType) { return IsText(eType) || eType == eImage || eType == eRect; }

// Reading

HRESULT ReadBytes(ISequentialStream& stream, BYTE* p, ULONG cb) {
    while (cb > 0) {
        ULONG cbRead = 0;
        const HRESULT hr = stream.Read(p, cb, &cbRead);
        if (FAILED(hr)) return hr;
        if (cbRead == 0 || cbRead > cb || (hr != S_OK && cbRead < cb)) return E_FAIL;
        p += cbRead;
        cb -= cbRead;
    }
    return S_OK;
}

template <class Number>
HRESULT ReadNumber(ISequentialStream& stream, Number& number) {
    std::array<BYTE, sizeof(Number)> bytes{};
    const HRESULT hr = ReadBytes(stream, bytes.data(), bytes.size());
    if (SUCCEEDED(hr)) number = LoadLittleEndian<Number>(bytes.data());
    return hr;
}

HRESULT ReadString(ISequentialStream& stream, CBstr& bs) {
    DWORD cb = 0;
    HRESULT hr = ReadNumber(stream, cb);
    if (FAILED(hr) || cb == 0) return hr;
    if (cb % sizeof(OLECHAR) != 0 || cb > cbLongestString) return E_FAIL;
    std::vector<BYTE> bytes(cb);
    hr = ReadBytes(stream, bytes.data(), cb);
    if (FAILED(hr)) return hr;
    std::u16string text(cb / sizeof(OLECHAR), u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char16_t>(LoadLittleEndian<std::uint16_t>(bytes.data() + i * sizeof(OLECHAR)));
    if (text.back() != u'\0') return E_FAIL;
    text.pop_back();
    return bs.Assign(std::u16string_view(text));
}

HRESULT ReadSize(ISequentialStream& stream, SIZE& size) {
    const HRESULT hr = ReadNumber(stream, size.cx);
    return SUCCEEDED(hr) ? ReadNumber(stream, size.cy) : hr;
}

HRESULT ReadProps(ISequentialStream& stream, OVERLAY_PROPS& props) {
    std::array<BYTE, cbStoredProps> stored{};
    const HRESULT hr = ReadBytes(stream, stored.data(), stored.size());
    if (SUCCEEDED(hr)) props = DecodeProps(stored);
    return hr;
}

HRESULT ReadFont(ISequentialStream& stream, LOGFONT& font) {
    std::array<BYTE, cbFont> stored{};
    const HRESULT hr = ReadBytes(stream, stored.data(), stored.size());
    if (FAILED(hr)) return hr;
    const BYTE* p = stored.data();
    for (const auto number : fontNumbers) {
        font.*number = LoadLittleEndian<LONG>(p);
        p += sizeof(LONG);
    }
    for (const auto byte : fontBytes)
        font.*byte = *p++;
    std::copy_n(p, sizeof font.lfFaceName, font.lfFaceName);
    return S_OK;
}

HRESULT ReadPayload(ISequentialStream& stream, StoredItem& item) {
    if (!HasPayload(item.eType)) return S_OK;
    const bool bText = IsText(item.eType);
    HRESULT hr = ReadSize(stream, item.size);
    if (SUCCEEDED(hr) && item.eType == eRect) hr = ReadSize(stream, item.sizeEllipse);
    if (SUCCEEDED(hr) && bText) hr = ReadFont(stream, item.logFont);
    if (SUCCEEDED(hr) && bText) hr = ReadNumber(stream, item.nTextFormat);
    return SUCCEEDED(hr) ? ReadString(stream, item.bsName) : hr;
}

// Writing

/// Puts a part of a stream together, so that it is written in one piece.
class CPiece {
public:
    template <class Number>
    void Add(Number number) {
        StoreLittleEndian(Grow(sizeof number), number);
    }
    void AddBytes(std::span<const BYTE> bytes) { std::copy(bytes.begin(), bytes.end(), Grow(bytes.size())); }
    void Add(const SIZE& size) {
        Add(size.cx);
        Add(size.cy);
    }
    void AddString(std::u16string_view text) {
        Add(static_cast<DWORD>((text.size() + 1) * sizeof(OLECHAR)));
        for (const char16_t c : text)
            Add(static_cast<std::uint16_t>(c));
        Add(std::uint16_t{0});
    }
    void AddString(const CBstr& bs) {
        if (bs)
            AddString(bs.View());
        else
            Add(DWORD{0});
    }
    void AddFont(const LOGFONT& font) {
        for (const auto number : fontNumbers)
            Add(font.*number);
        for (const auto byte : fontBytes)
            Add(font.*byte);
        for (const char c : font.lfFaceName)
            Add(c);
    }

    [[nodiscard]] HRESULT WriteTo(ISequentialStream& stream) const {
        ULONG cbWritten = 0;
        const HRESULT hr = stream.Write(m_Bytes.data(), static_cast<ULONG>(m_Bytes.size()), &cbWritten);
        return FAILED(hr) || cbWritten == m_Bytes.size() ? hr : E_FAIL;
    }

private:
    BYTE* Grow(std::size_t cb) {
        m_Bytes.resize(m_Bytes.size() + cb);
        return m_Bytes.data() + m_Bytes.size() - cb;
    }

    std::vector<BYTE> m_Bytes;
};

} // namespace

HRESULT ReadHeader(ISequentialStream& stream, StackHeader& header) {
    CBstr text;
    HRESULT hr = ReadString(stream, text);
    if (FAILED(hr)) return hr;
    if (text.View() != headerText) return E_INVALIDARG;
    hr = ReadNumber(stream, header.nVersion);
    if (FAILED(hr) || header.nVersion > nStackVersion) return hr;
    return ReadNumber(stream, header.cItems);
}

HRESULT ReadItem(ISequentialStream& stream, StoredItem& item) {
    item = StoredItem();
    LONG nType = 0;
    HRESULT hr = ReadNumber(stream, nType);
    item.eType = static_cast<ITEM_TYPE>(nType);
    if (SUCCEEDED(hr)) hr = ReadProps(stream, item.props);
    return SUCCEEDED(hr) ? ReadPayload(stream, item) : hr;
}

HRESULT WriteHeader(ISequentialStream& stream) {
    CPiece piece;
    piece.AddString(headerText);
    piece.Add(nStackVersion);
    return piece.WriteTo(stream);
}

HRESULT WriteCount(ISequentialStream& stream, LONG cItems) {
    CPiece piece;
    piece.Add(cItems);
    return piece.WriteTo(stream);
}

HRESULT WriteItem(ISequentialStream& stream, const OverlayItem& item) {
    CPiece piece;
    piece.Add(static_cast<LONG>(item.eType));
    piece.AddBytes(EncodeProps(item.props));
    if (!HasPayload(item.eType)) return piece.WriteTo(stream);
    piece.Add(item.eType == eRect ? item.sizeRect : item.sizeItem);
    if (item.eType == eRect) piece.Add(item.sizeEllipse);
    if (IsText(item.eType)) {
        piece.AddFont(item.logFont);
        piece.Add(item.nTextFormat);
    }
    piece.AddString(item.bsName);
    return piece.WriteTo(stream);
}

} // namespace vellumcaster
