#pragma once

#include <vellumcaster/bstr.h>
#include <vellumcaster/checked.h>
#include <vellumcaster/control.h>
#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/create.h>
#include <vellumcaster/frame_mixer.h>
#include <vellumcaster/persist.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The control interfaces for applications in C++: owners for references and strings, failures as `Error`.
namespace vellumcaster {

/// A colour; each part 0 to 255, alpha 255 is opaque.
struct Color {
    BYTE r = 0;
    BYTE g = 0;
    BYTE b = 0;
    BYTE a = 255;

    /// 0xAABBGGRR, as the calls have it.
    [[nodiscard]] constexpr LONG Packed() const {
        return static_cast<LONG>(DWORD{a} << 24 | DWORD{b} << 16 | DWORD{g} << 8 | DWORD{r});
    }
};

/// A text that is handed in: UTF-8 or UTF-16. Bytes that are no UTF-8 become U+FFFD.
class Text {
public:
    Text(std::string_view utf8) : m_text(FromUtf8(utf8)) {}         // NOLINT(google-explicit-constructor)
    Text(std::u16string_view utf16) : m_text(utf16) {}              // NOLINT(google-explicit-constructor)
    Text(const char* utf8) : Text(std::string_view(utf8)) {}        // NOLINT(google-explicit-constructor)
    Text(const char16_t* utf16) : m_text(utf16) {}                  // NOLINT(google-explicit-constructor)
    Text(const std::string& utf8) : Text(std::string_view(utf8)) {} // NOLINT(google-explicit-constructor)

    [[nodiscard]] const std::u16string& Utf16() const { return m_text; }

private:
    std::u16string m_text;
};

/// How a text looks and where it stands.
struct TextOptions {
    std::string_view face = "Sans"; ///< UTF-8, at most 31 bytes count; empty: the default font, which has one size
    LONG height = 32;               ///< pixels: positive the cell, negative the em square
    LONG weight = 400;              ///< 400 regular, 700 bold
    bool italic = false;
    Color color{255, 255, 255, 255};
    Color panel{0, 0, 0, 0}; ///< behind the text
    Color outline{0, 0, 0, 255};
    double outlineWidth = 0; ///< pixels; 0: none
    LONG x = 0;              ///< pixels from the frame's left edge, any value
    LONG y = 0;              ///< pixels from the frame's top edge, any value
};

/// What a callback learns of the frame that its item is about to be drawn on.
struct ItemFrame {
    OVERLAY_PROPS& props;       ///< to be read and changed; leave `bsTextString` alone
    const LONGLONG* mediaStart; ///< media times, both or neither null
    const LONGLONG* mediaEnd;
    const REFERENCE_TIME* start; ///< units of 100 ns; null where the frame has none
    const REFERENCE_TIME* end;
};

namespace detail {

struct FreeString {
    void operator()(OLECHAR* p) const { SysFreeString(p); }
};
using OwnedString = std::unique_ptr<OLECHAR, FreeString>;

inline OwnedString MakeString(std::u16string_view text) {
    OwnedString bs(SysAllocStringLen(text.data(), static_cast<DWORD>(text.size())));
    if (!bs) throw Error(E_OUTOFMEMORY);
    return bs;
}

/// A function as the callback of an item.
class FunctionCallback final : public IVellumcasterCallback {
public:
    explicit FunctionCallback(std::function<bool(ItemFrame&)> call) : m_call(std::move(call)) {}

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (!ppv) return E_POINTER;
        *ppv = iid == IUnknown::IID || iid == IVellumcasterCallback::IID ? this : nullptr;
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++m_nReferences; }
    ULONG Release() override {
        const ULONG n = --m_nReferences;
        if (n == 0) delete this;
        return n;
    }
    HRESULT OnFrameOverlay(OVERLAY_PROPS* pProps, LONGLONG* pllStart, LONGLONG* pllEnd, REFERENCE_TIME* prtStart,
                           REFERENCE_TIME* prtEnd) override {
        try {
            ItemFrame frame{*pProps, pllStart, pllEnd, prtStart, prtEnd};
            return m_call(frame) ? S_OK : S_FALSE;
        } catch (...) {
            return E_FAIL;
        }
    }

private:
    ~FunctionCallback() = default;

    std::function<bool(ItemFrame&)> m_call;
    std::atomic<ULONG> m_nReferences{0};
};

} // namespace detail

/// One item of a stack, named by its cookie. It keeps the stack alive, and does not take the item off when it goes. Calls
/// may come from any thread, while frames flow; they throw `Error` with E_INVALIDARG once the item is gone.
class Item {
public:
    Item(CComPtr<IVellumcaster2> control, LONG cookie) : m_spControl(std::move(control)), m_nCookie(cookie) {}

