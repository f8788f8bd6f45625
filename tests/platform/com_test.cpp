#include "platform/com/bstr.h"
#include "platform/com/free_threaded_marshaler.h"
#include "platform/com/memory_stream.h"
#include "platform/com/unknown_impl.h"
#include "platform/com/utf8.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

namespace vellumcaster {
namespace {

TEST(Bstr, KeepsItsByteLengthBeforeItAndTellsNullFromEmpty) {
    CBstr bs;
    ASSERT_EQ(bs.Assign(std::u16string_view(u"a\0b", 3)), S_OK);
    DWORD cb = 0;
    std::memcpy(&cb, reinterpret_cast<const BYTE*>(bs.Get()) - 4, 4);
    EXPECT_EQ(cb, 6u);
    EXPECT_EQ(bs.Get()[3], u'\0');
    ASSERT_EQ(bs.Assign(bs.Get()), S_OK) << "a copy of itself";
    EXPECT_EQ(bs.View(), std::u16string_view(u"a\0b", 3));
    EXPECT_TRUE(bs.Assign(std::u16string_view()) == S_OK && bs);
    EXPECT_TRUE(bs.Assign(BSTR{nullptr}) == S_OK && !bs);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0x80000000u), nullptr) << "the prefix cannot hold it";
}

TEST(Utf8, ReplacesSurrogatesWithoutAPartner) {
    EXPECT_EQ(ToUtf8(u"a\u007f\u00e9\u07ff"), "a\x7f\xC3\xA9\xDF\xBF");
    EXPECT_EQ(ToUtf8(u"\u0800\uffff\U00010000\U0010FFFF"), "\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(ToUtf8(std::u16string{0xDC00, u'x', 0xD800}), "\xEF\xBF\xBDx\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf8(std::u16string{0xD800, 0xD800, 0xDC00}), "\xEF\xBF\xBD\xF0\x90\x80\x80");
}

struct IFirst : IUnknown {
    static constexpr GUID IID{1, 0, 0, {}};
};
struct ISecond : IUnknown {
    static constexpr GUID IID{2, 0, 0, {}};
};

class CObject final : public CUnknownImpl<IFirst, ISecond> {
public:
    explicit CObject(int* pnAlive) : m_pnAlive(pnAlive) { ++*m_pnAlive; }

protected:
    ~CObject() override { --*m_pnAlive; }

private:
    int* m_pnAlive;
};

TEST(CountedObject, IsOneObjectUnderAllItsInterfacesAndLivesAsLongAsOneReference) {
    int nAlive = 0;
    CComPtr<CObject> sp = MakeCounted<CObject>(&nAlive);
    CComPtr<ISecond> spSecond;
    CComPtr<IUnknown> spRoot;
    ASSERT_EQ(sp->QueryInterface(ISecond::IID, reinterpret_cast<void**>(spSecond.Put())), S_OK);
    ASSERT_EQ(spSecond->QueryInterface(IUnknown::IID, reinterpret_cast<void**>(spRoot.Put())), S_OK);
    EXPECT_EQ(spRoot.Get(), static_cast<IFirst*>(sp.Get()));
    void* pv = &nAlive;
    EXPECT_EQ(sp->QueryInterface(GUID{3, 0, 0, {}}, &pv), E_NOINTERFACE);
    EXPECT_EQ(pv, nullptr);
    EXPECT_EQ(sp->QueryInterface(IFirst::IID, nullptr), E_POINTER);

    sp.Reset();
    spRoot = CComPtr<IUnknown>();
    EXPECT_EQ(nAlive, 1);
    spSecond.Reset();
    EXPECT_EQ(nAlive, 0);
}

TEST(FreeThreadedMarshaler, TakesAPointerThroughAStream) {
    int nAlive = 0;
    const CComPtr<CObject> sp = MakeCounted<CObject>(&nAlive);
    CComPtr<IUnknown> spMarshaler;
    CComPtr<IMarshal> spMarshal;
    ASSERT_EQ(CoCreateFreeThreadedMarshaler(static_cast<IFirst*>(sp.Get()), spMarshaler.Put()), S_OK);
    ASSERT_EQ(spMarshaler->QueryInterface(IMarshal::IID, reinterpret_cast<void**>(spMarshal.Put())), S_OK);
    CComPtr<IFirst> spWhole;
    EXPECT_EQ(spMarshal->QueryInterface(IFirst::IID, reinterpret_cast<void**>(spWhole.Put())), S_OK)
        << "it speaks for the whole";
    const auto counts = [&] { return sp->AddRef(), sp->Release(); };
    const ULONG cBefore = counts();

    const struct {
        MSHLFLAGS flags;
        ULONG cWritten; ///< references that stand in the stream
        int nReads;
    } ways[] = {{MSHLFLAGS_NORMAL, 1, 1}, {MSHLFLAGS_TABLESTRONG, 1, 3}, {MSHLFLAGS_TABLEWEAK, 0, 3}};
    for (const auto& way : ways) {
        CComPtr<IStream> spStream;
        ASSERT_EQ(CreateMemoryStream({}, spStream.Put()), S_OK);
        EXPECT_EQ(spMarshal->MarshalInterface(spStream.Get(), IFirst::IID, static_cast<IFirst*>(sp.Get()),
                                              MSHCTX_INPROC, nullptr, way.flags),
                  S_OK);
        EXPECT_EQ(counts(), cBefore + way.cWritten);
        for (int i = 0; i < way.nReads; ++i) {
            CComPtr<ISecond> spRead;
            spStream->Seek(0, STREAM_SEEK_SET, nullptr);
            EXPECT_EQ(
                spMarshal->UnmarshalInterface(spStream.Get(), ISecond::IID, reinterpret_cast<void**>(spRead.Put())),
                S_OK);
            EXPECT_EQ(spRead, static_cast<ISecond*>(sp.Get()));
        }
        spStream->Seek(0, STREAM_SEEK_SET, nullptr);
        if (way.flags != MSHLFLAGS_NORMAL) {
            EXPECT_EQ(spMarshal->ReleaseMarshalData(spStream.Get()), S_OK);
        }
        EXPECT_EQ(counts(), cBefore) << way.flags;
    }

    const std::array<BYTE, 64> forged{};
    CComPtr<IStream> spForged;
    ASSERT_EQ(CreateMemoryStream(forged, spForged.Put()), S_OK);
    void* pv = &nAlive;
    EXPECT_EQ(spMarshal->UnmarshalInterface(spForged.Get(), IFirst::IID, &pv), E_INVALIDARG) << "no pointer of ours";
    EXPECT_EQ(pv, nullptr);
    EXPECT_EQ(spMarshal->MarshalInterface(spForged.Get(), IFirst::IID, static_cast<IFirst*>(sp.Get()), MSHCTX_LOCAL,
                                          nullptr, MSHLFLAGS_NORMAL),
              E_NOTIMPL)
        << "no way leads out of the process";
}

} // namespace
} // namespace vellumcaster
