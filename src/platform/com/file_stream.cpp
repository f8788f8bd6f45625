#include "platform/com/file_stream.h"

#include "platform/com/byte_stream.h"
#include "platform/com/no_exceptions.h"
#include "platform/kernel/files.h"
#include "platform/kernel/new_file.h"

#include <cerrno>

#include <unistd.h>

namespace vellumcaster {

namespace {

HRESULT ErrnoAsResult() {
    SetLastError(ErrorFromErrno(errno));
    return LastErrorAsResult();
}

/// What a stream that goes from front to back over a file cannot do.
class CFileStream : public CByteStream {
public:
    HRESULT Read(void*, ULONG, ULONG* pcbRead) override {
        if (pcbRead) *pcbRead = 0;
        return STG_E_ACCESSDENIED;
    }
    HRESULT Write(const void*, ULONG, ULONG* pcbWritten) override {
        if (pcbWritten) *pcbWritten = 0;
        return STG_E_ACCESSDENIED;
    }
    HRESULT Seek(LONGLONG, DWORD, std::uint64_t*) override { return E_NOTIMPL; }
    HRESULT SetSize(std::uint64_t) override { return E_NOTIMPL; }
    HRESULT Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
};

class CFileReader final : public CFileStream {
public:
    explicit CFileReader(HANDLE hFile) : m_File(hFile) {}

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        DWORD cbRead = 0;
        if (pcbRead) *pcbRead = 0;
        if (!pv) return STG_E_INVALIDPOINTER;
        if (!ReadFile(m_File.Get(), pv, cb, &cbRead, nullptr)) return LastErrorAsResult();
        if (pcbRead) *pcbRead = cbRead;
        return S_OK;
    }

private:
    CFileHandle m_File;
};

class CFileWriter final : public CFileStream {
public:
    [[nodiscard]] HRESULT Open(const char* pszFile) { return m_File.Open(pszFile) ? S_OK : ErrnoAsResult(); }

    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override {
        if (pcbWritten) *pcbWritten = 0;
        if (!pv) return STG_E_INVALIDPOINTER;
        if (m_File.Descriptor() < 0) return STG_E_REVERTED;
        const auto* p = static_cast<const BYTE*>(pv);
        for (ULONG cbDone = 0; cbDone < cb;) {
            const ssize_t cbPart = write(m_File.Descriptor(), p + cbDone, cb - cbDone);
            if (cbPart < 0 && errno == EINTR) continue;
            if (cbPart < 0) return ErrnoAsResult();
            cbDone += static_cast<ULONG>(cbPart);
            if (pcbWritten) *pcbWritten = cbDone;
        }
        return S_OK;
    }

    HRESULT Commit(DWORD) override {
        if (m_File.Descriptor() < 0) return S_OK; // it stands already
        return WithoutExceptions([&] { return m_File.Flush() && m_File.Commit() ? S_OK : ErrnoAsResult(); });
    }

private:
    CNewFile m_File;
};

} // namespace

HRESULT OpenFileStream(const char* pszFile, IStream** ppStream) {
    if (!pszFile || !ppStream) return E_POINTER;
    *ppStream = nullptr;
    return WithoutExceptions([&] {
        CFileHandle file(CreateFileA(pszFile, GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file.IsOpen()) return LastErrorAsResult();
        *ppStream = MakeCounted<CFileReader>(file.Get()).Detach();
        static_cast<void>(file.Detach());
        return S_OK;
    });
}

HRESULT CreateFileStream(const char* pszFile, IStream** ppStream) {
    if (!pszFile || !ppStream) return E_POINTER;
    *ppStream = nullptr;
    return WithoutExceptions([&] {
        auto spWriter = MakeCounted<CFileWriter>();
        const HRESULT hr = spWriter->Open(pszFile);
        if (SUCCEEDED(hr)) *ppStream = spWriter.Detach();
        return hr;
    });
}

} // namespace vellumcaster
