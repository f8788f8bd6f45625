// Compiled for any processor of the family where the rest is not: what is asked first is whether the rest can run.

#include "engine/frame_mixer.h"
#include "platform/com/no_exceptions.h"
#include "server/processor.h"

#include <vellumcaster/create.h>

namespace vellumcaster {

HRESULT CreateFrameMixer(IFrameMixer** ppMixer) noexcept {
    if (!ppMixer) return E_POINTER;
    *ppMixer = nullptr;
    if (!ProcessorSuffices()) return E_NOTIMPL;
    return WithoutExceptions([&]() -> HRESULT {
        *ppMixer = MakeFrameMixer().Detach();
        return S_OK;
    });
}

} // namespace vellumcaster
