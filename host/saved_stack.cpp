#include "host/saved_stack.h"

#include "host/plain_text.h"
#include "host/refusal.h"
#include "platform/com/file_stream.h"

#include <array>
#include <cstdio>
#include <vector>

namespace vellumcaster {

namespace {

struct Reason {
    HRESULT hr;
    const char* pszText;
};

constexpr std::array reasons{
    Reason{static_cast<HRESULT>(0x80070002), "there is no such file or folder"},
    Reason{static_cast<HRESULT>(0x80070003), "there is no such folder"},
    Reason{static_cast<HRESULT>(0x80070005), "it may not be used, or is no file"},
    Reason{static_cast<HRESULT>(0x80070020), "another program has it open"},
    Reason{static_cast<HRESULT>(0x80070070), "the disk is full"},
    Reason{E_INVALIDARG, "it is no saved stack, or holds what no stack does"},
    Reason{E_FAIL, "it is cut off, or holds what no stack does"},
    Reason{E_OUTOFMEMORY, "there is not enough memory"},
};

void RefuseFailure(HRESULT hr, const char* pszVerb, const std::string& path) {
    if (SUCCEEDED(hr)) return;
    for (const Reason& reason : reasons)
        if (reason.hr == hr) throw Refusal("cannot " + std::string(pszVerb) + " " + path + ": " + reason.pszText);
    std::array<char, 32> code{};
    static_cast<void>(std::snprintf(code.data(), code.size(), "error 0x%08X", static_cast<unsigned>(hr)));
    throw Refusal("cannot " + std::string(pszVerb) + " " + path + ": " + code.data());
}

CComPtr<IStream> Open(const std::string& path) {
    CComPtr<IStream> spStream;
    RefuseFailure(OpenFileStream(path.c_str(), spStream.Put()), "read", path);
    return spStream;
}

struct ListedItem {
    ITEM_TYPE eType;
    std::u16string name;

    friend bool operator==(const ListedItem&, const ListedItem&) = default;
};

/// What stands on an engine's stack from a place on.
std::vector<ListedItem> ItemsFrom(COverlayEngine& engine, LONG nPlace) {
    std::vector<ListedItem> items;
    Cookie cookie = 0;
    BSTR bsName = nullptr;
    ITEM_TYPE eType = eText;
    for (; engine.GetItemInfo2(nPlace, &cookie, &bsName, &eType) == S_OK; ++nPlace) {
        items.push_back({eType, std::u16string(CBstr::View(bsName))});
        SysFreeString(bsName);
    }
    return items;
}

} // namespace

void ReadStack(const std::string& path, const std::function<void(const StoredItem&)>& take) {
    const CComPtr<IStream> spStream = Open(path);
    StackHeader header;
    RefuseFailure(ReadHeader(*spStream, header), "read", path);
    if (header.nVersion > nStackVersion) throw Refusal("cannot read " + path + ": a later version has saved it");
    StoredItem item;
    for (DWORD i = 0; i < header.cItems; ++i) {
        RefuseFailure(ReadItem(*spStream, item), "read", path);
        take(item);
    }
}

void AddSavedStack(COverlayEngine& engine, const SavedStack& stack) {
    std::vector<ListedItem> stored;
    ReadStack(stack.path, [&stored](const StoredItem& item) {
        stored.push_back({item.eType, std::u16string(item.bsName.View())});
    });
    LONG nBefore = 0;
    engine.GetItemCount2(&nBefore);
    RefuseFailure(engine.Load(Open(stack.path).Get()), "read", stack.path);

    const std::vector<ListedItem> made = ItemsFrom(engine, nBefore);
    auto next = made.begin();
    for (const ListedItem& item : stored) {
        const bool bMade = next != made.end() && (*next == item || (next->eType == item.eType && item.name.empty()));
        if (bMade)
            ++next;
        else
            static_cast<void>(std::fprintf(stderr, "vellumcast: %s: \"%s\" cannot be shown and is left out\n",
                                           stack.path.c_str(), PlainText(item.name).c_str()));
    }
}

void SaveStack(COverlayEngine& engine, const std::string& path) {
    CComPtr<IStream> spStream;
    RefuseFailure(CreateFileStream(path.c_str(), spStream.Put()), "write", path);
    RefuseFailure(engine.Save(spStream.Get(), true), "write", path);
    RefuseFailure(spStream->Commit(0), "write", path);
}

} // namespace vellumcaster
