#pragma once

#include "image/picture_format.h"
#include "image/plane_layout.h"
#include "platform/kernel/fault_guard.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>

namespace vellumcaster::fuzzing {

/// Mostly small, so that blocks meet their pictures, and sometimes anything.
inline LONG PickNumber(FuzzedDataProvider& data, LONG least, LONG most) {
    return data.ConsumeIntegralInRange(0, 7) == 0 ? data.ConsumeIntegral<LONG>()
                                                  : data.ConsumeIntegralInRange(least, most);
}

inline std::uint32_t PickCode(FuzzedDataProvider& data) {
    using namespace format_code;
    return data.PickValueInArray({ARGB32, RGB32, RGB24, RGB565, RGB555, YUY2, YVYU, UYVY, YV12, I420, RGB8, IYU2});
}

inline PictureFormat PickFormat(FuzzedDataProvider& data, std::uint32_t code) {
    PictureFormat pf;
    pf.dwFormat = code;
    pf.nWidth = PickNumber(data, 0, 80);
    pf.nHeight = PickNumber(data, -40, 40);
    pf.nStride = data.ConsumeBool() ? 0 : static_cast<std::uint32_t>(PickNumber(data, 0, 120));
    return pf;
}

inline std::optional<RECT> PickRect(FuzzedDataProvider& data) {
    if (data.ConsumeBool()) return std::nullopt;
    RECT rc;
    rc.left = PickNumber(data, -60, 90);
    rc.top = PickNumber(data, -60, 60);
    rc.right = PickNumber(data, -20, 120);
    rc.bottom = PickNumber(data, -20, 80);
    return rc;
}

/// A rectangle of the same size elsewhere, without which few blocks would ever meet.
inline RECT Moved(const RECT& rc, FuzzedDataProvider& data) {
    const auto add = [](LONG a, LONG b) {
        return static_cast<LONG>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
    };
    const LONG x = PickNumber(data, -60, 90);
    const LONG y = PickNumber(data, -60, 60);
    return {add(rc.left, x), add(rc.top, y), add(rc.right, x), add(rc.bottom, y)};
}

/// Two pictures and a block in each, with or without sense.
struct PicturePair {
    PictureFormat a, b;
    std::optional<RECT> rcA, rcB;

    [[nodiscard]] const RECT* BlockA() const { return rcA ? &*rcA : nullptr; }
    [[nodiscard]] const RECT* BlockB() const { return rcB ? &*rcB : nullptr; }

    /// Large pictures cost time and show nothing that small ones do not.
    [[nodiscard]] bool IsSmall() const {
        constexpr std::size_t cbLargest = std::size_t{1} << 20;
        return CPictureFormats::GetBufferSize(a) <= cbLargest && CPictureFormats::GetBufferSize(b) <= cbLargest;
    }
    /// Bytes of a work block; none where a picture has no bytes or no sense, so that nobody may touch it.
    [[nodiscard]] std::size_t WorkSize() const {
        if (CPictureFormats::GetBufferSize(a) == 0 || CPictureFormats::GetBufferSize(b) == 0) return 0;
        return CPictureFormats::GetScratchSize(a, b);
    }
    /// A work block grows with the one's width and the other's height.
    [[nodiscard]] bool IsSmallWithWork() const { return IsSmall() && WorkSize() <= std::size_t{16} << 20; }
};

inline PicturePair PickPair(FuzzedDataProvider& data, std::uint32_t codeA, std::uint32_t codeB) {
    PicturePair pair;
    pair.a = PickFormat(data, codeA);
    pair.b = PickFormat(data, codeB);
    pair.rcA = PickRect(data);
    pair.rcB = pair.rcA && data.ConsumeBool() ? Moved(*pair.rcA, data) : PickRect(data);
    return pair;
}

/// Bytes on the heap, exactly as many as asked for. Not a vector: a block of no bytes has an address too, and nobody
/// may touch it.
class CExactBlock {
public:
    CExactBlock(std::size_t cb, BYTE value) : m_sp(std::make_unique<BYTE[]>(cb)), m_cb(cb) {
        std::fill_n(m_sp.get(), cb, value);
    }
    CExactBlock(const CExactBlock& other) : CExactBlock(other.m_cb, 0) {
        std::copy_n(other.m_sp.get(), m_cb, m_sp.get());
    }
    CExactBlock& operator=(const CExactBlock&) = delete;

    [[nodiscard]] BYTE* Data() { return m_sp.get(); }
    [[nodiscard]] std::size_t Size() const { return m_cb; }
    [[nodiscard]] bool HoldsOnly(BYTE value) const {
        return std::all_of(m_sp.get(), m_sp.get() + m_cb, [value](BYTE byte) { return byte == value; });
    }
    friend bool operator==(const CExactBlock& x, const CExactBlock& y) {
        return std::equal(x.m_sp.get(), x.m_sp.get() + x.m_cb, y.m_sp.get(), y.m_sp.get() + y.m_cb);
    }

private:
    std::unique_ptr<BYTE[]> m_sp;
    std::size_t m_cb;
};

/// Ends the run where something that always holds does not.
inline void Demand(bool bHolds) {
    if (!bHolds) std::abort();
}

/// The guards would keep a wild access from being seen.
inline void AbortAtFaults() {
    static const bool bDone = [] {
        static_cast<void>(CallGuarded([] {}));
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
            std::signal(signal, [](int) { std::abort(); });
        return true;
    }();
    static_cast<void>(bDone);
}

} // namespace vellumcaster::fuzzing
