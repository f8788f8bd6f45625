#include "picture_cases.h"

#include "image/resize.h"

using namespace vellumcaster;
using namespace vellumcaster::fuzzing;

namespace {

/// All modes that mean something, and some that do not.
std::int32_t PickMode(FuzzedDataProvider& data) {
    return data.ConsumeIntegralInRange(0, 7) == 0 ? PickNumber(data, -1, 31)
                                                  : data.ConsumeIntegralInRange<std::int32_t>(32, 70);
}

} // namespace

/// Any two pictures, mostly of one format: nothing beyond their bytes is touched, and a work block of the caller's
/// makes no difference to what comes out.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    AbortAtFaults();
    FuzzedDataProvider data(pData, cb);
    const std::uint32_t code = PickCode(data);
    const PicturePair pair = PickPair(data, code, data.ConsumeIntegralInRange(0, 15) == 0 ? PickCode(data) : code);
    const std::int32_t nMode = PickMode(data);
    const std::int32_t nSharpen = data.ConsumeBool() ? 0 : PickNumber(data, -60, 60);
    if (!pair.IsSmallWithWork()) return 0;

    CExactBlock source(CPictureFormats::GetBufferSize(pair.a), data.ConsumeIntegral<BYTE>());
    data.ConsumeData(source.Data(), source.Size());
    const CExactBlock before(source);

    const auto scale = [&](CExactBlock& target, void* pWork) {
        return Img_Resize(source.Data(), target.Data(), &pair.a, &pair.b, pair.BlockA(), pair.BlockB(), nMode, pWork,
                          nSharpen);
    };
    CExactBlock target(CPictureFormats::GetBufferSize(pair.b), 0x5A);
    const HRESULT hr = scale(target, nullptr);
    Demand(source == before);
    Demand(hr != S_FALSE || target.HoldsOnly(0x5A));

    CExactBlock work(pair.WorkSize(), 0xC3);
    CExactBlock again(target.Size(), 0x5A);
    Demand(scale(again, work.Data()) == hr);
    Demand(source == before);
    Demand(again == target);
    return 0;
}
