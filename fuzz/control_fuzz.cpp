#include "picture_cases.h"
#include "stack_model.h"

#include "engine/overlay_engine.h"
#include "engine/stream_painter.h"
#include "platform/com/unknown_impl.h"
#include "platform/kernel/system_time.h"

#include <limits>

using namespace vellumcaster;
using namespace vellumcaster::fuzzing;

namespace {

constexpr SIZE sizeFrame{48, 24};
constexpr LONG nNever = 0x5A5A5A5A; ///< what an answer that is not written keeps

class CFeedback final : public CUnknownImpl<IVellumcasterCallback> {
public:
    CFeedback(COverlayEngine& engine, Feedback feedback) : m_Engine(engine), m_Feedback(feedback) {}

    HRESULT OnFrameOverlay(OVERLAY_PROPS* pProps, LONGLONG*, LONGLONG*, REFERENCE_TIME*, REFERENCE_TIME*) override {
        WriteFeedback(m_Feedback, *pProps);
        SysFreeString(pProps->bsTextString);
        pProps->bsTextString = nullptr;
        switch (m_Feedback) {
        case Feedback::Relabels: pProps->bsTextString = SysAllocStringLen(newLabel.data(), newLabel.size()); break;
        case Feedback::Ignored: return S_FALSE;
        case Feedback::Fails: return E_FAIL;
        case Feedback::RemovesBottom: RemoveBottom(); return S_FALSE;
        case Feedback::Clears: Demand(m_Engine.RemoveAllItems() == S_OK); break;
        case Feedback::AddsOne: AddOne(); break;
        default: break;
        }
        return S_OK;
    }

private:
    void RemoveBottom() {
        Cookie cookie = 0;
        BSTR bs = nullptr;
        ITEM_TYPE eType = eText;
        Demand(m_Engine.GetItemInfo2(0, &cookie, &bs, &eType) == S_OK);
        SysFreeString(bs);
        Demand(m_Engine.RemoveItem2(cookie) == S_OK);
    }
    void AddOne() {
        LONG nCount = 0;
        const OVERLAY_PROPS props;
        Demand(m_Engine.GetItemCount2(&nCount) == S_OK);
        if (nCount < nMostItems)
            Demand(m_Engine.AddOutlinedText(eFrameNumber, nullptr, 4, &props, nullptr, nullptr) == S_OK);
    }

    COverlayEngine& m_Engine;
    Feedback m_Feedback;
};

/// Takes whatever is stored.
class CSink final : public CUnknownImpl<ISequentialStream> {
public:
    HRESULT Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT Write(const void*, ULONG cb, ULONG* pcbWritten) override {
        if (pcbWritten) *pcbWritten = cb;
        return S_OK;
    }
};

/// An engine, its model, and calls on both.
class CSequence {
public:
    explicit CSequence(FuzzedDataProvider& data) : m_Data(data) {
        if (m_Data.ConsumeBool()) SetFormat();
    }

    void Run() {
        for (int nCalls = 0; nCalls < 60 && m_Data.remaining_bytes() > 0; ++nCalls) {
            const auto n = m_Data.ConsumeIntegralInRange<std::size_t>(0, std::size(calls) - 1);
            (this->*calls[n])();
            Compare();
        }
    }

private:
    using Call = void (CSequence::*)();
    static const Call calls[23];

    // ---- Arguments

