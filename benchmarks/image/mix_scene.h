#pragma once

#include "image/blob_holder.h"
#include "image/mix_cases.h"

#include <string>
#include <vector>

namespace vellumcaster::bench {

/// Rows of one plane of an item and their place on the frame, all in bytes.
struct RowBlock {
    std::size_t frameStart;
    std::size_t overlayStart;
    std::size_t cbRow;
    std::size_t nRows;
    std::size_t framePitch;
    std::size_t overlayPitch;
};

/// The memory of one case: a pool of frames that are taken in turn, and the planes of every item, one behind the
/// other. Everything is filled at random, and every byte has its weight.
class CMixScene {
public:
    CMixScene(const MixCase& mixCase, std::size_t nFrames);

    [[nodiscard]] const MixCase& Case() const { return m_Case; }
    [[nodiscard]] BYTE* NextFrame();
    [[nodiscard]] const BYTE* Color() const { return m_Color.Data(); }
    [[nodiscard]] const BYTE* Weight() const { return m_Weight.Data(); }
    /// What mixing the whole case comes down to.
    [[nodiscard]] const std::vector<RowBlock>& Blocks() const { return m_Blocks; }

    /// Lays all items on a frame through `CPictureFormats::MixBlockAlpha`.
    void MixItems(BYTE* pFrame) const;

private:
    MixCase m_Case;
    std::vector<CVirtualBlob> m_Frames;
    std::size_t m_nTaken = 0;
    std::size_t m_cbOverlay;
    CVirtualBlob m_Color;
    CVirtualBlob m_Weight;
    std::vector<RowBlock> m_Blocks;
};

} // namespace vellumcaster::bench
