#pragma once

#include "platform/media/enum_media_types.h"

namespace vellumcaster {

struct IBaseFilter;

enum PIN_DIRECTION : std::int32_t {
    PINDIR_INPUT = 0,
    PINDIR_OUTPUT = 1,
};

/// What a pin says of itself.
struct PIN_INFO {
    IBaseFilter* pFilter = nullptr; ///< with a reference that the caller releases, or null
    PIN_DIRECTION dir = PINDIR_INPUT;
    OLECHAR achName[128] = {}; ///< ends in a zero
};

/// One end of a connection between two filters.
struct IPin : IUnknown {
    static constexpr GUID IID{0x56A86891, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    /// Connects this output pin; the type may be null or partial.
    virtual HRESULT Connect(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) = 0;
    /// Offers this input pin a connection with a complete type. \return S_OK: it is connected.
    virtual HRESULT ReceiveConnection(IPin* pConnector, const AM_MEDIA_TYPE* pmt) = 0;
    /// Ends this side's half of the connection. \return S_FALSE when there was none.
    virtual HRESULT Disconnect() = 0;
    /// The pin on the far side, with a reference.
    virtual HRESULT ConnectedTo(IPin** ppPin) = 0;
    /// The connection's type, copied into the caller's record.
    virtual HRESULT ConnectionMediaType(AM_MEDIA_TYPE* pmt) = 0;
    virtual HRESULT QueryPinInfo(PIN_INFO* pInfo) = 0;
    virtual HRESULT QueryDirection(PIN_DIRECTION* pPinDir) = 0;
    /// The name by which a filter's `FindPin` finds this pin, in task memory that the caller frees.
    virtual HRESULT QueryId(OLECHAR** ppszId) = 0;
    /// \return S_OK: the type would be taken. Anything else: it would not.
    virtual HRESULT QueryAccept(const AM_MEDIA_TYPE* pmt) = 0;
    virtual HRESULT EnumMediaTypes(IEnumMediaTypes** ppEnum) = 0;
    /// The pins that this one is linked with inside of the filter. \return E_NOTIMPL: with all of them.
    virtual HRESULT QueryInternalConnections(IPin** ppPins, ULONG* pcPins) = 0;
    /// No more samples will come.
    virtual HRESULT EndOfStream() = 0;
    /// Drop what is on its way, and refuse samples.
    virtual HRESULT BeginFlush() = 0;
    /// Take samples again.
    virtual HRESULT EndFlush() = 0;
    /// The samples that follow belong to this part of the source; units of 100 ns.
    virtual HRESULT NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) = 0;

protected:
    ~IPin() = default;
};

} // namespace vellumcaster