    Cookie PickCookie() {
        if (m_Model.m_Keys.empty() || m_Data.ConsumeIntegralInRange(0, 9) == 0) return m_Data.ConsumeIntegral<Cookie>();
        return m_Model.m_Keys[m_Data.ConsumeIntegralInRange<std::size_t>(0, m_Model.m_Keys.size() - 1)];
    }
    template <class Value>
    Value* PickOut(Value& value) {
        return m_Data.ConsumeIntegralInRange(0, 7) == 0 ? nullptr : &value;
    }
    LONG PickPosition() { return PickNumber(m_Data, -60, 60); }
    double PickDouble() {
        using limits = std::numeric_limits<double>;
        return m_Data.PickValueInArray({0.0, 0.25, 1.0, -1.0, -0.5, 3.7, 1e9, -1e300, limits::max(),
                                        limits::denorm_min(), limits::infinity(), -limits::infinity(),
                                        limits::quiet_NaN()});
    }
    /// Few pixels, or so many that nobody can want them.
    LONG PickSide() {
        return m_Data.PickValueInArray<LONG>({0, 0, 1, 2, 7, 16, 24, -1, -16, 32768, 1 << 24,
                                              std::numeric_limits<LONG>::max(), std::numeric_limits<LONG>::min()});
    }
    std::u16string PickText() {
        const std::u16string_view texts[] = {u"",       u"a",          u"7:",        u"\r\n",  u"\t&x\n\n",
                                             u"\xD800", u"\x5D0\x301", {u"q\0r", 3}, u"HH:mm", u"yyyy 'unclosed"};
        if (m_Data.ConsumeIntegralInRange(0, 3) != 0) return std::u16string(m_Data.PickValueInArray(texts));
        std::u16string text;
        for (const char c : m_Data.ConsumeRandomLengthString(6))
            text += static_cast<char16_t>(static_cast<BYTE>(c) * 0x101);
        return text;
    }
    /// \return null for no text.
    CBstr PickBstr() {
        CBstr bs;
        if (m_Data.ConsumeIntegralInRange(0, 3) != 0) Demand(bs.Assign(PickText()) == S_OK);
        return bs;
    }
    LONG PickColor() {
        return m_Data.PickValueInArray<LONG>({0, -1, 0x00FFFFFF, 0x7F102030, static_cast<LONG>(0xFF0000FF)});
    }

    OVERLAY_PROPS PickProps(OVERLAY_PROPS props) {
        for (int n = m_Data.ConsumeIntegralInRange(0, 4); n > 0; --n)
            switch (m_Data.ConsumeIntegralInRange(0, 12)) {
            case 0: props.bShow = m_Data.ConsumeIntegralInRange(-1, 1); break;
            case 1: props.nCounterStart = m_Data.ConsumeIntegral<LONG>(); break;
            case 2: props.nCounterCur = m_Data.ConsumeBool() ? -1 : m_Data.ConsumeIntegral<LONG>(); break;
            case 3: props.nPosX = PickPosition(); break;
            case 4: props.nPosY = PickPosition(); break;
            case 5: props.dblXDelta = PickDouble(); break;
            case 6: props.bNoOffscreen = m_Data.ConsumeIntegralInRange(0, 1); break;
            case 7: props.lForeColor = PickColor(); break;
            case 8: props.lBackColor = PickColor(); break;
            case 9: props.lOutColor = PickColor(); break;
            case 10: props.sAlphaValue = m_Data.ConsumeIntegral<std::int16_t>(); break;
            case 11: (m_Data.ConsumeBool() ? props.nColorKeyMin : props.nColorKeyMax) = PickPosition(); break;
            default: props.dblOutlineWidth = PickDouble(); break;
            }
        return props;
    }

    LOGFONT PickFont() {
        LOGFONT font;
        font.lfHeight = m_Data.PickValueInArray<LONG>(
            {-6, 8, 0, 1, -1, 10, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max(), 40000});
        font.lfEscapement = m_Data.PickValueInArray<LONG>({0, 0, 0, 450, std::numeric_limits<LONG>::min()});
        font.lfWeight = m_Data.PickValueInArray<LONG>({0, 400, 700, -1});
        font.lfItalic = font.lfUnderline = m_Data.ConsumeIntegralInRange<BYTE>(0, 1);
        font.lfQuality = m_Data.PickValueInArray<BYTE>({0, 3, 7});
        // A face name that fills its field has no zero behind it.
        const std::string face =
            m_Data.PickValueInArray({"DejaVu Sans", "", "Nowhere", "A face of thirty-two characters!"});
        face.copy(font.lfFaceName, sizeof font.lfFaceName);
        return font;
    }

    // ---- Calls

    void SetFormat() {
        using namespace format_code;
        m_dwFormat = m_Data.PickValueInArray({ARGB32, RGB32, RGB24, YUY2, UYVY, YVYU, YV12, I420});
        const auto duration = m_Data.PickValueInArray<REFERENCE_TIME>({0, 400000, 333667, -1});
        m_Model.m_Rate = RateOfDuration(duration);
        m_Painter.SetInputFormat(m_dwFormat);
        m_Painter.SetOutputFormat(m_dwFormat);
        m_Painter.SetAvgTimePerFrame(duration);
        m_Engine.PrepareItems();
    }

