#pragma once

#include <vellumcaster/types.h>

#include <utility>

namespace vellumcaster {

/// Owns one reference on an interface, or none.
template <class Interface>
class CComPtr {
public:
    CComPtr() = default;
    /// Takes a reference of its own. A plain pointer is what calls hand in, so it converts by itself.
    CComPtr(Interface* p) : m_p(p) { // NOLINT(google-explicit-constructor)
        if (m_p) m_p->AddRef();
    }
    CComPtr(const CComPtr& other) : CComPtr(other.m_p) {}
    CComPtr(CComPtr&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    ~CComPtr() { Reset(); }

    CComPtr& operator=(CComPtr other) noexcept {
        std::swap(m_p, other.m_p);
        return *this;
    }

    /// Gives the reference back.
    void Reset() {
        if (Interface* p = std::exchange(m_p, nullptr)) p->Release();
    }

    /// Takes over a reference that the caller holds.
    void Attach(Interface* p) {
        Reset();
        m_p = p;
    }

    /// Hands the reference to the caller.
    [[nodiscard]] Interface* Detach() { return std::exchange(m_p, nullptr); }

    /// Where a call may put a referenced interface.
    [[nodiscard]] Interface** Put() {
        Reset();
        return &m_p;
    }

    /// Asks the object for another of its interfaces.
    /// \return S_OK; E_NOINTERFACE, with `other` empty. There must be an object.
    template <class Other>
    [[nodiscard]] HRESULT QueryInterface(CComPtr<Other>& other) const {
        void* p = nullptr;
        const HRESULT hr = m_p->QueryInterface(Other::IID, &p);
        other.Attach(static_cast<Other*>(p));
        return hr;
    }

    [[nodiscard]] Interface* Get() const { return m_p; }
    Interface* operator->() const { return m_p; }
    Interface& operator*() const { return *m_p; }
    explicit operator bool() const { return m_p != nullptr; }
    friend bool operator==(const CComPtr& a, const Interface* b) { return a.m_p == b; }

private:
    Interface* m_p = nullptr;
};

} // namespace vellumcaster
