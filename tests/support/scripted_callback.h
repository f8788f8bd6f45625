#pragma once

#include "platform/com/unknown_impl.h"

#include <vellumcaster/callback.h>

#include <functional>
#include <optional>
#include <utility>

namespace vellumcaster::testing_support {

/// What a callback was told of a frame's times; a null pointer is no value.
struct ToldTimes {
    std::optional<LONGLONG> mediaStart, mediaEnd, start, stop;
};

/// A callback that does what a test says.
class CScriptedCallback final : public CUnknownImpl<IVellumcasterCallback> {
public:
    explicit CScriptedCallback(std::function<HRESULT(OVERLAY_PROPS&)> script) : m_script(std::move(script)) {}

    HRESULT OnFrameOverlay(OVERLAY_PROPS* pProps, LONGLONG* pllStart, LONGLONG* pllEnd, REFERENCE_TIME* prtStart,
                           REFERENCE_TIME* prtEnd) override {
        ++m_nCalls;
        const auto told = [](const LONGLONG* p) { return p ? std::optional(*p) : std::nullopt; };
        m_Told = {told(pllStart), told(pllEnd), told(prtStart), told(prtEnd)};
        return m_script(*pProps);
    }

    int m_nCalls = 0;
    ToldTimes m_Told;

private:
    std::function<HRESULT(OVERLAY_PROPS&)> m_script;
};

} // namespace vellumcaster::testing_support