    void MixFrame() {
        if (m_dwFormat == 0) return;
        const LONG nHeight = m_Data.ConsumeBool() ? sizeFrame.cy : -sizeFrame.cy;
        const PictureFormat desc{m_dwFormat, sizeFrame.cx, nHeight, 0};
        CExactBlock frame(CPictureFormats::GetBufferSize(desc), 0x80);
        if (m_Data.ConsumeIntegralInRange(0, 9) == 0) {
            Demand(m_Engine.MixFrame({nullptr, frame.Size(), desc}, sizeFrame, {}) == E_INVALIDARG);
            Demand(m_Engine.MixFrame({frame.Data(), frame.Size() - 1, desc}, sizeFrame, {}) == E_INVALIDARG);
            Demand(frame.HoldsOnly(0x80));
            return;
        }
        FrameTimes times;
        if (m_Data.ConsumeBool()) times.start = 1;
        Demand(m_Engine.MixFrame({frame.Data(), frame.Size(), desc}, sizeFrame, times) == S_OK);
        m_Model.MixFrame(sizeFrame, [&](std::size_t index) {
            SIZE size;
            Demand(m_Engine.GetItemSize(KeyAt(index), &size) == S_OK);
            return size;
        });
    }

    void AddText() {
        if (m_Model.m_Items.size() >= nMostItems) return Remove();
        const auto eType = static_cast<ITEM_TYPE>(m_Data.ConsumeIntegralInRange(-1, 7));
        OVERLAY_PROPS start;
        start.bShow = 1;
        start.lForeColor = -1;
        start.sAlphaValue = 255;
        OVERLAY_PROPS props = PickProps(start);
        const CBstr bsText = PickBstr();
        props.bsTextString = bsText.Get();
        const LOGFONT font = PickFont();
        SIZE size{PickSide(), PickSide()};
        SIZE* pSize = PickOut(size);
        Cookie cookie = nNever;
        Cookie* pCookie = PickOut(cookie);
        const OVERLAY_PROPS* pProps = m_Data.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : &props;
        const LONG nFormat = m_Data.PickValueInArray<LONG>({4, 0, 5, 0x25, 0x10, -1});
        const HRESULT hr = m_Data.ConsumeBool()
                               ? m_Engine.AddOutlinedText(eType, PickOut(font), nFormat, pProps, pSize, pCookie)
                               : m_Engine.AddOutlinedTextVB(eType, nullptr, static_cast<DWORD>(font.lfHeight), nFormat,
                                                            pProps, pSize, pCookie);

        const bool bDrawn = eType == eText || eType == eDate || eType == eTime;
        const bool bUndrawn = eType == eFrameNumber || eType == eSMPTETimeCode;
        if (!pProps || (!bDrawn && !bUndrawn) || (eType == eText && !bsText))
            Demand(hr == E_INVALIDARG);
        else if (bUndrawn)
            Demand(hr == S_OK);
        if (FAILED(hr)) return Demand(cookie == nNever);

        ModelItem item;
        item.eType = eType;
        item.props = props;
        item.SnapToSetPosition();
        const bool bGiven =
            eType == eText || (eType == eSMPTETimeCode ? bool{bsText} : SysStringLen(bsText.Get()) != 0);
        item.name = bGiven                    ? std::u16string(bsText.View())
                    : eType == eDate          ? u"yyyy/MM/dd"
                    : eType == eTime          ? u"HH:mm:ss"
                    : eType == eSMPTETimeCode ? u"SMPTE timecode"
                                              : u"Frame Number";
        Added(std::move(item), pCookie, pSize, m_dwFormat == 0 || bUndrawn);
    }

