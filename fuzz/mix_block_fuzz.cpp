#include "image/block_copy.h"
#include "image/block_fill.h"
#include "image/mix_block.h"
#include "image/plane_layout.h"
#include "platform/kernel/fault_guard.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>

using namespace vellumcaster;

namespace {

constexpr std::size_t cbLargestBuffer = std::size_t{1} << 20;

/// Mostly small, so that blocks meet their pictures, and sometimes anything.
LONG PickNumber(FuzzedDataProvider& data, LONG least, LONG most) {
    return data.ConsumeIntegralInRange(0, 7) == 0 ? data.ConsumeIntegral<LONG>()
                                                  : data.ConsumeIntegralInRange(least, most);
}

PictureFormat PickFormat(FuzzedDataProvider& data, std::uint32_t code) {
    PictureFormat pf;
    pf.dwFormat = code;
    pf.nWidth = PickNumber(data, 0, 80);
    pf.nHeight = PickNumber(data, -40, 40);
    pf.nStride = data.ConsumeBool() ? 0 : static_cast<std::uint32_t>(PickNumber(data, 0, 120));
    return pf;
}

std::uint32_t PickCode(FuzzedDataProvider& data) {
    using namespace format_code;
    return data.PickValueInArray({ARGB32, RGB32, RGB24, RGB565, RGB555, YUY2, YVYU, UYVY, YV12, I420, RGB8, IYU2});
}

std::optional<RECT> PickRect(FuzzedDataProvider& data) {
    if (data.ConsumeBool()) return std::nullopt;
    RECT rc;
    rc.left = PickNumber(data, -60, 90);
    rc.top = PickNumber(data, -60, 60);
    rc.right = PickNumber(data, -20, 120);
    rc.bottom = PickNumber(data, -20, 80);
    return rc;
}

/// A rectangle of the same size elsewhere, without which few blocks would ever be mixed.
RECT Moved(const RECT& rc, FuzzedDataProvider& data) {
    const auto add = [](LONG a, LONG b) {
        return static_cast<LONG>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
    };
    const LONG x = PickNumber(data, -60, 90);
    const LONG y = PickNumber(data, -60, 60);
    return {add(rc.left, x), add(rc.top, y), add(rc.right, x), add(rc.bottom, y)};
}

/// The guards would keep a wild access from being seen.
void AbortAtFaults() {
    static_cast<void>(CallGuarded([] {}));
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, [](int) { std::abort(); });
}

} // namespace

/// Descriptors and rectangles without sense, on buffers that end with the picture.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    static const bool bReady = (AbortAtFaults(), true);
    static_cast<void>(bReady);

    FuzzedDataProvider data(pData, cb);
    const std::uint32_t code = PickCode(data);
    const PictureFormat a = PickFormat(data, code);
    const PictureFormat b = PickFormat(data, data.ConsumeIntegralInRange(0, 15) == 0 ? PickCode(data) : code);
    if (CPictureFormats::GetBufferSize(a) > cbLargestBuffer) return 0;
    if (CPictureFormats::GetBufferSize(b) > cbLargestBuffer) return 0;

    const std::optional<RECT> rcA = PickRect(data);
    const std::optional<RECT> rcB = rcA && data.ConsumeBool() ? Moved(*rcA, data) : PickRect(data);
    const RECT* pRcA = rcA ? &*rcA : nullptr;
    const RECT* pRcB = rcB ? &*rcB : nullptr;

    // Not vectors: a block of no bytes has an address too, and nobody may touch it.
    const std::size_t cbOverlay = CPictureFormats::GetBufferSize(a);
    const std::size_t cbFrame = CPictureFormats::GetBufferSize(b);
    const auto spOverlay = std::make_unique<BYTE[]>(cbOverlay);
    const auto spFrame = std::make_unique<BYTE[]>(cbFrame);
    std::fill_n(spOverlay.get(), cbOverlay, BYTE{0xFF});
    const BYTE* pOverlay = spOverlay.get();
    BYTE* pFrame = spFrame.get();

    HRESULT hr = S_OK;
    switch (data.ConsumeIntegralInRange(0, 2)) {
    case 0: hr = CPictureFormats::MixBlockAlpha(pOverlay, pOverlay, pFrame, &a, &b, pRcA, pRcB); break;
    case 1: hr = CPictureFormats::CopyBlock(pOverlay, pFrame, &a, &b, pRcA, pRcB); break;
    default: hr = CPictureFormats::FillBlock(pFrame, &b, data.ConsumeIntegral<std::uint32_t>(), pRcB); break;
    }

    const bool bKnown = hr == S_OK || hr == S_FALSE || hr == E_INVALIDARG || hr == E_NOTIMPL;
    const bool bTouched = std::any_of(pFrame, pFrame + cbFrame, [](BYTE byte) { return byte != 0; });
    if (!bKnown || (hr != S_OK && bTouched)) std::abort();
    return 0;
}
