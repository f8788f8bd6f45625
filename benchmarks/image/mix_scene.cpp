#include "image/mix_scene.h"

#include "image/block_pair.h"
#include "image/format_table.h"
#include "image/mix_block.h"
#include "support/random_bytes.h"

#include <cstdio>
#include <cstdlib>

namespace vellumcaster::bench {

namespace {

constexpr std::uint64_t seed = 1;

[[noreturn]] void GiveUp(const char* pszReason) {
    std::fprintf(stderr, "mix: %s\n", pszReason);
    std::exit(1);
}

void FillAfresh(CVirtualBlob& blob, std::size_t cb, std::uint64_t n) {
    if (blob.Alloc(cb) != S_OK) GiveUp("not enough memory");
    testing_support::FillRandom({blob.Data(), cb}, seed + n);
}

std::vector<RowBlock> FindBlocks(const MixCase& mixCase, std::size_t cbOverlay) {
    const bool bPlanar = CPictureFormats::IsPlanarFormat(mixCase.frame.dwFormat);
    const std::size_t cbPixel = bPlanar ? 1 : CPictureFormats::BitsPerPixel(mixCase.frame.dwFormat) / 8;
    std::vector<RowBlock> blocks;
    for (LONG i = 0; i < mixCase.nItems; ++i) {
        const RECT place = mixCase.Place(i);
        CPictureFormats::BlockPair pair;
        if (LocateBlockPair(mixCase.Overlay(), mixCase.frame, nullptr, &place, pair) != S_OK)
            GiveUp("the case does not lie on its frame");
        for (std::size_t slot = 0; slot < (bPlanar ? 3 : 1); ++slot) {
            const std::size_t nPart = slot == 0 ? 1 : 2;
            blocks.push_back({pair.b.starts[slot], pair.a.starts[slot] + static_cast<std::size_t>(i) * cbOverlay,
                              static_cast<std::size_t>(pair.size.cx) * cbPixel / nPart,
                              static_cast<std::size_t>(pair.size.cy) / nPart, pair.b.layout.strides[slot],
                              pair.a.layout.strides[slot]});
        }
    }
    return blocks;
}

} // namespace

CMixScene::CMixScene(const MixCase& mixCase, std::size_t nFrames)
    : m_Case(mixCase),
      m_Frames(nFrames),
      m_cbOverlay(RoundUpToPage(CPictureFormats::GetBufferSize(mixCase.Overlay()))),
      m_Blocks(FindBlocks(mixCase, m_cbOverlay)) {
    const std::size_t cbAll = m_cbOverlay * static_cast<std::size_t>(mixCase.nItems);
    FillAfresh(m_Color, cbAll, 0);
    FillAfresh(m_Weight, cbAll, 1);
    for (std::size_t i = 0; i < nFrames; ++i)
        FillAfresh(m_Frames[i], CPictureFormats::GetBufferSize(mixCase.frame), 2 + i);
}

BYTE* CMixScene::NextFrame() { return m_Frames[m_nTaken++ % m_Frames.size()].Data(); }

void CMixScene::MixItems(BYTE* pFrame) const {
    const PictureFormat overlay = m_Case.Overlay();
    for (LONG i = 0; i < m_Case.nItems; ++i) {
        const RECT place = m_Case.Place(i);
        const std::size_t at = static_cast<std::size_t>(i) * m_cbOverlay;
        CPictureFormats::MixBlockAlpha(Color() + at, Weight() + at, pFrame, &overlay, &m_Case.frame, nullptr, &place);
    }
}

} // namespace vellumcaster::bench
