#pragma once

#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/results.h>
#include <vellumcaster/unknown.h>

#include <atomic>
#include <utility>

namespace vellumcaster {

/// Identity and reference count of an object with the given interfaces; the first one answers for `IUnknown`.
/// An object starts with one reference and is made by `MakeCounted`.
template <class First, class... Others>
class CUnknownImpl : public First, public Others... {
public:
    CUnknownImpl(const CUnknownImpl&) = delete;
    CUnknownImpl& operator=(const CUnknownImpl&) = delete;

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (iid == IUnknown::IID) *ppv = static_cast<First*>(this);
        Offer<First>(iid, ppv);
        (Offer<Others>(iid, ppv), ...);
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    ULONG AddRef() override { return m_cReferences.fetch_add(1, std::memory_order_relaxed) + 1; }

    ULONG Release() override {
        const ULONG cLeft = m_cReferences.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (cLeft == 0) delete this;
        return cLeft;
    }

protected:
    CUnknownImpl() = default;
    virtual ~CUnknownImpl() = default;

private:
    /// Offers an interface, and what it derives from as far as it says so with `Parent`.
    template <class Interface, class Asked = Interface>
    void Offer(const GUID& iid, void** ppv) {
        if (iid == Asked::IID) *ppv = static_cast<Asked*>(static_cast<Interface*>(this));
        if constexpr (requires { typename Asked::Parent; }) Offer<Interface, typename Asked::Parent>(iid, ppv);
    }

    std::atomic<ULONG> m_cReferences = 1;
};

/// Makes a counted object; the pointer holds its first reference.
template <class Object, class... Arguments>
[[nodiscard]] CComPtr<Object> MakeCounted(Arguments&&... arguments) {
    CComPtr<Object> sp;
    sp.Attach(new Object(std::forward<Arguments>(arguments)...));
    return sp;
}

} // namespace vellumcaster
