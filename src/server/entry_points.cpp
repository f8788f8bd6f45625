// Compiled for any processor of the family where the rest is not: what is asked first is whether the rest can run.

#include "engine/frame_mixer.h"
#include "platform/com/file_stream.h"
#include "platform/com/memory_stream.h"
#include "platform/com/no_exceptions.h"
#include "server/processor.h"

#include <vellumcaster/create.h>

namespace vellumcaster {

namespace {

/// Empties `ppObject`, then lets `make` fill it, unless it cannot run here.
template <class Interface, class Make>
HRESULT Create(Interface** ppObject, const Make& make) noexcept {
    if (!ppObject) return E_POINTER;
    *ppObject = nullptr;
    if (!ProcessorSuffices()) return E_NOTIMPL;
    return WithoutExceptions(make);
}

} // namespace

HRESULT CreateFrameMixer(IFrameMixer** ppMixer) noexcept {
    return Create(ppMixer, [&]() -> HRESULT {
        *ppMixer = MakeFrameMixer().Detach();
        return S_OK;
    });
}

HRESULT CreateStreamOnMemory(const void* pContent, std::size_t cb, IStream** ppStream) noexcept {
    return Create(ppStream, [&]() -> HRESULT {
        if (!pContent && cb != 0) return E_POINTER;
        return CreateMemoryStream({static_cast<const BYTE*>(pContent), cb}, ppStream);
    });
}

HRESULT OpenStreamOnFile(const char* pszUtf8File, IStream** ppStream) noexcept {
    return Create(ppStream, [&] { return OpenFileStream(pszUtf8File, ppStream); });
}

HRESULT CreateStreamOnFile(const char* pszUtf8File, IStream** ppStream) noexcept {
    return Create(ppStream, [&] { return CreateFileStream(pszUtf8File, ppStream); });
}

} // namespace vellumcaster
