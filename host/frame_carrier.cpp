#include "host/frame_carrier.h"

#include "host/refusal.h"
#include "image/convert.h"
#include "image/format_names.h"
#include "image/format_table.h"
#include "image/plane_layout.h"
#include "image/primitives/primitives.h"

#include <array>

namespace vellumcaster {

namespace {

using namespace format_code;

constexpr std::array<std::uint32_t, 8> carriedFormats{I420, YV12, YUY2, UYVY, YVYU, RGB32, RGB24, ARGB32};

/// The formats from the clip's own to the stream's, one conversion apart.
std::vector<std::uint32_t> Way(std::uint32_t dwOwn, std::uint32_t dwStream) {
    if (dwStream == dwOwn) return {dwOwn};
    if (dwStream == RGB24) return {dwOwn, UYVY, RGB32, RGB24};
    if (CPictureFormats::IsRgbFormat(dwStream)) return {dwOwn, UYVY, dwStream};
    return {dwOwn, dwStream};
}

void Take(CVirtualBlob& blob, std::size_t cb) {
    if (FAILED(blob.Resize(cb))) throw Refusal("there is no memory for a frame of " + std::to_string(cb) + " bytes");
}

/// The planes of a 4:2:2 frame, as the primitives take them.
struct Planes422 {
    BYTE* planes[3];
    std::int32_t steps[3];

    Planes422(BYTE* pFrame, const Y4mHeader& header) : steps{header.width, header.width / 2, header.width / 2} {
        const std::size_t cbLuma = FrameSize(header) / 2;
        planes[0] = pFrame;
        planes[1] = pFrame + cbLuma;
        planes[2] = planes[1] + cbLuma / 2;
    }
};

} // namespace

std::span<const std::uint32_t> CFrameCarrier::CarriedFormats() { return carriedFormats; }

std::uint32_t CFrameCarrier::OwnFormat(ChromaLayout layout) { return layout == ChromaLayout::Planar420 ? I420 : YUY2; }

CFrameCarrier::CFrameCarrier(const Y4mHeader& header, std::uint32_t dwFormat, bool bBottomUp) : m_Header(header) {
    const std::uint32_t dwOwn = OwnFormat(header.layout);
    for (const std::uint32_t code : Way(dwOwn, dwFormat))
        AddStage(code, bBottomUp && code == dwFormat);
    if (dwOwn == YUY2) Take(m_blobPlanes, FrameSize(header));
}

void CFrameCarrier::AddStage(std::uint32_t dwFormat, bool bBottomUp) {
    const bool bTopDownRgb = CPictureFormats::IsRgbFormat(dwFormat) && !bBottomUp;
    const LONG height = bTopDownRgb ? -m_Header.height : m_Header.height;
    Stage stage{{dwFormat, m_Header.width, height, static_cast<std::uint32_t>(m_Header.width)}, {}};
    const std::size_t cb = CPictureFormats::GetBufferSize(stage.pf);
    if (cb == 0)
        throw Refusal("the clip's frames are above 1 GiB, or of a size that " +
                      std::string(CPictureFormats::NameFromFormat(dwFormat)) + " cannot have");
    Take(stage.blob, cb);
    m_Stages.push_back(std::move(stage));
}

std::span<std::uint8_t> CFrameCarrier::ClipFrame() {
    CVirtualBlob& blob = m_blobPlanes.IsEmpty() ? m_Stages.front().blob : m_blobPlanes;
    return {blob.Data(), blob.Size()};
}

std::span<std::uint8_t> CFrameCarrier::StreamFrame() {
    CVirtualBlob& blob = m_Stages.back().blob;
    return {blob.Data(), blob.Size()};
}

void CFrameCarrier::Convert(Stage& from, Stage& to) {
    const HRESULT hr = Img_Convert(from.blob.Data(), to.blob.Data(), &from.pf, &to.pf, nullptr, nullptr, 0, nullptr);
    if (hr != S_OK) throw Refusal("a frame could not be converted");
}

void CFrameCarrier::PackClip() {
    const Planes422 planes(m_blobPlanes.Data(), m_Header);
    ippiYCbCr422_8u_P3C2R(planes.planes, planes.steps, m_Stages.front().blob.Data(), 2 * m_Header.width,
                          {m_Header.width, m_Header.height});
}

void CFrameCarrier::UnpackClip() {
    const Planes422 planes(m_blobPlanes.Data(), m_Header);
    ippiYCbCr422_8u_C2P3R(m_Stages.front().blob.Data(), 2 * m_Header.width, planes.planes, planes.steps,
                          {m_Header.width, m_Header.height});
}

void CFrameCarrier::ClipToStream() {
    if (!m_blobPlanes.IsEmpty()) PackClip();
    for (std::size_t i = 1; i < m_Stages.size(); ++i)
        Convert(m_Stages[i - 1], m_Stages[i]);
}

void CFrameCarrier::StreamToClip() {
    for (std::size_t i = m_Stages.size(); --i > 0;)
        Convert(m_Stages[i], m_Stages[i - 1]);
    if (!m_blobPlanes.IsEmpty()) UnpackClip();
}

} // namespace vellumcaster
