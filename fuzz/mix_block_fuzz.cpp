#include "picture_cases.h"

#include "image/block_copy.h"
#include "image/block_fill.h"
#include "image/mix_block.h"

using namespace vellumcaster;
using namespace vellumcaster::fuzzing;

/// Descriptors and rectangles without sense, on buffers that end with the picture.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    AbortAtFaults();
    FuzzedDataProvider data(pData, cb);
    const std::uint32_t code = PickCode(data);
    const PicturePair pair = PickPair(data, code, data.ConsumeIntegralInRange(0, 15) == 0 ? PickCode(data) : code);
    if (!pair.IsSmall()) return 0;

    CExactBlock overlay(CPictureFormats::GetBufferSize(pair.a), 0xFF);
    CExactBlock frame(CPictureFormats::GetBufferSize(pair.b), 0);
    const BYTE* pOverlay = overlay.Data();
    HRESULT hr = S_OK;
    switch (data.ConsumeIntegralInRange(0, 2)) {
    case 0:
        hr = CPictureFormats::MixBlockAlpha(pOverlay, pOverlay, frame.Data(), &pair.a, &pair.b, pair.BlockA(),
                                            pair.BlockB());
        break;
    case 1:
        hr = CPictureFormats::CopyBlock(pOverlay, frame.Data(), &pair.a, &pair.b, pair.BlockA(), pair.BlockB());
        break;
    default:
        hr = CPictureFormats::FillBlock(frame.Data(), &pair.b, data.ConsumeIntegral<std::uint32_t>(), pair.BlockB());
        break;
    }

    Demand(hr == S_OK || hr == S_FALSE || hr == E_INVALIDARG || hr == E_NOTIMPL);
    Demand(hr == S_OK || frame.HoldsOnly(0));
    return 0;
}
