#include "platform/com/memory_stream.h"

#include "platform/com/byte_stream.h"
#include "platform/com/no_exceptions.h"

#include <algorithm>
#include <vector>

namespace vellumcaster {

namespace {

constexpr std::uint64_t cbLargest = std::uint64_t{1} << 30;

class CMemoryStream final : public CByteStream {
public:
    explicit CMemoryStream(std::span<const BYTE> content) : m_Bytes(content.begin(), content.end()) {}

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        if (pcbRead) *pcbRead = 0;
        if (!pv) return STG_E_INVALIDPOINTER;
        const std::uint64_t cbLeft = m_nPlace < m_Bytes.size() ? m_Bytes.size() - m_nPlace : 0;
        const auto cbPart = static_cast<ULONG>(std::min<std::uint64_t>(cb, cbLeft));
        std::copy_n(m_Bytes.data() + (cbPart ? m_nPlace : 0), cbPart, static_cast<BYTE*>(pv));
        m_nPlace += cbPart;
        if (pcbRead) *pcbRead = cbPart;
        return S_OK;
    }

    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override {
        if (pcbWritten) *pcbWritten = 0;
        if (!pv) return STG_E_INVALIDPOINTER;
        if (cb == 0) return S_OK;
        const HRESULT hr = m_nPlace + cb > m_Bytes.size() ? SetSize(m_nPlace + cb) : S_OK;
        if (FAILED(hr)) return hr;
        std::copy_n(static_cast<const BYTE*>(pv), cb, m_Bytes.data() + m_nPlace);
        m_nPlace += cb;
        if (pcbWritten) *pcbWritten = cb;
        return S_OK;
    }

    HRESULT Seek(LONGLONG dlibMove, DWORD dwOrigin, std::uint64_t* plibNewPosition) override {
        const HRESULT hr = SeekPlace(dlibMove, dwOrigin, m_nPlace, m_Bytes.size(), &m_nPlace);
        if (plibNewPosition) *plibNewPosition = m_nPlace;
        return hr;
    }

    HRESULT SetSize(std::uint64_t libNewSize) override {
        if (libNewSize > cbLargest) return STG_E_MEDIUMFULL;
        return WithoutExceptions([&] {
            m_Bytes.resize(libNewSize);
            return S_OK;
        });
    }

    HRESULT Stat(STATSTG* pstatstg, DWORD) override {
        if (!pstatstg) return STG_E_INVALIDPOINTER;
        *pstatstg = {};
        pstatstg->type = STGTY_STREAM;
        pstatstg->cbSize = m_Bytes.size();
        return S_OK;
    }

private:
    std::vector<BYTE> m_Bytes;
    std::uint64_t m_nPlace = 0;
};

} // namespace

HRESULT CreateMemoryStream(std::span<const BYTE> content, IStream** ppStream) {
    if (!ppStream) return E_POINTER;
    *ppStream = nullptr;
    return WithoutExceptions([&] {
        *ppStream = MakeCounted<CMemoryStream>(content).Detach();
        return S_OK;
    });
}

} // namespace vellumcaster
