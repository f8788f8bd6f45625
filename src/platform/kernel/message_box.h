#pragma once

#include <cstdint>

namespace vellumcaster {

/// A box or a beep of this style stands for an error: a stop icon and an OK button.
inline constexpr std::uint32_t MB_ICONSTOP = 16;

/// How the person at the machine is told. Called on whatever thread has something to say.
struct MessageHandler {
    void (*beep)(std::uint32_t style);
    /// Returns when the person has seen it.
    void (*box)(const char* pszText, const char* pszTitle, std::uint32_t style);
};

/// Replaces the handler, null for the default, which beeps not and writes one line to standard error.
/// \param pHandler  alive until it is replaced. \return the earlier one, null for the default.
const MessageHandler* SetMessageHandler(const MessageHandler* pHandler);

void MessageBeep(std::uint32_t style);

/// Shows a box without an owner window.
void MessageBoxA(const char* pszText, const char* pszTitle, std::uint32_t style);

} // namespace vellumcaster
