#include "host/frame_carrier.h"

#include "host/refusal.h"
#include "image/plane_layout.h"

#include <algorithm>
#include <array>

namespace vellumcaster {

namespace {

constexpr std::array<std::uint32_t, 2> formats420{format_code::I420, format_code::YV12};
constexpr std::array<std::uint32_t, 3> formats422{format_code::YUY2, format_code::UYVY, format_code::YVYU};

/// Bytes of Y, U and V in the group of four that two pixels of packed YUV take.
struct Yuy2Order {
    enum { y = 0, u = 1, v = 3 };
};
struct UyvyOrder {
    enum { y = 1, u = 0, v = 2 };
};
struct YvyuOrder {
    enum { y = 0, u = 3, v = 1 };
};

template <class Order>
void Pack(std::span<const std::uint8_t> planes, std::span<std::uint8_t> packed) {
    const std::size_t nPairs = packed.size() / 4;
    const std::uint8_t* pY = planes.data();
    const std::uint8_t* pU = pY + 2 * nPairs;
    const std::uint8_t* pV = pU + nPairs;
    std::uint8_t* pGroups = packed.data();
    for (std::size_t i = 0; i < nPairs; ++i) {
        pGroups[4 * i + Order::y] = pY[2 * i];
        pGroups[4 * i + Order::y + 2] = pY[2 * i + 1];
        pGroups[4 * i + Order::u] = pU[i];
        pGroups[4 * i + Order::v] = pV[i];
    }
}

template <class Order>
void Unpack(std::span<const std::uint8_t> packed, std::span<std::uint8_t> planes) {
    const std::size_t nPairs = packed.size() / 4;
    std::uint8_t* pY = planes.data();
    std::uint8_t* pU = pY + 2 * nPairs;
    std::uint8_t* pV = pU + nPairs;
    const std::uint8_t* pGroups = packed.data();
    for (std::size_t i = 0; i < nPairs; ++i) {
        pY[2 * i] = pGroups[4 * i + Order::y];
        pY[2 * i + 1] = pGroups[4 * i + Order::y + 2];
        pU[i] = pGroups[4 * i + Order::u];
        pV[i] = pGroups[4 * i + Order::v];
    }
}

/// Exchanges the two chroma planes of a 4:2:0 frame on the way from one buffer to another.
void SwapChroma(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
    const std::size_t cbChroma = from.size() / 6;
    const auto plane = [&](std::size_t nth) {
        return from.begin() + static_cast<std::ptrdiff_t>(from.size() - (2 - nth) * cbChroma);
    };
    auto next = std::copy(from.begin(), plane(0), to.begin());
    next = std::copy(plane(1), from.end(), next);
    std::copy(plane(0), plane(1), next);
}

struct Carriage {
    std::uint32_t code;
    void (*toStream)(std::span<const std::uint8_t> clip, std::span<std::uint8_t> stream);
    void (*toClip)(std::span<const std::uint8_t> stream, std::span<std::uint8_t> clip);
};

constexpr std::array<Carriage, 4> carriages{{
    {format_code::YV12, SwapChroma, SwapChroma},
    {format_code::YUY2, Pack<Yuy2Order>, Unpack<Yuy2Order>},
    {format_code::UYVY, Pack<UyvyOrder>, Unpack<UyvyOrder>},
    {format_code::YVYU, Pack<YvyuOrder>, Unpack<YvyuOrder>},
}};

const Carriage& CarriageOf(std::uint32_t code) {
    return *std::find_if(carriages.begin(), carriages.end(), [code](const Carriage& c) { return c.code == code; });
}

void Take(CVirtualBlob& blob, std::size_t cb) {
    if (FAILED(blob.Resize(cb))) throw Refusal("there is no memory for a frame of " + std::to_string(cb) + " bytes");
}

} // namespace

std::span<const std::uint32_t> CFrameCarrier::CarriedFormats(ChromaLayout layout) {
    if (layout == ChromaLayout::Planar420) return formats420;
    return formats422;
}

CFrameCarrier::CFrameCarrier(const Y4mHeader& header, std::uint32_t dwFormat)
    : m_pfStream{dwFormat, header.width, header.height, static_cast<std::uint32_t>(header.width)} {
    const std::size_t cbFrame = FrameSize(header);
    // Rows are rounded up before they are counted, so a little below the header's limit the format's own one stands.
    if (CPictureFormats::GetBufferSize(m_pfStream) != cbFrame) throw Refusal("the clip's frames are above 1 GiB");
    Take(m_blobClip, cbFrame);
    if (!IsSameInBoth()) Take(m_blobStream, cbFrame);
}

std::span<std::uint8_t> CFrameCarrier::ClipFrame() { return {m_blobClip.Data(), m_blobClip.Size()}; }

std::span<std::uint8_t> CFrameCarrier::StreamFrame() {
    CVirtualBlob& blob = IsSameInBoth() ? m_blobClip : m_blobStream;
    return {blob.Data(), blob.Size()};
}

void CFrameCarrier::ClipToStream() {
    if (!IsSameInBoth()) CarriageOf(m_pfStream.dwFormat).toStream(ClipFrame(), StreamFrame());
}

void CFrameCarrier::StreamToClip() {
    if (!IsSameInBoth()) CarriageOf(m_pfStream.dwFormat).toClip(StreamFrame(), ClipFrame());
}

} // namespace vellumcaster
