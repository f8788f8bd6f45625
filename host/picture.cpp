#include "host/picture.h"

#include "host/refusal.h"
#include "image/picture_persist.h"
#include "image/primitives/primitives.h"
#include "platform/com/utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace vellumcaster {

namespace {

constexpr std::string_view optionName = "--image";

/// A key of eight digits, or of six with an alpha of 0.
bool ReadKey(const CItemOption& option, std::string_view digits, LONG& key) {
    std::uint32_t word = 0;
    if (!option.ReadHex(digits, 8, word) && !option.ReadHex(digits, 6, word)) return false;
    key = static_cast<LONG>(word);
    return true;
}

void ReadColorKey(const CItemOption& option, std::string_view value, Picture& picture) {
    if (value == "topleft") {
        picture.nColorKeyMin = nTopLeftKeyMin;
        picture.nColorKeyMax = nTopLeftKeyMax;
        return;
    }
    const std::size_t dash = value.find('-');
    if (dash == std::string_view::npos || !ReadKey(option, value.substr(0, dash), picture.nColorKeyMin) ||
        !ReadKey(option, value.substr(dash + 1), picture.nColorKeyMax))
        option.Refuse("key has to be topleft, or MIN-MAX with each as AARRGGBB or RRGGBB, not \"" + std::string(value) +
                      "\"");
}

void ReadField(const CItemOption& option, std::string_view field, Picture& picture) {
    const auto [name, value] = NamedField(field);
    if (name == "x")
        picture.placement.x = option.Coordinate(name, value);
    else if (name == "y")
        picture.placement.y = option.Coordinate(name, value);
    else if (name == "w")
        picture.size.cx = option.Integer(name, value, 2, nLargestSide);
    else if (name == "h")
        picture.size.cy = option.Integer(name, value, 2, nLargestSide);
    else if (name == "key")
        ReadColorKey(option, value, picture);
    else if (!option.ReadPlacement(field, picture.placement))
        option.Refuse("there is no \"" + std::string(field) +
                      "\"; what can follow the file is x=, y=, w=, h=, alpha=, key=, dx=, dy= and wrap");
}

struct FreeTaskMemory {
    void operator()(void* p) const { CoTaskMemFree(p); }
};

/// A file's pixels with their record.
struct Bitmap {
    BITMAPINFOHEADER header;
    std::unique_ptr<void, FreeTaskMemory> spPixels;

