#pragma once

#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// A row of bytes that is read or written from front to back.
struct ISequentialStream : IUnknown {
    static constexpr GUID IID{0x0C733A30, 0x2A1C, 0x11CE, {0xAD, 0xE5, 0x00, 0xAA, 0x00, 0x44, 0x77, 0x3D}};

    /// \param cb  bytes wanted. \param pcbRead  receives the bytes read; may be null.
    /// \return S_OK; S_FALSE or S_OK where the stream ended before; a failure.
    virtual HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) = 0;
    /// \param pcbWritten  receives the bytes written; may be null.
    virtual HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) = 0;

protected:
    ~ISequentialStream() = default;
};

/// From where `IStream::Seek` counts.
enum STREAM_SEEK : std::uint32_t {
    STREAM_SEEK_SET = 0, ///< from the front
    STREAM_SEEK_CUR = 1, ///< from the present place
    STREAM_SEEK_END = 2, ///< from the end
};

enum STGTY : std::uint32_t { STGTY_STREAM = 2 };

/// What a stream says of itself.
struct STATSTG {
    OLECHAR* pwcsName = nullptr; ///< the caller frees it with `CoTaskMemFree`; may be null
    DWORD type = 0;              ///< `STGTY`
    std::uint64_t cbSize = 0;
    std::uint64_t mtime = 0; ///< the three times in units of 100 ns since 1601, 0 where not known
    std::uint64_t ctime = 0;
    std::uint64_t atime = 0;
    DWORD grfMode = 0;
    DWORD grfLocksSupported = 0;
    GUID clsid;
    DWORD grfStateBits = 0;
    DWORD reserved = 0;
};

/// A row of bytes with a place in it that moves.
struct IStream : ISequentialStream {
    using Parent = ISequentialStream;
    static constexpr GUID IID{0x0000000C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    /// \param plibNewPosition  receives the new place, from the front; may be null.
    virtual HRESULT Seek(LONGLONG dlibMove, DWORD dwOrigin, std::uint64_t* plibNewPosition) = 0;
    virtual HRESULT SetSize(std::uint64_t libNewSize) = 0;
    virtual HRESULT CopyTo(IStream* pstm, std::uint64_t cb, std::uint64_t* pcbRead, std::uint64_t* pcbWritten) = 0;
    /// Makes what was written last: until then a stream that is written as a whole can still come to nothing.
    virtual HRESULT Commit(DWORD grfCommitFlags) = 0;
    virtual HRESULT Revert() = 0;
    virtual HRESULT LockRegion(std::uint64_t libOffset, std::uint64_t cb, DWORD dwLockType) = 0;
    virtual HRESULT UnlockRegion(std::uint64_t libOffset, std::uint64_t cb, DWORD dwLockType) = 0;
    /// \param grfStatFlag  1: without the name.
    virtual HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) = 0;
    virtual HRESULT Clone(IStream** ppstm) = 0;

protected:
    ~IStream() = default;
};

} // namespace vellumcaster
