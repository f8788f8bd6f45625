#include "host/saved_stack.h"

#include "host/picture.h"
#include "host/plain_text.h"
#include "host/refusal.h"
#include "platform/com/file_stream.h"

#include <array>
#include <cstdio>
#include <utility>
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

/// Pictures are treated as those of the command line, so that whatever was kept comes back the same.
bool AddStoredPicture(COverlayEngine& engine, const StoredItem& item) {
    if (!IsWorthMaking(item)) return false;
    Picture picture;
    picture.path = picture.text = ToUtf8(item.bsName.View());
    picture.size = item.size;
    picture.nColorKeyMin = item.props.nColorKeyMin;
    picture.nColorKeyMax = item.props.nColorKeyMax;
    try {
        AddPicture(engine, picture, item.props);
        return true;
    } catch (const Refusal&) {
        return false;
    }
}

} // namespace

void ReadStack(const std::string& path, const std::function<void(StoredItem&)>& take) {
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
    std::vector<StoredItem> stored;
    ReadStack(stack.path, [&stored](StoredItem& item) { stored.push_back(std::move(item)); });
    for (StoredItem& item : stored) {
        const bool bMade = item.eType == eImage ? AddStoredPicture(engine, item) : engine.AddStored(item);
        if (!bMade)
            static_cast<void>(std::fprintf(stderr, "vellumcast: %s: \"%s\" cannot be shown and is left out\n",
                                           stack.path.c_str(), PlainText(item.bsName.View()).c_str()));
    }
}

void SaveStack(COverlayEngine& engine, const std::string& path) {
    CComPtr<IStream> spStream;
    RefuseFailure(CreateFileStream(path.c_str(), spStream.Put()), "write", path);
    RefuseFailure(engine.Save(spStream.Get(), true), "write", path);
    RefuseFailure(spStream->Commit(0), "write", path);
}

} // namespace vellumcaster
