#include "picture_cases.h"

#include "image/convert.h"

using namespace vellumcaster;
using namespace vellumcaster::fuzzing;

namespace {

struct Conversion {
    CExactBlock source, target;
    HRESULT hr = S_OK;
};

Conversion Convert(const PicturePair& pair, const CExactBlock& pixels, bool bKeepSource, bool bOwnWork) {
    Conversion result{pixels, CExactBlock(CPictureFormats::GetBufferSize(pair.b), 0x5A)};
    CExactBlock work(bOwnWork ? pair.WorkSize() : 0, 0xC3);
    result.hr = Img_Convert(result.source.Data(), result.target.Data(), &pair.a, &pair.b, pair.BlockA(), pair.BlockB(),
                            bKeepSource ? 1 : 0, bOwnWork ? work.Data() : nullptr);
    return result;
}

} // namespace

/// Any two pictures: nothing beyond their bytes is touched, a source that is to be kept is kept, and how it is done
/// makes no difference to what comes out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    AbortAtFaults();
    FuzzedDataProvider data(pData, cb);
    const std::uint32_t codeA = PickCode(data);
    const PicturePair pair = PickPair(data, codeA, PickCode(data));
    if (!pair.IsSmallWithWork()) return 0;

    CExactBlock pixels(CPictureFormats::GetBufferSize(pair.a), data.ConsumeIntegral<BYTE>());
    data.ConsumeData(pixels.Data(), pixels.Size());

    const bool bOwnWork = data.ConsumeBool();
    const Conversion kept = Convert(pair, pixels, true, bOwnWork);
    Demand(kept.source == pixels);
    Demand(kept.hr == S_OK || (kept.hr != S_FALSE && kept.hr != E_INVALIDARG && kept.hr != E_NOTIMPL) ||
           kept.target.HoldsOnly(0x5A));

    const Conversion spent = Convert(pair, pixels, false, !bOwnWork);
    Demand(spent.hr == kept.hr);
    Demand(spent.target == kept.target);
    return 0;
}
