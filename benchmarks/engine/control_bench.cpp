#include "engine/overlay_engine.h"
#include "engine/stream_painter.h"
#include "image/layer_planes.h"
#include "image/plane_layout.h"
#include "platform/com/unknown_impl.h"
#include "support/ratio_table.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

namespace vellumcaster::bench {

namespace {

constexpr SIZE sizeFrame{1920, 1080};
constexpr int nFrames = 60; ///< of which the worst counts
constexpr int nHidden = 1000;
constexpr double secondsForHidden = 50e-6;
constexpr std::chrono::microseconds pause(300); ///< between frames, as a source has them

using Clock = std::chrono::steady_clock;

void Check(HRESULT hr) {
    if (FAILED(hr)) std::abort();
}

template <class Run>
double SecondsOf(const Run& run) {
    const auto start = Clock::now();
    run();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

template <class Run>
double LongestOf(int nTimes, const Run& run) {
    double longest = 0;
    for (; nTimes > 0; --nTimes)
        longest = std::max(longest, SecondsOf(run));
    return longest;
}

/// A 1920 x 1080 I420 stream and a stack.
class CStream {
public:
    CStream() {
        m_Painter.SetInputFormat(format_code::I420);
        m_Painter.SetOutputFormat(format_code::I420);
        m_Painter.SetAvgTimePerFrame(400000);
        Check(m_Frame.Alloc(CPictureFormats::GetBufferSize(m_Desc), true, 0x80));
    }

    Cookie AddText(ITEM_TYPE eType, BOOL bShow, LONG lfHeight, SIZE size) {
        OVERLAY_PROPS props;
        props.bShow = bShow;
        props.nPosX = 200;
        props.nPosY = 900;
        props.lForeColor = -1;
        props.lBackColor = 0x60FF8000;
        props.sAlphaValue = 255;
        CBstr bsText;
        Check(bsText.Assign(std::u16string_view(u"Live from the studio")));
        props.bsTextString = bsText.Get();
        LOGFONT font;
        font.lfHeight = lfHeight;
        std::strcpy(font.lfFaceName, "DejaVu Sans");
        Cookie cookie = 0;
        Check(m_Engine.AddOutlinedText(eType, &font, 4, &props, &size, &cookie));
        return cookie;
    }

    Cookie AddImage(const SIZE& size) {
        m_Pixels.resize(std::max(m_Pixels.size(), PictureBytes(size)), 0xA0);
        ImageInfoTag info{size.cx, -size.cy, 32, 0, static_cast<DWORD>(PictureBytes(size))};
        Cookie cookie = 0;
        Check(m_Engine.AddImageFromMemory2(&info, info.biSizeImage, m_Pixels.data(), nullptr, 0, 0, nullptr, &cookie));
        return cookie;
    }

    void AddHiddenTexts(ITEM_TYPE eType) {
        for (int i = 0; i < nHidden; ++i)
            AddText(eType, 0, -12, {});
    }

    void MixFrame() { Check(m_Engine.MixFrame({m_Frame.Data(), m_Frame.Size(), m_Desc}, sizeFrame, {})); }

    /// \return how long the worst frame took.
    double WorstFrame() {
        double worst = 0;
        for (int i = 0; i < nFrames; ++i) {
            worst = std::max(worst, SecondsOf([this] { MixFrame(); }));
            std::this_thread::sleep_for(pause);
        }
        return worst;
    }

    /// The same while another thread calls one operation after the other.
    double WorstFrameUnder(const std::function<void()>& operation) {
        std::atomic<bool> bStreams = true;
        std::thread control([&] {
            while (bStreams)
                operation();
        });
        const double worst = WorstFrame();
        bStreams = false;
        control.join();
        return worst;
    }

    [[nodiscard]] COverlayEngine& Engine() { return m_Engine; }

private:
    static constexpr PictureFormat m_Desc{format_code::I420, sizeFrame.cx, sizeFrame.cy, 0};

    CStreamPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
    CVirtualBlob m_Frame;
    std::vector<BYTE> m_Pixels;
};

/// A stack of 1,000 texts, stored.
class CStoredStack final : public CUnknownImpl<ISequentialStream> {
public:
    CStoredStack() {
        CStream stream;
        stream.AddHiddenTexts(eText);
        Check(stream.Engine().Save(this, false));
    }
    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        const auto cbRead = static_cast<ULONG>(std::min<std::size_t>(cb, m_Bytes.size() - m_nPlace));
        std::memcpy(pv, m_Bytes.data() + m_nPlace, cbRead);
        m_nPlace += cbRead;
        if (pcbRead) *pcbRead = cbRead;
        return cbRead == cb ? S_OK : S_FALSE;
    }
    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override {
        const auto* pBytes = static_cast<const BYTE*>(pv);
        m_Bytes.insert(m_Bytes.end(), pBytes, pBytes + cb);
        if (pcbWritten) *pcbWritten = cb;
        return S_OK;
    }
    void Rewind() { m_nPlace = 0; }

private:
    std::vector<BYTE> m_Bytes;
    std::size_t m_nPlace = 0;
};

/// A stack as a broadcaster has it, and what can be done to it.
class CScene : public CStream {
public:
    CScene() : m_Text(AddText(eText, 1, -48, {600, 80})) {
        AddText(eSMPTETimeCode, 1, -48, {});
        for (const SIZE& size : {SIZE{256, 256}, SIZE{400, 200}}) {
            const Cookie cookie = AddImage(size);
            Check(Engine().ShowItem2(cookie, 1));
            Check(Engine().SetItemMovement(cookie, 1, 0, 1));
        }
    }

