#pragma once

#include "platform/com/unknown_impl.h"

#include <vellumcaster/stream.h>

namespace vellumcaster {

/// What streams of one reader or writer answer alike: there are no regions to lock, no clones, and nothing to take back.
class CByteStream : public CUnknownImpl<IStream> {
public:
    /// Copies through a small block, from this stream's place to the other's.
    HRESULT CopyTo(IStream* pstm, std::uint64_t cb, std::uint64_t* pcbRead, std::uint64_t* pcbWritten) override;
    HRESULT Commit(DWORD) override { return S_OK; }
    HRESULT Revert() override { return E_NOTIMPL; }
    HRESULT LockRegion(std::uint64_t, std::uint64_t, DWORD) override { return E_NOTIMPL; }
    HRESULT UnlockRegion(std::uint64_t, std::uint64_t, DWORD) override { return E_NOTIMPL; }
    HRESULT Clone(IStream** ppstm) override;
};

/// Where `IStream::Seek` leads to.
/// \return S_OK; STG_E_INVALIDFUNCTION for an unknown origin, or a place before the front or beyond 63 bits.
[[nodiscard]] HRESULT SeekPlace(LONGLONG dlibMove, DWORD dwOrigin, std::uint64_t nPresent, std::uint64_t cbWhole,
                                std::uint64_t* pnPlace);

} // namespace vellumcaster
