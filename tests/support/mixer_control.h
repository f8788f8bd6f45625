#pragma once

#include "engine/frame_mixer.h"
#include "platform/com/memory_stream.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vellumcaster::testing_support {

inline CBstr Text(std::u16string_view text) {
    CBstr bs;
    EXPECT_EQ(bs.Assign(text), S_OK);
    return bs;
}

/// The name in a record that was handed out, which is freed.
inline std::u16string TakeName(BSTR& bs) {
    const BSTR bsTaken = std::exchange(bs, nullptr);
    std::u16string name(CBstr::View(bsTaken));
    SysFreeString(bsTaken);
    return name;
}

/// An item as the list shows it.
struct ListedItem {
    LONG cookie = -1;
    std::u16string name;
    ITEM_TYPE eType = eText;
};

/// A frame mixer through all of its interfaces.
struct MixerControl {
    template <class Interface>
    [[nodiscard]] CComPtr<Interface> Ask() const {
        CComPtr<Interface> sp;
        EXPECT_EQ(spMixer->QueryInterface(Interface::IID, reinterpret_cast<void**>(sp.Put())), S_OK);
        return sp;
    }

    CComPtr<IFrameMixer> spMixer = MakeFrameMixer();
    CComPtr<IVellumcaster> spFirst = Ask<IVellumcaster>();
    CComPtr<IVellumcaster2> spControl = Ask<IVellumcaster2>();
    CComPtr<IPersistStream> spPersist = Ask<IPersistStream>();
    CComPtr<IVellumcasterItem> spItem = Ask<IVellumcasterItem>();

    /// A shown text of some kind. \return its cookie.
    LONG AddText(ITEM_TYPE eType = eText, std::u16string_view text = u"text") const {
        const CBstr bs = Text(text);
        OVERLAY_PROPS props;
        props.bShow = 1;
        props.sAlphaValue = 255;
        props.lForeColor = static_cast<LONG>(0xFFFFFFFF);
        props.nCounterCur = props.nCounterStart = -1;
        props.bsTextString = bs.Get();
        LONG cookie = -1;
        EXPECT_EQ(spControl->AddOutlinedText(eType, nullptr, 4, &props, nullptr, &cookie), S_OK);
        return cookie;
    }

    /// A hidden picture of 4x2 pixels.
    LONG AddPicture(BSTR bsName = nullptr, BYTE color = 0) const {
        ImageInfoTag info{4, -2, 32, 0, 32};
        const std::vector<BYTE> pixels(32, color);
        LONG cookie = -1;
        EXPECT_EQ(spControl->AddImageFromMemory2(&info, 32, pixels.data(), bsName, -1, -1, nullptr, &cookie), S_OK);
        return cookie;
    }

    [[nodiscard]] OVERLAY_PROPS PropsOf(LONG cookie) const {
        OVERLAY_PROPS props;
        EXPECT_EQ(spControl->GetItemProps(cookie, &props), S_OK);
        TakeName(props.bsTextString);
        return props;
    }

    [[nodiscard]] SIZE SizeOf(LONG cookie) const {
        SIZE size;
        EXPECT_EQ(spControl->GetItemSize(cookie, &size), S_OK);
        return size;
    }

    /// Saves the list, which is then not marked as changed. \return what was written, read from the start.
    CComPtr<IStream> Save() const {
        CComPtr<IStream> sp;
        EXPECT_EQ(CreateMemoryStream({}, sp.Put()), S_OK);
        EXPECT_EQ(spPersist->Save(sp.Get(), 1), S_OK);
        EXPECT_EQ(sp->Seek(0, STREAM_SEEK_SET, nullptr), S_OK);
        return sp;
    }

    [[nodiscard]] LONG Count() const {
        LONG nCount = -1;
        EXPECT_EQ(spControl->GetItemCount2(&nCount), S_OK);
        return nCount;
    }

    /// An item by its place in the list, unless that is empty.
    [[nodiscard]] std::optional<ListedItem> ItemAt(LONG index) const {
        ListedItem item;
        BSTR bsName = nullptr;
        if (spControl->GetItemInfo2(index, &item.cookie, &bsName, &item.eType) != S_OK) return {};
        item.name = TakeName(bsName);
        return item;
    }

    [[nodiscard]] std::vector<std::u16string> Names() const {
        std::vector<std::u16string> names;
        while (const auto item = ItemAt(static_cast<LONG>(names.size())))
            names.push_back(item->name);
        return names;
    }
};

} // namespace vellumcaster::testing_support
