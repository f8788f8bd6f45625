#pragma once

#include "platform/com/no_exceptions.h"

#include <vellumcaster/item_access.h>
#include <vellumcaster/results.h>

namespace vellumcaster {

/// `IVellumcasterItem` of an object around an engine. No exception leaves a call.
/// \tparam Object  derives from this and has `Engine()`, a `COverlayEngine`.
template <class Object>
class IVellumcasterItemImpl : public IVellumcasterItem {
public:
    HRESULT GetItemTextFormat(LONG nCookie, LOGFONT* pLogFont, LONG* pnTextFormat, ITEM_TYPE* pType) override {
        return WithoutExceptions(
            [&] { return This().Engine().GetItemTextFormat(nCookie, pLogFont, pnTextFormat, pType); });
    }
    HRESULT Reserved(DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD) override { return E_NOTIMPL; }
    HRESULT RenderItem(LONG nCookie, const OVERLAY_PROPS* pProps, DWORD, const ImageInfoTag* pImageInfo, DWORD,
                       BYTE* pbImage) override {
        return WithoutExceptions([&] { return This().Engine().RenderItem(nCookie, pProps, pImageInfo, pbImage); });
    }

protected:
    ~IVellumcasterItemImpl() = default;

private:
    Object& This() { return static_cast<Object&>(*this); }
};

} // namespace vellumcaster
