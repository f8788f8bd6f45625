#include "engine/overlay_engine.h"
#include "engine/stream_painter.h"
#include "image/picture_format.h"
#include "platform/com/memory_stream.h"

#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/results.h>

#include <cstdlib>
#include <span>
#include <vector>

using namespace vellumcaster;

namespace {

void Demand(bool b) {
    if (!b) std::abort();
}

std::vector<BYTE> Saved(COverlayEngine& engine) {
    CComPtr<IStream> sp;
    Demand(CreateMemoryStream({}, sp.Put()) == S_OK);
    Demand(engine.Save(sp.Get(), true) == S_OK);
    STATSTG stat;
    Demand(sp->Stat(&stat, 1) == S_OK && sp->Seek(0, STREAM_SEEK_SET, nullptr) == S_OK);
    std::vector<BYTE> bytes(stat.cbSize);
    ULONG cb = 0;
    Demand(sp->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &cb) == S_OK && cb == bytes.size());
    return bytes;
}

HRESULT Load(COverlayEngine& engine, std::span<const BYTE> bytes) {
    CComPtr<IStream> sp;
    Demand(CreateMemoryStream(bytes, sp.Put()) == S_OK);
    return engine.Load(sp.Get());
}

std::int64_t SumOfPixels(COverlayEngine& engine) {
    std::int64_t nPixels = 0;
    Cookie cookie = 0;
    BSTR bs = nullptr;
    ITEM_TYPE eType = eText;
    for (LONG i = 0; engine.GetItemInfo2(i, &cookie, &bs, &eType) == S_OK; ++i) {
        SysFreeString(bs);
        SIZE size;
        Demand(engine.GetItemSize(cookie, &size) == S_OK);
        if (size.cx > 0 && size.cy > 0) nPixels += std::int64_t{size.cx} * size.cy;
    }
    return nPixels;
}

/// A stack from a stream, for a stream of frames in some format, or for none yet.
class CStack {
public:
    explicit CStack(std::uint32_t dwFormat) : m_dwFormat(dwFormat) {
        m_Painter.SetInputFormat(dwFormat);
        m_Painter.SetOutputFormat(dwFormat);
        m_Painter.SetAvgTimePerFrame(400000);
    }

    void Mix() {
        constexpr SIZE size{32, 16};
        if (m_dwFormat == 0) return;
        std::vector<BYTE> frame(std::size_t{4} * size.cx * size.cy);
        const PictureFormat pf{m_dwFormat, size.cx, size.cy, static_cast<DWORD>(size.cx)};
        m_Engine.ResetItemForRun();
        for (int n = 0; n < 2; ++n)
            Demand(m_Engine.MixFrame({frame.data(), frame.size(), pf}, size, {}) == S_OK);
    }

    [[nodiscard]] COverlayEngine& Engine() { return m_Engine; }

private:
    std::uint32_t m_dwFormat;
    CStreamPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
};

} // namespace

/// The first byte chooses the frames' format; the rest is a saved stack. What can be loaded is kept in the same bytes
/// when it is saved twice, and can be drawn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    if (cb == 0) return 0;
    constexpr std::uint32_t formats[] = {0, format_code::I420, format_code::RGB32, format_code::YUY2};
    const std::uint32_t dwFormat = formats[pData[0] % std::size(formats)];
    CStack stack(dwFormat);
    if (Load(stack.Engine(), {pData + 1, cb - 1}) != S_OK) return 0;
    const std::vector<BYTE> saved = Saved(stack.Engine());
    CStack again(dwFormat);
    Demand(Load(again.Engine(), saved) == S_OK);
    // A text may have come out larger than what is read back.
    if (SumOfPixels(stack.Engine()) < std::int64_t{1} << 22) Demand(Saved(again.Engine()) == saved);
    stack.Mix();
    return 0;
}