    void AddImage() {
        if (m_Model.m_Items.size() >= nMostItems) return Remove();
        ImageInfoTag info;
        info.biWidth = m_Data.ConsumeBool() ? m_Data.ConsumeIntegralInRange(0, 9) : PickSide();
        info.biHeight = m_Data.ConsumeBool() ? m_Data.ConsumeIntegralInRange(-9, 9) : PickSide();
        info.biBitCount = m_Data.PickValueInArray<WORD>({24, 32, 32, 16, 0});
        info.biCompression = m_Data.ConsumeIntegralInRange(0, 7) == 0 ? 3 : 0;
        const CExactBlock pixels(m_Data.ConsumeIntegralInRange<std::size_t>(0, 400), 0x60);
        info.biSizeImage = m_Data.ConsumeIntegralInRange(0, 7) == 0 ? m_Data.ConsumeIntegral<DWORD>()
                                                                    : static_cast<DWORD>(pixels.Size());
        CExactBlock copy(pixels);
        const BYTE* pPixels = m_Data.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : copy.Data();
        SIZE size{PickSide(), PickSide()};
        SIZE* pSize = PickOut(size);
        Cookie cookie = nNever;
        Cookie* pCookie = PickOut(cookie);
        ModelItem item;
        item.eType = eImage;
        item.props.sAlphaValue = 255;
        item.props.nColorKeyMin = PickNumber(m_Data, -1, 2);
        item.props.nColorKeyMax = PickNumber(m_Data, -1, 2);
        const CBstr bsName = PickBstr();
        item.name = bsName ? std::u16string(bsName.View()) : u"Memory Image";
        ImageInfoTag* pInfo = PickOut(info);
        const bool bRefused = !pInfo || !pPixels || pixels.Size() < info.biSizeImage;
        const HRESULT hr =
            m_Engine.AddImageFromMemory2(pInfo, static_cast<DWORD>(pixels.Size()), pPixels, bsName.Get(),
                                         item.props.nColorKeyMin, item.props.nColorKeyMax, pSize, pCookie);
        if (bRefused) Demand(hr == E_INVALIDARG);
        if (FAILED(hr)) return Demand(cookie == nNever);
        Added(std::move(item), pCookie, pSize, m_dwFormat == 0);
    }

    void AddNothing() {
        Cookie cookie = nNever;
        SIZE size;
        const OVERLAY_PROPS props;
        CBstr bsNowhere;
        Demand(bsNowhere.Assign(std::u16string_view(u"/nowhere/at.all")) == S_OK);
        Demand(m_Engine.AddImage2(nullptr, 0, 0, &size, &cookie) == E_INVALIDARG);
        Demand(FAILED(m_Engine.AddImage2(bsNowhere.Get(), 0, 0, &size, &cookie)));
        Demand(m_Engine.AddRoundRect(&size, &size, &props, &cookie) == E_NOTIMPL);
        Demand(cookie == nNever);
    }

    void Remove() {
        const Cookie cookie = PickCookie();
        const ModelItem* pItem = m_Model.Lookup(cookie);
        Demand(m_Engine.RemoveItem2(cookie) == (pItem ? S_OK : E_INVALIDARG));
        if (pItem) m_Model.RemoveAt(static_cast<std::size_t>(pItem - m_Model.m_Items.data()));
    }

    void RemoveAll() {
        if (m_Data.ConsumeIntegralInRange(0, 7) != 0) return;
        Demand(m_Engine.RemoveAllItems() == S_OK);
        m_Model.Clear();
    }

    void ChangeOrder() {
        const Cookie cookie = PickCookie();
        const LONG nChange = PickNumber(m_Data, -1, 1);
        const HRESULT hr = m_Engine.ChangeItemOrder(cookie, nChange);
        ModelItem* pItem = m_Model.Lookup(cookie);
        if (nChange == 0) return Demand(hr == S_FALSE);
        Demand(hr == (pItem ? S_OK : E_INVALIDARG));
        if (!pItem) return;
        m_Model.m_bDirty = true;
        if (nChange > 0 && pItem != &m_Model.m_Items.back()) std::swap(pItem[0], pItem[1]);
        if (nChange < 0 && pItem != &m_Model.m_Items.front()) std::swap(pItem[0], pItem[-1]);
    }

    void SetProps() {
        const Cookie cookie = PickCookie();
        ModelItem* pItem = m_Model.Lookup(cookie);
        OVERLAY_PROPS props = PickProps(pItem ? pItem->props : OVERLAY_PROPS{});
        const CBstr bsText = PickBstr();
        props.bsTextString = bsText.Get();
        const HRESULT hr = m_Engine.SetItemProps(cookie, &props, m_Data.ConsumeIntegral<LONG>());
        Demand(m_Engine.SetItemProps(cookie, nullptr, 0) == E_INVALIDARG);
        if (!pItem) return Demand(hr == E_INVALIDARG);
        const std::u16string text(bsText.View());
        const bool bDraws = m_Model.Apply(*pItem, props, bsText ? &text : nullptr);
        Demand(hr == S_OK || (bDraws && (hr == S_FALSE || FAILED(hr))));
    }