    [[nodiscard]] BYTE* Pixels() const { return static_cast<BYTE*>(spPixels.get()); }
    [[nodiscard]] LONG Height() const { return std::abs(header.biHeight); }
};

struct Reason {
    HRESULT hr;
    const char* pszText;
};

constexpr Reason loadReasons[] = {
    {static_cast<HRESULT>(0x80070002), "there is no such file"},
    {static_cast<HRESULT>(0x80070003), "there is no such file"},
    {static_cast<HRESULT>(0x80070005), "it may not be read, or is no file"},
    {static_cast<HRESULT>(0x80070020), "another program has it open"},
    {E_FAIL, "it is no bitmap without compression and colour table, or it is cut off"},
    {E_OUTOFMEMORY, "there is not enough memory"},
};

constexpr Reason addReasons[] = {
    {E_INVALIDARG, "only bitmaps of 24 or 32 bits a pixel, of at least 2x2 pixels, can be shown"},
    {E_NOTIMPL, "pictures cannot be prepared for this pixel format"},
    {E_OUTOFMEMORY, "there is not enough memory"},
};

template <std::size_t n>
void RefuseFailure(const Picture& picture, HRESULT hr, const Reason (&reasons)[n]) {
    if (SUCCEEDED(hr)) return;
    const auto* found =
        std::find_if(std::begin(reasons), std::end(reasons), [hr](const Reason& r) { return r.hr == hr; });
    char code[32];
    static_cast<void>(std::snprintf(code, sizeof code, "error 0x%08X", static_cast<unsigned>(hr)));
    CItemOption(optionName, picture.text).Refuse(found != std::end(reasons) ? found->pszText : code);
}

Bitmap Load(const Picture& picture) {
    Bitmap bitmap;
    void* pPixels = nullptr;
    RefuseFailure(picture, CPicturePersist::LoadFromFile(picture.path.c_str(), &bitmap.header, &pPixels), loadReasons);
    bitmap.spPixels.reset(pPixels);
    return bitmap;
}

/// The wanted size with a side that was left out in the bitmap's proportions.
SIZE WantedSize(const Picture& picture, const Bitmap& bitmap) {
    const auto inProportion = [](LONG side, LONG of, LONG to) {
        return static_cast<LONG>(
            std::clamp(std::round(static_cast<double>(side) * to / of), 2.0, double{nLargestSide}));
    };
    SIZE size = picture.size;
    if (size.cx == 0 && size.cy != 0) size.cx = inProportion(size.cy, bitmap.Height(), bitmap.header.biWidth);
    if (size.cy == 0 && size.cx != 0) size.cy = inProportion(size.cx, bitmap.header.biWidth, bitmap.Height());
    return size;
}

/// Many programs leave the fourth byte of a pixel 0 where there is no transparency: a bitmap of which nothing at all
/// would show means to be opaque.
void ShowWhereNothingWouldShow(Bitmap& bitmap) {
    if (bitmap.header.biBitCount != 32) return;
    BYTE* pPixels = bitmap.Pixels();
    const std::size_t cb = bitmap.header.biSizeImage;
    for (std::size_t i = 3; i < cb; i += 4)
        if (pPixels[i] != 0) return;
    for (std::size_t i = 3; i < cb; i += 4)
        pPixels[i] = 0xFF;
}

/// Scaling takes bitmaps from the bottom up alone.
void TurnBottomUp(Bitmap& bitmap) {
    const bool bWords = bitmap.header.biBitCount == 32;
    const PrimSize size{bitmap.header.biWidth, bitmap.Height()};
    const auto pitch = static_cast<std::int32_t>(bitmap.header.biSizeImage / static_cast<DWORD>(bitmap.Height()));
    if (bWords)
        static_cast<void>(ippiMirror_8u_C4IR(bitmap.Pixels(), pitch, size, flipRows));
    else
        static_cast<void>(ippiMirror_8u_C3IR(bitmap.Pixels(), pitch, size, flipRows));
    bitmap.header.biHeight = bitmap.Height();
}

/// A stack that is used from another folder has to find its pictures.
std::string NameOf(const Picture& picture) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(picture.path, error);
    return error ? picture.path : absolute.string();
}

} // namespace

Picture ParsePicture(const std::string& text) {
    const CItemOption option(optionName, text);
    Picture picture;
    picture.text = text;
    picture.path = option.Fields().front();
    if (picture.path.empty()) option.Refuse("what is wanted is FILE.bmp");
    for (std::size_t i = 1; i < option.Fields().size(); ++i)
        ReadField(option, option.Fields()[i], picture);
    return picture;
}

Cookie AddPicture(COverlayEngine& engine, const Picture& picture) {
    OVERLAY_PROPS props;
    props.nColorKeyMin = picture.nColorKeyMin;
    props.nColorKeyMax = picture.nColorKeyMax;
    picture.placement.ApplyTo(props);
    return AddPicture(engine, picture, props);
}

Cookie AddPicture(COverlayEngine& engine, const Picture& picture, const OVERLAY_PROPS& props) {
    Bitmap bitmap = Load(picture);
    ShowWhereNothingWouldShow(bitmap);
    SIZE size = WantedSize(picture, bitmap);
    if (size != SIZE{} && bitmap.header.biHeight < 0) TurnBottomUp(bitmap);

    ImageInfoTag info;
    info.biWidth = bitmap.header.biWidth;
    info.biHeight = bitmap.header.biHeight;
    info.biBitCount = bitmap.header.biBitCount;
    info.biCompression = bitmap.header.biCompression;
    info.biSizeImage = bitmap.header.biSizeImage;
    CBstr bsName;
    RefuseFailure(picture, bsName.Assign(std::u16string_view(FromUtf8(NameOf(picture)))), addReasons);
    Cookie cookie = 0;
    RefuseFailure(picture,
                  engine.AddImageFromMemory2(&info, info.biSizeImage, bitmap.Pixels(), bsName.Get(),
                                             picture.nColorKeyMin, picture.nColorKeyMax, &size, &cookie),
                  addReasons);
    RefuseFailure(picture, engine.SetItemProps(cookie, &props, 0), addReasons);
    return cookie;
}

} // namespace vellumcaster