    void SetPos() { Check(Engine().SetItemPos2(m_Text, 200 + ++m_nCalls % 64, 900)); }
    void SetAlpha() { Check(Engine().SetItemAlpha2(m_Text, static_cast<std::int16_t>(128 + ++m_nCalls % 64))); }
    void SetColor() {
        OVERLAY_PROPS props;
        Check(Engine().GetItemProps(m_Text, &props));
        SysFreeString(props.bsTextString);
        props.bsTextString = nullptr;
        props.lForeColor ^= 0x00808080;
        Check(Engine().SetItemProps(m_Text, &props, 0));
    }
    void LoadStack() {
        m_spStored->Rewind();
        Check(Engine().Load(m_spStored.Get()));
        for (LONG nCount = 0; Engine().GetItemCount2(&nCount) == S_OK && nCount > nOwnItems;)
            RemoveTop(nCount - 1);
    }
    void AddLargeImage() { Check(Engine().RemoveItem2(AddImage(sizeFrame))); }

private:
    static constexpr LONG nOwnItems = 4;

    void RemoveTop(LONG index) {
        Cookie cookie = 0;
        BSTR bsName = nullptr;
        ITEM_TYPE eType = eText;
        Check(Engine().GetItemInfo2(index, &cookie, &bsName, &eType));
        SysFreeString(bsName);
        Check(Engine().RemoveItem2(cookie));
    }

    CComPtr<CStoredStack> m_spStored = MakeCounted<CStoredStack>();
    Cookie m_Text;
    int m_nCalls = 0;
};

struct Load {
    const char* pszName;
    void (CScene::*operation)();
    int nAlone; ///< calls, of which the longest counts
};

constexpr Load loads[] = {
    {"SetItemPos2", &CScene::SetPos, 1000},         {"SetItemAlpha2", &CScene::SetAlpha, 200},
    {"SetItemProps_color", &CScene::SetColor, 200}, {"AddImageFromMemory2", &CScene::AddLargeImage, 4},
    {"Load_1000_texts", &CScene::LoadStack, 2},
};

/// The worst frame under a load, against the worst without. A processor that is busy elsewhere is slower by itself, so
/// the frames without it have the same calls beside them, on a stack that nobody draws.
void AddLoad(const Load& load, std::vector<RatioLine>& lines) {
    const auto spScene = std::make_shared<CScene>();
    const auto spOther = std::make_shared<CScene>();
    const auto call = [=] { (spScene.get()->*load.operation)(); };
    const auto callOther = [=] { (spOther.get()->*load.operation)(); };
    AddMeasured(load.pszName, "loaded", [=] { return spScene->WorstFrameUnder(call); });
    AddMeasured(load.pszName, "apart", [=] { return spScene->WorstFrameUnder(callOther); });
    AddMeasured(load.pszName, "quiet", [=] { return spScene->WorstFrame(); });
    AddMeasured(load.pszName, "call", [=] { return LongestOf(load.nAlone, call); });
    AddMeasured(load.pszName, "both",
                [=] { return spScene->WorstFrameUnder(callOther) + LongestOf(load.nAlone, call); });
    lines.push_back({load.pszName, "loaded", "both", 1.0});
    lines.push_back({load.pszName, "loaded", "apart", std::nullopt});
    lines.push_back({load.pszName, "loaded", "quiet", std::nullopt});
    lines.push_back({load.pszName, "call", "quiet", std::nullopt});
}

/// A frame with many hidden items, against what it may take.
void AddHidden(const char* pszName, ITEM_TYPE eType, std::vector<RatioLine>& lines) {
    const auto spStream = std::make_shared<CStream>();
    spStream->AddHiddenTexts(eType);
    AddBenchmark(pszName, "frame", [=] { spStream->MixFrame(); });
    AddMeasured(pszName, "50_us", [] { return secondsForHidden; });
    lines.push_back({pszName, "frame", "50_us", 1.0});
}

std::vector<RatioLine> AddControls() {
    std::vector<RatioLine> lines;
    for (const Load& load : loads)
        AddLoad(load, lines);
    AddHidden("1000_hidden_texts", eText, lines);
    AddHidden("1000_hidden_frame_numbers", eFrameNumber, lines);
    return lines;
}

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster::bench;
    std::puts("loaded  the worst of 60 frames while another thread calls without a pause\n"
              "apart   the same while it calls on another stack\n"
              "quiet   the worst with no other thread\n"
              "call    the longest call alone\n"
              "both    apart and call, added");
    return RunAndPrintTable(argc, argv, AddControls());
}
