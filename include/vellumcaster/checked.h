#pragma once

#include <vellumcaster/results.h>

#include <cstdio>
#include <exception>
#include <optional>
#include <utility>

namespace vellumcaster {

/// A call failed: which result it answered, and a sentence that names it.
class Error : public std::exception {
public:
    explicit Error(HRESULT hr) : m_hr(hr) {
        static_cast<void>(std::snprintf(m_sz, sizeof m_sz, "The overlay answered 0x%08X: %s.",
                                        static_cast<unsigned>(hr), Meaning(hr)));
    }

    [[nodiscard]] HRESULT Code() const noexcept { return m_hr; }
    [[nodiscard]] const char* what() const noexcept override { return m_sz; }

private:
    static const char* Meaning(HRESULT hr) {
        switch (hr) {
        case E_NOTIMPL: return "this cannot be done here";
        case E_NOINTERFACE: return "the object lacks the interface";
        case E_POINTER: return "a pointer is null";
        case E_UNEXPECTED: return "the state does not allow the call";
        case E_OUTOFMEMORY: return "there is no memory";
        case E_INVALIDARG: return "a bad argument, or an item that is gone";
        case VFW_E_NOT_STOPPED: return "the stream has to be stopped first";
        case VFW_E_WRONG_STATE: return "the stream has to be started first";
        case VFW_E_TYPE_NOT_ACCEPTED: return "the pixel format is refused";
        default: return "the call failed";
        }
    }

    HRESULT m_hr;
    char m_sz[96];
};

/// The outcome of a call that makes something: the thing, or why there is none.
template <class Value>
class [[nodiscard]] Result {
public:
    Result(Value value) : m_hr(S_OK), m_value(std::move(value)) {} // NOLINT(google-explicit-constructor)
    Result(const Error& error) : m_hr(error.Code()) {}             // NOLINT(google-explicit-constructor)

    explicit operator bool() const { return m_value.has_value(); }
    [[nodiscard]] HRESULT Code() const { return m_hr; }
    /// The thing. \throws Error where there is none.
    [[nodiscard]] Value& OrThrow() {
        if (!m_value) throw Error(m_hr);
        return *m_value;
    }

private:
    HRESULT m_hr;
    std::optional<Value> m_value;
};

/// Passes a success on. \throws Error for a failure.
inline HRESULT OrThrow(HRESULT hr) {
    if (FAILED(hr)) throw Error(hr);
    return hr;
}

} // namespace vellumcaster