    void SetCallback() {
        const Cookie cookie = PickCookie();
        const auto feedback = m_Data.ConsumeEnum<Feedback>();
        return Change(
            cookie, false, [&](ModelItem& item) { item.feedback = feedback; },
            feedback == Feedback::None
                ? m_Engine.SetItemCallback(cookie, nullptr)
                : m_Engine.SetItemCallback(cookie, MakeCounted<CFeedback>(m_Engine, feedback).Get()));
    }

    void Show() {
        const Cookie cookie = PickCookie();
        const BOOL bShow = PickNumber(m_Data, -1, 1);
        Change(
            cookie, true, [&](ModelItem& item) { item.props.bShow = bShow; }, m_Engine.ShowItem2(cookie, bShow));
    }

    void Switch() {
        const Cookie hide = PickCookie();
        const Cookie show = PickCookie();
        ModelItem* pHide = m_Model.Lookup(hide);
        ModelItem* pShow = m_Model.Lookup(show);
        Demand(m_Engine.SwitchItems2(hide, show) == (pHide && pShow ? S_OK : E_INVALIDARG));
        if (!pHide || !pShow) return;
        pHide->props.bShow = 0;
        pShow->props.bShow = 1;
        m_Model.m_bDirty = true;
    }

    void SetPos() {
        const Cookie cookie = PickCookie();
        const LONG x = PickPosition();
        const LONG y = PickPosition();
        const auto change = [&](ModelItem& item) {
            item.props.nPosX = x;
            item.props.nPosY = y;
            item.SnapToSetPosition();
        };
        Change(cookie, true, change, m_Engine.SetItemPos2(cookie, x, y));
    }

    void SetMovement() {
        const Cookie cookie = PickCookie();
        const double x = PickDouble();
        const double y = PickDouble();
        const BOOL bNoOffscreen = PickNumber(m_Data, 0, 1);
        const auto change = [&](ModelItem& item) {
            item.props.dblXDelta = x;
            item.props.dblYDelta = y;
            item.props.bNoOffscreen = bNoOffscreen;
        };
        Change(cookie, true, change, m_Engine.SetItemMovement(cookie, x, y, bNoOffscreen));
    }

    void SetCounter() {
        const Cookie cookie = PickCookie();
        const LONG nCounter = PickNumber(m_Data, -1, 1000);
        const auto change = [&](ModelItem& item) { item.props.nCounterCur = nCounter; };
        Change(cookie, false, change, m_Engine.SetItemCounter(cookie, nCounter));
    }

    void SetAlpha() {
        const Cookie cookie = PickCookie();
        const auto sAlpha = static_cast<std::int16_t>(PickNumber(m_Data, -2, 257));
        const HRESULT hr = m_Engine.SetItemAlpha2(cookie, sAlpha);
        ModelItem* pItem = m_Model.Lookup(cookie);
        if (!pItem) return Demand(hr == E_INVALIDARG);
        const auto sClamped = static_cast<std::int16_t>(sAlpha < 0 ? 0 : sAlpha > 255 ? 255 : sAlpha);
        if (pItem->props.sAlphaValue == sClamped) return Demand(hr == S_FALSE);
        pItem->props.sAlphaValue = sClamped;
        m_Model.m_bDirty = true;
        Demand(hr == S_OK || (m_dwFormat == format_code::ARGB32 && FAILED(hr)));
    }

    void Reset() {
        m_Engine.ResetItemForRun();
        m_Model.Reset();
    }

    void Save() {
        const bool bClearDirty = m_Data.ConsumeBool();
        Demand(m_Engine.Save(nullptr, bClearDirty) == E_INVALIDARG);
        Demand(m_Engine.Save(MakeCounted<CSink>().Get(), bClearDirty) == S_OK);
        m_Model.m_bDirty &= !bClearDirty;
    }

