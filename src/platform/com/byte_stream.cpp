#include "platform/com/byte_stream.h"

#include <vellumcaster/results.h>

#include <algorithm>
#include <array>
#include <limits>

namespace vellumcaster {

HRESULT CByteStream::CopyTo(IStream* pstm, std::uint64_t cb, std::uint64_t* pcbRead, std::uint64_t* pcbWritten) {
    if (!pstm) return STG_E_INVALIDPOINTER;
    std::uint64_t cbRead = 0;
    std::uint64_t cbWritten = 0;
    HRESULT hr = S_OK;
    std::array<BYTE, 4096> block{};
    while (cbRead < cb && SUCCEEDED(hr)) {
        ULONG cbPart = 0;
        hr = Read(block.data(), static_cast<ULONG>(std::min<std::uint64_t>(cb - cbRead, block.size())), &cbPart);
        if (FAILED(hr) || cbPart == 0) break;
        cbRead += cbPart;
        ULONG cbOut = 0;
        hr = pstm->Write(block.data(), cbPart, &cbOut);
        cbWritten += cbOut;
        if (SUCCEEDED(hr) && cbOut != cbPart) hr = STG_E_MEDIUMFULL;
    }
    if (pcbRead) *pcbRead = cbRead;
    if (pcbWritten) *pcbWritten = cbWritten;
    return hr;
}

HRESULT CByteStream::Clone(IStream** ppstm) {
    if (!ppstm) return STG_E_INVALIDPOINTER;
    *ppstm = nullptr;
    return E_NOTIMPL;
}

HRESULT SeekPlace(LONGLONG dlibMove, DWORD dwOrigin, std::uint64_t nPresent, std::uint64_t cbWhole,
                  std::uint64_t* pnPlace) {
    constexpr std::uint64_t furthest = std::numeric_limits<LONGLONG>::max();
    if (dwOrigin > STREAM_SEEK_END) return STG_E_INVALIDFUNCTION;
    const std::uint64_t nFrom = dwOrigin == STREAM_SEEK_SET ? 0 : dwOrigin == STREAM_SEEK_CUR ? nPresent : cbWhole;
    const std::uint64_t nDistance = dlibMove < 0 ? 0 - static_cast<std::uint64_t>(dlibMove) : std::uint64_t(dlibMove);
    if (dlibMove < 0 ? nDistance > nFrom : nDistance > furthest - nFrom) return STG_E_INVALIDFUNCTION;
    *pnPlace = dlibMove < 0 ? nFrom - nDistance : nFrom + nDistance;
    return S_OK;
}

} // namespace vellumcaster
