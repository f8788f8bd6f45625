#include "image/picture_persist.h"

#include "image/blob_holder.h"
#include "image/bmp_headers.h"
#include "image/format_table.h"
#include "platform/kernel/files.h"
#include "platform/kernel/trace.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace vellumcaster::CPicturePersist {

namespace {

constexpr DWORD cbHeaders = cbBmpFileHeader + cbBmpInfoHeader;

HRESULT ReadExactly(HANDLE hFile, void* pv, DWORD cb) {
    DWORD cbRead = 0;
    if (!ReadFile(hFile, pv, cb, &cbRead, nullptr)) return LastErrorAsResult();
    return cbRead == cb ? S_OK : E_FAIL;
}

HRESULT WriteExactly(HANDLE hFile, const void* pv, DWORD cb) {
    DWORD cbWritten = 0;
    if (!WriteFile(hFile, pv, cb, &cbWritten, nullptr)) return LastErrorAsResult();
    return cbWritten == cb ? S_OK : E_FAIL;
}

template <std::size_t cb, class Header>
HRESULT ReadHeader(HANDLE hFile, Header& header) {
    std::array<BYTE, cb> stored{};
    const HRESULT hr = ReadExactly(hFile, stored.data(), cb);
    if (SUCCEEDED(hr)) DecodeBmpHeader(stored, header);
    return hr;
}

/// A file can only be taken at its word about its size as far as it really goes.
HRESULT CheckRoomForPixels(HANDLE hFile, const BITMAPFILEHEADER& fileHeader, DWORD cbPixels) {
    LONGLONG cbFile = 0;
    if (!GetFileSizeEx(hFile, &cbFile)) return LastErrorAsResult();
    const LONGLONG end = LONGLONG{fileHeader.bfOffBits} + cbPixels;
    return end <= std::min(LONGLONG{fileHeader.bfSize}, cbFile) ? S_OK : E_FAIL;
}

HRESULT SeekTo(HANDLE hFile, DWORD offset) {
    LONG high = 0;
    const DWORD low = SetFilePointer(hFile, static_cast<LONG>(offset), &high, FILE_BEGIN);
    return low == offset && high == 0 ? S_OK : E_FAIL;
}

HRESULT ReadPicture(HANDLE hFile, BITMAPINFOHEADER& header, CTaskBlob& pixels) {
    BITMAPFILEHEADER fileHeader;
    HRESULT hr = ReadHeader<cbBmpFileHeader>(hFile, fileHeader);
    if (FAILED(hr)) return hr;
    if (fileHeader.bfType != bmpFileType || fileHeader.bfOffBits < cbHeaders ||
        fileHeader.bfOffBits >= fileHeader.bfSize)
        return E_FAIL;

    hr = ReadHeader<cbBmpInfoHeader>(hFile, header);
    if (FAILED(hr)) return hr;
    if (!TestAndCorrectBmpHeader(&header)) return E_FAIL;
    hr = CheckRoomForPixels(hFile, fileHeader, header.biSizeImage);
    if (FAILED(hr)) return hr;
    if (fileHeader.bfOffBits > cbHeaders) hr = SeekTo(hFile, fileHeader.bfOffBits);
    if (FAILED(hr)) return hr;

    hr = pixels.Alloc(header.biSizeImage);
    return FAILED(hr) ? hr : ReadExactly(hFile, pixels.Data(), header.biSizeImage);
}

/// Everything of a saved file that comes before its pixels.
struct HeaderBlock {
    std::array<BYTE, cbHeaders + cbBmpMasks> bytes{};
    DWORD cb = cbHeaders;
};

HeaderBlock MakeHeaderBlock(const BITMAPINFOHEADER& header, const void* pMasks) {
    HeaderBlock block;
    const std::span all(block.bytes);
    if (header.biCompression == BI_BITFIELDS) {
        BmpMasks masks{};
        std::memcpy(masks.data(), pMasks, sizeof masks);
        EncodeBmpHeader(masks, all.last<cbBmpMasks>());
        block.cb += cbBmpMasks;
    }
    EncodeBmpHeader(header, all.subspan<cbBmpFileHeader, cbBmpInfoHeader>());
    EncodeBmpHeader(BITMAPFILEHEADER{bmpFileType, block.cb + header.biSizeImage, block.cb},
                    all.first<cbBmpFileHeader>());
    return block;
}

/// The format of a bitmap's pixels, 0 for none that is known.
std::uint32_t FormatCode(const BITMAPINFOHEADER& header) {
    if (header.biCompression != BI_RGB && header.biCompression != BI_BITFIELDS) return header.biCompression;
    switch (header.biBitCount) {
    case 32: return format_code::RGB32;
    case 24: return format_code::RGB24;
    case 16: return format_code::RGB565;
    default: return 0;
    }
}

} // namespace

