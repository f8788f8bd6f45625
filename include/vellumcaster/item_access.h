#pragma once

#include <vellumcaster/item.h>
#include <vellumcaster/log_font.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// What the properties of an item lack: its font and text format, and a way to draw it with properties that are being
/// tried out. Any thread; the next frame waits for a call to end.
struct IVellumcasterItem : IUnknown {
    static constexpr GUID IID{0x0BF3D0F7, 0xE212, 0x4872, {0xA0, 0x9B, 0x7C, 0x71, 0xA4, 0xD5, 0xBF, 0x81}};

    /// Any of the pointers may be null. \return S_OK; E_INVALIDARG for an unknown cookie.
    virtual HRESULT GetItemTextFormat(LONG nCookie, LOGFONT* pLogFont, LONG* pnTextFormat, ITEM_TYPE* pType) = 0;

    /// \return E_NOTIMPL, always.
    virtual HRESULT Reserved(DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD) = 0;

    /// Draws a text over a picture of the item's own size and leaves the item as it is. Position, movement and
    /// visibility play no part. Of an image nothing is drawn; the answer is whether it could be prepared.
    /// \param pProps  the properties to draw with; null: the item's.
    /// \param pImageInfo  size of the picture and its depth: 32 bits, else 24.
    /// \param pbImage  the picture: biWidth * |biHeight| pixels, rows from the bottom up whatever the height's sign, each
    ///                 a multiple of four bytes long.
    /// \return S_OK; E_POINTER for a null record of the picture; E_INVALIDARG for an unknown cookie or a null picture;
    ///         E_UNEXPECTED for an item that was never drawn; E_NOTIMPL for a picture of another size than the item's,
    ///         which is left alone; E_OUTOFMEMORY; what drawing answers.
    virtual HRESULT RenderItem(LONG nCookie, const OVERLAY_PROPS* pProps, DWORD dwUnused,
                               const ImageInfoTag* pImageInfo, DWORD cbUnused, BYTE* pbImage) = 0;

protected:
    ~IVellumcasterItem() = default;
};

} // namespace vellumcaster
