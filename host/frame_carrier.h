#pragma once

#include "host/y4m_header.h"
#include "image/blob_holder.h"
#include "image/picture_format.h"

#include <span>
#include <vector>

namespace vellumcaster {

/// Carries a clip's frames into a stream's pixel format and back, without loss: planes change places, 4:2:2 is
/// packed, and no value is touched.
class CFrameCarrier {
public:
    /// \param dwFormat  one of `CarriedFormats`.
    CFrameCarrier(const Y4mHeader& header, std::uint32_t dwFormat);

    /// The formats that a clip of this layout can be carried in; the first is what it is carried in by itself.
    [[nodiscard]] static std::span<const std::uint32_t> CarriedFormats(ChromaLayout layout);

    /// The frame as the clip has it: planes Y, U, V.
    [[nodiscard]] std::span<std::uint8_t> ClipFrame();
    /// The frame as the stream has it; the same memory where both agree.
    [[nodiscard]] std::span<std::uint8_t> StreamFrame();
    [[nodiscard]] const PictureFormat& StreamFormat() const { return m_pfStream; }

    void ClipToStream();
    void StreamToClip();

private:
    [[nodiscard]] bool IsSameInBoth() const { return m_pfStream.dwFormat == format_code::I420; }

    PictureFormat m_pfStream;
    CVirtualBlob m_blobClip;
    CVirtualBlob m_blobStream; ///< empty where both agree
};

} // namespace vellumcaster