bool TestAndCorrectBmpHeader(BITMAPINFOHEADER* pHeader) {
    if (!pHeader || pHeader->biSize != cbBmpInfoHeader) return false;
    if (pHeader->biPlanes != 1 || pHeader->biClrUsed != 0 || pHeader->biClrImportant != 0) return false;

    const std::uint32_t code = FormatCode(*pHeader);
    if (CPictureFormats::CheckDibGeometry(code, pHeader->biWidth, pHeader->biHeight, 0) < 0) return false;
    std::uint32_t cb = 0;
    if (FAILED(CPictureFormats::GetImageSize(code, pHeader->biWidth, pHeader->biHeight, &cb))) return false;
    if (pHeader->biSizeImage != cb) {
        VELLUM_TRACE_LINE(
            TraceCategory::General, TraceLevel::Warning,
            "WARNING. CPicturePersist::TestAndCorrectBmpHeader(): correcting bad image size: old=%u, new=%u\n",
            pHeader->biSizeImage, cb);
        pHeader->biSizeImage = cb;
    }
    return true;
}

HRESULT LoadFromFile(const char* pszFile, BITMAPINFOHEADER* pHeader, void** ppPixels) {
    if (!pszFile || !pHeader) return E_INVALIDARG;
    if (!ppPixels) return E_POINTER;
    *pHeader = {};
    *ppPixels = nullptr;

    SetLastError(ERROR_SUCCESS);
    CFileHandle file(CreateFileA(pszFile, GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) return LastErrorAsResult();

    BITMAPINFOHEADER header;
    CTaskBlob pixels;
    HRESULT hr = ReadPicture(file.Get(), header, pixels);
    if (!file.Close() && SUCCEEDED(hr)) hr = LastErrorAsResult();
    if (FAILED(hr)) return hr;
    *pHeader = header;
    *ppPixels = pixels.Detach().data();
    return S_OK;
}

HRESULT SaveToFile(const char* pszFile, const BITMAPINFOHEADER* pHeader, const void* pPixels) {
    if (!pszFile || !pHeader || !pPixels || pHeader->biSize != cbBmpInfoHeader) return E_INVALIDARG;
    BITMAPINFOHEADER header = *pHeader;
    if (!TestAndCorrectBmpHeader(&header)) return E_FAIL;
    const HeaderBlock block = MakeHeaderBlock(header, pHeader + 1);

    SetLastError(ERROR_SUCCESS);
    CFileHandle file(CreateFileA(pszFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) return LastErrorAsResult();
    HRESULT hr = WriteExactly(file.Get(), block.bytes.data(), block.cb);
    if (SUCCEEDED(hr)) hr = WriteExactly(file.Get(), pPixels, header.biSizeImage);
    if (!FlushFileBuffers(file.Get()) && SUCCEEDED(hr)) hr = LastErrorAsResult();
    if (!file.Close() && SUCCEEDED(hr)) hr = LastErrorAsResult();
    return hr;
}

} // namespace vellumcaster::CPicturePersist
