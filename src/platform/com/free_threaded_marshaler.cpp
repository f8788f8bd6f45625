#include "platform/com/free_threaded_marshaler.h"

#include "platform/com/no_exceptions.h"
#include "platform/com/unknown_impl.h"

#include <cstring>
#include <random>

namespace vellumcaster {

namespace {

/// What stands in the stream.
struct Passage {
    std::uint64_t nSecret = 0; ///< so that only what this process wrote is ever taken for a pointer
    std::uint64_t nPointer = 0;
    DWORD mshlflags = MSHLFLAGS_NORMAL;
    DWORD dwReserved = 0;
};
static_assert(sizeof(Passage) == 24);

std::uint64_t Secret() {
    static const std::uint64_t nSecret = [] {
        std::random_device device;
        return std::uint64_t{device()} << 32 | device();
    }();
    return nSecret;
}

bool CountsReference(DWORD mshlflags) { return mshlflags != MSHLFLAGS_TABLEWEAK; }

HRESULT ReadPassage(IStream* pstm, Passage& passage, CComPtr<IUnknown>& spWritten) {
    if (!pstm) return E_POINTER;
    ULONG cb = 0;
    const HRESULT hr = pstm->Read(&passage, sizeof passage, &cb);
    if (FAILED(hr)) return hr;
    if (cb != sizeof passage || passage.nSecret != Secret()) return E_INVALIDARG;
    spWritten = reinterpret_cast<IUnknown*>(std::uintptr_t{passage.nPointer}); // NOLINT(performance-no-int-to-ptr)
    return S_OK;
}

/// The marshaler: its own `IUnknown` counts it, its `IMarshal` speaks for the object that it is a part of.
class CFreeThreadedMarshaler final : public CUnknownImpl<IUnknown> {
public:
    explicit CFreeThreadedMarshaler(IUnknown* punkOuter) : m_Marshal(punkOuter ? *punkOuter : *this) {}

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (!ppv || iid != IMarshal::IID) return CUnknownImpl::QueryInterface(iid, ppv);
        *ppv = static_cast<IMarshal*>(&m_Marshal);
        m_Marshal.AddRef();
        return S_OK;
    }

private:
    class CMarshal final : public IMarshal {
    public:
        explicit CMarshal(IUnknown& outer) : m_Outer(outer) {}

        HRESULT QueryInterface(const GUID& iid, void** ppv) override { return m_Outer.QueryInterface(iid, ppv); }
        ULONG AddRef() override { return m_Outer.AddRef(); }
        ULONG Release() override { return m_Outer.Release(); }

        HRESULT GetUnmarshalClass(const GUID&, void*, DWORD dwDestContext, void*, DWORD, GUID* pClassId) override {
            if (!pClassId) return E_POINTER;
            *pClassId = CLSID_InProcFreeMarshaler;
            return dwDestContext == MSHCTX_INPROC ? S_OK : E_NOTIMPL;
        }

        HRESULT GetMarshalSizeMax(const GUID&, void*, DWORD dwDestContext, void*, DWORD, DWORD* pcb) override {
            if (!pcb) return E_POINTER;
            *pcb = sizeof(Passage);
            return dwDestContext == MSHCTX_INPROC ? S_OK : E_NOTIMPL;
        }

        HRESULT MarshalInterface(IStream* pstm, const GUID&, void* pv, DWORD dwDestContext, void*,
                                 DWORD mshlflags) override {
            if (!pstm || !pv) return E_POINTER;
            if (mshlflags > MSHLFLAGS_TABLEWEAK) return E_INVALIDARG;
            if (dwDestContext != MSHCTX_INPROC) return E_NOTIMPL;
            CComPtr<IUnknown> spWritten(static_cast<IUnknown*>(pv));
            const Passage passage{Secret(), std::uint64_t{reinterpret_cast<std::uintptr_t>(pv)}, mshlflags};
            ULONG cb = 0;
            const HRESULT hr = pstm->Write(&passage, sizeof passage, &cb);
            if (FAILED(hr)) return hr;
            if (cb != sizeof passage) return E_FAIL;
            if (CountsReference(mshlflags)) static_cast<void>(spWritten.Detach());
            return S_OK;
        }

        HRESULT UnmarshalInterface(IStream* pstm, const GUID& iid, void** ppv) override {
            if (!ppv) return E_POINTER;
            *ppv = nullptr;
            Passage passage;
            CComPtr<IUnknown> spWritten;
            const HRESULT hr = ReadPassage(pstm, passage, spWritten);
            if (FAILED(hr)) return hr;
            if (passage.mshlflags == MSHLFLAGS_NORMAL) spWritten->Release(); // what was written with it
            return spWritten->QueryInterface(iid, ppv);
        }

        HRESULT ReleaseMarshalData(IStream* pstm) override {
            Passage passage;
            CComPtr<IUnknown> spWritten;
            const HRESULT hr = ReadPassage(pstm, passage, spWritten);
            if (SUCCEEDED(hr) && CountsReference(passage.mshlflags)) spWritten->Release();
            return hr;
        }

        HRESULT DisconnectObject(DWORD) override { return S_OK; }

    private:
        IUnknown& m_Outer;
    };

    CMarshal m_Marshal;
};

} // namespace

HRESULT CoCreateFreeThreadedMarshaler(IUnknown* punkOuter, IUnknown** ppunkMarshaler) {
    if (!ppunkMarshaler) return E_POINTER;
    *ppunkMarshaler = nullptr;
    return WithoutExceptions([&] {
        static_cast<void>(Secret()); // made here, where it may fail
        *ppunkMarshaler = MakeCounted<CFreeThreadedMarshaler>(punkOuter).Detach();
        return S_OK;
    });
}

} // namespace vellumcaster
