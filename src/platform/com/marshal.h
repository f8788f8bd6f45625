#pragma once

#include <vellumcaster/stream.h>

namespace vellumcaster {

/// For whom an interface pointer is written.
enum MSHCTX : DWORD {
    MSHCTX_LOCAL = 0,
    MSHCTX_NOSHAREDMEM = 1,
    MSHCTX_DIFFERENTMACHINE = 2,
    MSHCTX_INPROC = 3, ///< another thread of this process
};

/// How often what was written may be read.
enum MSHLFLAGS : DWORD {
    MSHLFLAGS_NORMAL = 0,      ///< once
    MSHLFLAGS_TABLESTRONG = 1, ///< any number of times, until it is released
    MSHLFLAGS_TABLEWEAK = 2,   ///< as long as the object lives by others
};

/// How an object's interface pointers travel through a stream to where they are used.
struct IMarshal : IUnknown {
    static constexpr GUID IID{0x00000003, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    /// The class that reads what `MarshalInterface` writes.
    virtual HRESULT GetUnmarshalClass(const GUID& iid, void* pv, DWORD dwDestContext, void* pvDestContext,
                                      DWORD mshlflags, GUID* pClassId) = 0;
    /// The most bytes that `MarshalInterface` writes.
    virtual HRESULT GetMarshalSizeMax(const GUID& iid, void* pv, DWORD dwDestContext, void* pvDestContext,
                                      DWORD mshlflags, DWORD* pcb) = 0;
    /// Writes an interface pointer `pv` of the object, with a reference where the flags say so.
    virtual HRESULT MarshalInterface(IStream* pstm, const GUID& iid, void* pv, DWORD dwDestContext, void* pvDestContext,
                                     DWORD mshlflags) = 0;
    /// Reads a pointer, as an interface of its object with a reference.
    virtual HRESULT UnmarshalInterface(IStream* pstm, const GUID& iid, void** ppv) = 0;
    /// Reads a pointer and gives back what was written with it.
    virtual HRESULT ReleaseMarshalData(IStream* pstm) = 0;
    virtual HRESULT DisconnectObject(DWORD dwReserved) = 0;

protected:
    ~IMarshal() = default;
};

} // namespace vellumcaster
