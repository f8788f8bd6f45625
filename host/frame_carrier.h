#pragma once

#include "host/y4m_header.h"
#include "image/blob_holder.h"
#include "image/picture_format.h"

#include <span>
#include <vector>

namespace vellumcaster {

/// Carries a clip's frames into a stream's pixel format and back, in one or more steps of conversion. Between formats
/// of the same sampling no value is touched. RGB is reached by way of UYVY, between which and 32 bits the colours of
/// ITU-R BT.601 come out right in both directions.
class CFrameCarrier {
public:
    /// \param dwFormat  one of `CarriedFormats`. A `Refusal` where the clip's geometry does not fit it, or there is no
    ///        memory.
    /// \param bBottomUp  where the stream's frames are RGB, they have their bottom row first.
    CFrameCarrier(const Y4mHeader& header, std::uint32_t dwFormat, bool bBottomUp = false);

    /// The formats that a clip can be carried in.
    [[nodiscard]] static std::span<const std::uint32_t> CarriedFormats();
    /// The one that a clip of this layout is carried in where none is asked for.
    [[nodiscard]] static std::uint32_t OwnFormat(ChromaLayout layout);

    /// The frame as the clip has it: planes Y, U, V.
    [[nodiscard]] std::span<std::uint8_t> ClipFrame();
    /// The frame as the stream has it; the same memory where both agree.
    [[nodiscard]] std::span<std::uint8_t> StreamFrame();
    [[nodiscard]] const PictureFormat& StreamFormat() const { return m_Stages.back().pf; }

    void ClipToStream();
    void StreamToClip();

private:
    /// The frame in one of the formats on the way.
    struct Stage {
        PictureFormat pf;
        CVirtualBlob blob;
    };

    void AddStage(std::uint32_t dwFormat, bool bBottomUp);
    static void Convert(Stage& from, Stage& to);
    void PackClip();
    void UnpackClip();

    Y4mHeader m_Header;
    CVirtualBlob m_blobPlanes; ///< of a 4:2:2 clip: no format has them as planes
    std::vector<Stage> m_Stages;
};

} // namespace vellumcaster