    void Render() {
        const Cookie cookie = PickCookie();
        ImageInfoTag info{PickSide(), PickSide(), m_Data.PickValueInArray<WORD>({24, 32, 8}), 0, 0};
        constexpr LONG nLargest = 32;
        const bool bSmall =
            info.biWidth >= 0 && info.biWidth <= nLargest && std::abs(std::int64_t{info.biHeight}) <= nLargest;
        CExactBlock pixels(bSmall ? static_cast<std::size_t>(4 * info.biWidth * std::abs(info.biHeight)) : 0, 0);
        info.biSizeImage = static_cast<DWORD>(pixels.Size());
        OVERLAY_PROPS props = PickProps({});
        const CBstr bsText = PickBstr();
        props.bsTextString = bsText.Get();
        const HRESULT hr = m_Engine.RenderItem(cookie, PickOut(props), &info, bSmall ? pixels.Data() : nullptr);
        Demand(m_Engine.RenderItem(cookie, &props, nullptr, pixels.Data()) == E_POINTER);
        if (!m_Model.Lookup(cookie)) Demand(hr == E_INVALIDARG);
    }

    void AskWithoutAnswers() {
        const Cookie cookie = PickCookie();
        const bool bKnown = m_Model.Lookup(cookie);
        Cookie key = 0;
        BSTR bs = nullptr;
        ITEM_TYPE eType = eText;
        const LONG index = m_Data.ConsumeBool() ? PickSide() : -1;
        const bool bInside = index >= 0 && index < static_cast<LONG>(m_Model.m_Keys.size());
        Demand(m_Engine.GetItemInfo2(index, &key, &bs, &eType) == (bInside ? S_OK : E_INVALIDARG));
        SysFreeString(bs);
        Demand(m_Engine.GetItemInfo2(0, nullptr, &bs, &eType) == E_POINTER);
        Demand(m_Engine.GetItemInfo2(0, &key, nullptr, &eType) == E_POINTER);
        Demand(m_Engine.GetItemInfo2(0, &key, &bs, nullptr) == E_POINTER);
        Demand(m_Engine.GetItemCount2(nullptr) == E_POINTER);
        Demand(m_Engine.GetItemSize(cookie, nullptr) == E_POINTER);
        Demand(m_Engine.GetItemProps(cookie, nullptr) == E_POINTER);
        Demand(m_Engine.GetItemCounter(cookie, nullptr) == E_POINTER);
        Demand(m_Engine.GetItemAlpha2(cookie, nullptr) == E_POINTER);
        const HRESULT hr = bKnown ? S_OK : E_INVALIDARG;
        Demand(m_Engine.GetItemPos2(cookie, nullptr, nullptr) == hr);
        Demand(m_Engine.GetItemMovement(cookie, nullptr, nullptr, nullptr) == hr);
        Demand(m_Engine.GetItemTextFormat(cookie, nullptr, nullptr, nullptr) == hr);
    }

    // ---- The model beside

    template <class Op>
    void Change(Cookie cookie, bool bMarks, const Op& change, HRESULT hr) {
        ModelItem* pItem = m_Model.Lookup(cookie);
        Demand(hr == (pItem ? S_OK : E_INVALIDARG));
        if (!pItem) return;
        change(*pItem);
        m_Model.m_bDirty |= bMarks;
    }

    [[nodiscard]] Cookie KeyAt(std::size_t index) {
        Cookie cookie = 0;
        BSTR bs = nullptr;
        ITEM_TYPE eType = eText;
        Demand(m_Engine.GetItemInfo2(static_cast<LONG>(index), &cookie, &bs, &eType) == S_OK);
        SysFreeString(bs);
        return cookie;
    }

    void Added(ModelItem item, const Cookie* pCookie, const SIZE* pSize, bool bWithoutPlanes) {
        const Cookie cookie = KeyAt(m_Model.m_Keys.size());
        Demand(!m_Model.Lookup(cookie));
        if (pCookie) Demand(*pCookie == cookie);
        if (bWithoutPlanes) Demand(cookie == m_Model.FirstFree());
        Demand(m_Engine.GetItemSize(cookie, &item.size) == S_OK);
        if (pSize) Demand(pSize->cx == item.size.cx && pSize->cy == item.size.cy);
        if (item.eType == eImage)
            Demand(item.size.cx > 0 && item.size.cy > 0 && (item.size.cx | item.size.cy) % 2 == 0);
        m_Model.Add(cookie, std::move(item));
    }

