#include "platform/kernel/message_box.h"

#include <atomic>
#include <cstdio>

namespace vellumcaster {

namespace {

constexpr MessageHandler toStandardError{
    [](std::uint32_t) {},
    [](const char* pszText, const char* pszTitle, std::uint32_t) {
        static_cast<void>(std::fprintf(stderr, "%s: %s\n", pszTitle, pszText));
    },
};

std::atomic<const MessageHandler*> g_pHandler = nullptr;

const MessageHandler& Handler() {
    const MessageHandler* pHandler = g_pHandler;
    return pHandler ? *pHandler : toStandardError;
}

} // namespace

const MessageHandler* SetMessageHandler(const MessageHandler* pHandler) { return g_pHandler.exchange(pHandler); }

void MessageBeep(std::uint32_t style) { Handler().beep(style); }

void MessageBoxA(const char* pszText, const char* pszTitle, std::uint32_t style) {
    Handler().box(pszText, pszTitle, style);
}

} // namespace vellumcaster