    [[nodiscard]] LONG Cookie() const { return m_nCookie; }

    void Show() { OrThrow(m_spControl->ShowItem2(m_nCookie, 1)); }
    void Hide() { OrThrow(m_spControl->ShowItem2(m_nCookie, 0)); }
    /// Pixels from the frame's left and top edge, any values.
    void MoveTo(LONG x, LONG y) { OrThrow(m_spControl->SetItemPos2(m_nCookie, x, y)); }
    /// Pixels a frame. \param stay  an item that has left the frame comes in again at the opposite edge.
    void SetMovement(double x, double y, bool stay = true) {
        OrThrow(m_spControl->SetItemMovement(m_nCookie, x, y, stay));
    }
    /// 0 invisible to 255 opaque; other values are brought to the nearer of the two.
    void SetAlpha(std::int16_t alpha) { OrThrow(m_spControl->SetItemAlpha2(m_nCookie, alpha)); }
    /// Pixels; 0, 0 for a frame number or a timecode before its first frame.
    [[nodiscard]] SIZE Size() const {
        SIZE size;
        OrThrow(m_spControl->GetItemSize(m_nCookie, &size));
        return size;
    }
    /// The item's properties; `bsTextString` is null, for the name see `Name`.
    [[nodiscard]] OVERLAY_PROPS Props() const {
        OVERLAY_PROPS props;
        OrThrow(m_spControl->GetItemProps(m_nCookie, &props));
        SysFreeString(std::exchange(props.bsTextString, nullptr));
        return props;
    }
    /// A text's words, a date's or a time's picture, a picture's file, or a label; UTF-16.
    [[nodiscard]] std::u16string Name() const {
        OVERLAY_PROPS props;
        OrThrow(m_spControl->GetItemProps(m_nCookie, &props));
        const detail::OwnedString name(props.bsTextString);
        return name ? std::u16string(name.get(), SysStringLen(name.get())) : std::u16string();
    }
    /// Reads the properties, lets `change(OVERLAY_PROPS&)` change them, and applies them all. Another thread's change
    /// between the two is lost. `change` leaves `bsTextString` alone.
    template <class Change>
    void ChangeProps(const Change& change) {
        OVERLAY_PROPS props;
        OrThrow(m_spControl->GetItemProps(m_nCookie, &props));
        const detail::OwnedString name(props.bsTextString);
        change(props);
        OrThrow(m_spControl->SetItemProps(m_nCookie, &props, 0));
    }
    /// Calls `call(ItemFrame&)` for each frame on the thread that mixes it, with the item list locked: it must not wait
    /// for another thread that calls the stack. It returns whether its changes apply; one that throws is dropped. An
    /// empty function takes the callback off.
    void SetCallback(std::function<bool(ItemFrame&)> call) {
        CComPtr<IVellumcasterCallback> spCallback;
        if (call) spCallback = new detail::FunctionCallback(std::move(call));
        OrThrow(m_spControl->SetItemCallback(m_nCookie, spCallback.Get()));
    }
    void Remove() { OrThrow(m_spControl->RemoveItem2(m_nCookie)); }

private:
    CComPtr<IVellumcaster2> m_spControl;
    LONG m_nCookie;
};

/// A stack of items and the frames that it is drawn on. A copy is the same stack; copies may be used on any threads.
/// Each call throws `Error` for what stands with the call of `IVellumcaster2` or `IFrameMixer` that it makes.
class Overlay {
public:
    /// \return a stack for frames of this format, or why there is none.
    static Result<Overlay> Create(const FrameFormat& format) {
        try {
            return Overlay(format);
        } catch (const Error& error) {
            return error;
        }
    }

    explicit Overlay(const FrameFormat& format) {
        OrThrow(CreateFrameMixer(m_spMixer.Put()));
        OrThrow(m_spMixer.QueryInterface(m_spControl));
        OrThrow(m_spMixer->SetFormat(&format));
    }

    /// Puts the picture of a bitmap file on top, hidden, at (0, 0). \param path  24 or 32 bits, not compressed.
    /// \param size  pixels; a 0 in either: the picture's own. \param topLeftTransparent  the first pixel's colour is.
    Item AddPicture(const Text& path, SIZE size = {}, bool topLeftTransparent = false) {
        LONG cookie = 0;
        OrThrow(m_spControl->AddImage2(detail::MakeString(path.Utf16()).get(), -1, topLeftTransparent ? 0 : -1, &size,
                                       &cookie));
        return {m_spControl, cookie};
    }
    /// The same with a picture in memory, which is copied. \param pixels  `info.biSizeImage` bytes.
    Item AddPicture(ImageInfoTag info, const BYTE* pixels, SIZE size = {}, bool topLeftTransparent = false) {
        LONG cookie = 0;
        OrThrow(m_spControl->AddImageFromMemory2(&info, info.biSizeImage, pixels, nullptr, -1,
                                                 topLeftTransparent ? 0 : -1, &size, &cookie));
        return {m_spControl, cookie};
    }