    void Compare() {
        LONG nCount = -1;
        Demand(m_Engine.GetItemCount2(&nCount) == S_OK);
        Demand(nCount == static_cast<LONG>(m_Model.m_Items.size()));
        Demand(m_Engine.IsDirty() == m_Model.m_bDirty);
        for (LONG i = 0; i < nCount; ++i)
            CompareItem(i, m_Model.m_Items[static_cast<std::size_t>(i)]);
    }

    void CompareItem(LONG index, ModelItem& item) {
        Cookie cookie = 0;
        BSTR bs = nullptr;
        ITEM_TYPE eType = eText;
        Demand(m_Engine.GetItemInfo2(index, &cookie, &bs, &eType) == S_OK);
        Demand(cookie == m_Model.m_Keys[static_cast<std::size_t>(index)] && eType == item.eType);
        Demand(CBstr::View(bs) == item.name);
        SysFreeString(bs);

        OVERLAY_PROPS props;
        Demand(m_Engine.GetItemProps(cookie, &props) == S_OK);
        Demand(CBstr::View(props.bsTextString) == item.name);
        SysFreeString(props.bsTextString);
        if (item.IsClock()) item.props.nCounterCur = props.nCounterCur; // it shows a time of day
        Demand(SameProps(props, item.props));

        SIZE size;
        Demand(m_Engine.GetItemSize(cookie, &size) == S_OK);
        if (item.eType == eImage) Demand(size.cx == item.size.cx && size.cy == item.size.cy);
        Demand(item.eType == eImage || (size.cx >= item.size.cx && size.cy >= item.size.cy));
        item.size = size;
        CompareAnswers(cookie, item.props);
    }

    void CompareAnswers(Cookie cookie, const OVERLAY_PROPS& props) {
        LONG x = 0;
        LONG y = 0;
        LONG nCounter = 0;
        double dx = 0;
        double dy = 0;
        BOOL b = 0;
        std::int16_t s = 0;
        Demand(m_Engine.GetItemPos2(cookie, &x, &y) == S_OK && x == props.nPosX && y == props.nPosY);
        Demand(m_Engine.GetItemMovement(cookie, &dx, &dy, &b) == S_OK && b == props.bNoOffscreen);
        Demand(SameBits(dx, props.dblXDelta) && SameBits(dy, props.dblYDelta));
        Demand(m_Engine.IsItemShow2(cookie, &b) == (props.bShow ? S_OK : S_FALSE) && b == props.bShow);
        Demand(m_Engine.GetItemAlpha2(cookie, &s) == S_OK && s == props.sAlphaValue);
        Demand(m_Engine.GetItemCounter(cookie, &nCounter) == S_OK && nCounter == props.nCounterCur);
    }

    FuzzedDataProvider& m_Data;
    CStreamPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
    CStackModel m_Model;
    std::uint32_t m_dwFormat = 0;
};

constexpr CSequence::Call CSequence::calls[] = {
    &CSequence::MixFrame,
    &CSequence::MixFrame,
    &CSequence::MixFrame,
    &CSequence::SetFormat,
    &CSequence::AddText,
    &CSequence::AddText,
    &CSequence::AddImage,
    &CSequence::AddNothing,
    &CSequence::Remove,
    &CSequence::RemoveAll,
    &CSequence::ChangeOrder,
    &CSequence::SetProps,
    &CSequence::SetCallback,
    &CSequence::Show,
    &CSequence::Switch,
    &CSequence::SetPos,
    &CSequence::SetMovement,
    &CSequence::SetCounter,
    &CSequence::SetAlpha,
    &CSequence::Reset,
    &CSequence::Save,
    &CSequence::Render,
    &CSequence::AskWithoutAnswers,
};

} // namespace

/// Calls of an application in any order, with arguments of any sense, between frames. After each the stack has to be
/// as a plain model of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    AbortAtFaults();
    SetLocalClock([] { return SYSTEMTIME{2024, 2, 4, 29, 12, 34, 56, 0}; });
    FuzzedDataProvider data(pData, cb);
    CSequence(data).Run();
    return 0;
}