    /// Each puts a text on top, shown. \param picture  how a date or a time is written.
    Item AddText(const Text& text, const TextOptions& options = {}) { return Add(eText, text, options); }
    Item AddDate(const TextOptions& options = {}, const Text& picture = u"") { return Add(eDate, picture, options); }
    Item AddTime(const TextOptions& options = {}, const Text& picture = u"") { return Add(eTime, picture, options); }
    Item AddFrameNumber(const TextOptions& options = {}) { return Add(eFrameNumber, u"", options); }
    Item AddTimecode(const TextOptions& options = {}) { return Add(eSMPTETimeCode, u"", options); }

    [[nodiscard]] LONG Count() const {
        LONG n = 0;
        OrThrow(m_spControl->GetItemCount2(&n));
        return n;
    }
    /// The items as they stand, from the bottom of the stack up.
    [[nodiscard]] std::vector<Item> Items() const {
        std::vector<Item> items;
        LONG cookie = 0;
        ITEM_TYPE type = eText;
        for (LONG i = 0;; ++i) {
            BSTR name = nullptr;
            if (FAILED(m_spControl->GetItemInfo2(i, &cookie, &name, &type))) return items;
            SysFreeString(name);
            items.emplace_back(m_spControl, cookie);
        }
    }

    /// Keeps the stack in a file, which then holds all of it, or what it held before.
    /// \param utf8Path  a regular file's name, or that of none yet.
    void Save(std::string_view utf8Path) {
        CComPtr<IStream> spStream;
        OrThrow(CreateStreamOnFile(std::string(utf8Path).c_str(), spStream.Put()));
        OrThrow(Persist()->Save(spStream.Get(), 1));
        OrThrow(spStream->Commit(0));
    }
    /// Puts the items of a saved stack on top. A picture whose file is gone is passed over. Items that were read before a
    /// failure stay.
    void Load(std::string_view utf8Path) {
        CComPtr<IStream> spStream;
        OrThrow(OpenStreamOnFile(std::string(utf8Path).c_str(), spStream.Put()));
        OrThrow(Persist()->Load(spStream.Get()));
    }

    void Start() { OrThrow(m_spMixer->Start()); }
    void Stop() { OrThrow(m_spMixer->Stop()); }
    /// Draws the stack on a frame in place; one frame at a time, between `Start` and `Stop`.
    /// \param size  bytes. \param start, end  the frame's times in units of 100 ns for callbacks; may be null.
    void Mix(BYTE* frame, std::size_t size, const REFERENCE_TIME* start = nullptr,
             const REFERENCE_TIME* end = nullptr) {
        OrThrow(m_spMixer->MixFrame(frame, size, nullptr, nullptr, start, end));
    }

    /// The interfaces beneath, for what is not offered here.
    [[nodiscard]] const CComPtr<IFrameMixer>& Mixer() const { return m_spMixer; }
    [[nodiscard]] const CComPtr<IVellumcaster2>& Control() const { return m_spControl; }

private:
    [[nodiscard]] CComPtr<IPersistStream> Persist() const {
        CComPtr<IPersistStream> spPersist;
        OrThrow(m_spMixer.QueryInterface(spPersist));
        return spPersist;
    }

    Item Add(ITEM_TYPE type, const Text& text, const TextOptions& options) {
        LOGFONT font;
        font.lfHeight = options.height;
        font.lfWeight = options.weight;
        font.lfItalic = options.italic;
        font.lfCharSet = 1;
        options.face.copy(font.lfFaceName, sizeof font.lfFaceName - 1);

        const bool named = type == eText || !text.Utf16().empty();
        const detail::OwnedString bs = named ? detail::MakeString(text.Utf16()) : nullptr;
        OVERLAY_PROPS props;
        props.bShow = 1;
        props.sAlphaValue = 255;
        props.nCounterStart = props.nCounterCur = type == eDate || type == eTime ? -1 : 0;
        props.nPosX = options.x;
        props.nPosY = options.y;
        props.lForeColor = options.color.Packed();
        props.lBackColor = options.panel.Packed();
        props.lOutColor = options.outline.Packed();
        props.dblOutlineWidth = options.outlineWidth;
        props.bsTextString = bs.get();

        LONG cookie = 0;
        OrThrow(m_spControl->AddOutlinedText(type, &font, 4, &props, nullptr, &cookie));
        return {m_spControl, cookie};
    }

    CComPtr<IFrameMixer> m_spMixer;
    CComPtr<IVellumcaster2> m_spControl;
};

} // namespace vellumcaster
