#include "engine/props_codec.h"
#include "engine/stack_stream.h"
#include "image/picture_persist.h"
#include "platform/kernel/little_endian.h"
#include "support/mixer_control.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Bytes = std::vector<BYTE>;

/// Puts a stream together field by field, as the tables of the format have it.
class CStreamBytes {
public:
    CStreamBytes& U32(DWORD value) {
        std::array<BYTE, 4> bytes{};
        StoreLittleEndian(bytes.data(), value);
        return Raw(bytes);
    }
    CStreamBytes& String(std::u16string_view text) {
        U32(static_cast<DWORD>(2 * text.size() + 2));
        for (const char16_t c : text)
            m_Bytes.insert(m_Bytes.end(), {static_cast<BYTE>(c), static_cast<BYTE>(c >> 8)});
        m_Bytes.insert(m_Bytes.end(), {0, 0});
        return *this;
    }
    CStreamBytes& Header(DWORD nVersion, DWORD cItems) {
        return String(u"Quillbrook Sceneglaze Data").U32(nVersion).U32(cItems);
    }
    CStreamBytes& Props(const OVERLAY_PROPS& props) { return Raw(EncodeProps(props)); }
    /// Five numbers, eight bytes, a name of 32.
    CStreamBytes& Font(LONG nHeight, std::string_view face) {
        U32(static_cast<DWORD>(nHeight)).U32(0).U32(0).U32(0).U32(400).U32(0x01000000).U32(0x00000000);
        std::array<BYTE, 32> name{};
        std::copy(face.begin(), face.end(), name.begin());
        return Raw(name);
    }
    CStreamBytes& Raw(std::span<const BYTE> bytes) {
        m_Bytes.insert(m_Bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }
    [[nodiscard]] const Bytes& Get() const { return m_Bytes; }

private:
    Bytes m_Bytes;
};

OVERLAY_PROPS ShownAt(LONG nPosX) {
    OVERLAY_PROPS props;
    props.bShow = 1;
    props.nPosX = nPosX;
    props.sAlphaValue = 200;
    props.nColorKeyMin = props.nColorKeyMax = -1;
    return props;
}

class Persistence : public testing::Test, protected MixerControl {
protected:
    Persistence() { EXPECT_EQ(CPicturePersist::SaveToFile(m_File.string().c_str(), &m_Info, m_Pixels.data()), S_OK); }
    ~Persistence() override { std::filesystem::remove(m_File); }

    static CComPtr<IStream> StreamOf(const Bytes& bytes) {
        CComPtr<IStream> sp;
        EXPECT_EQ(CreateMemoryStream(bytes, sp.Put()), S_OK);
        return sp;
    }

    static Bytes Saved(const MixerControl& control) {
        Bytes bytes(0x10000);
        ULONG cb = 0;
        EXPECT_GE(control.Save()->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &cb), S_OK);
        bytes.resize(cb);
        return bytes;
    }

    HRESULT Load(const Bytes& bytes) const { return spPersist->Load(StreamOf(bytes).Get()); }

    /// A picture from the file, a text of each kind and one that may ask for anything, as it was never drawn.
    void AddOneOfEach() const {
        LONG cookie = 0;
        ASSERT_EQ(spControl->AddImage2(Text(m_File.u16string()).Get(), -1, 0, nullptr, &cookie), S_OK);
        ASSERT_EQ(spControl->ShowItem2(cookie, 1), S_OK);
        for (const ITEM_TYPE eType : {eText, eDate, eTime, eFrameNumber, eSMPTETimeCode})
            ASSERT_EQ(spControl->SetItemMovement(AddText(eType, u"HH \u65E5"), 0.5, -3, 1), S_OK);
        LOGFONT font;
        std::fill(std::begin(font.lfFaceName), std::end(font.lfFaceName), 'x');
        SIZE size{-7, 12};
        OVERLAY_PROPS props = ShownAt(3);
        props.dblOutlineWidth = std::numeric_limits<double>::quiet_NaN();
        ASSERT_EQ(spControl->AddOutlinedText(eFrameNumber, &font, -1, &props, &size, nullptr), S_OK);
    }

    const std::filesystem::path m_File =
        std::filesystem::path(testing::TempDir()) / ("persist_" + std::to_string(getpid()) + ".bmp");
    const BITMAPINFOHEADER m_Info{40, 4, 2, 1, 24, BI_RGB, 24, 0, 0, 0, 0};
    const Bytes m_Pixels = Bytes(24, 7);
};

TEST_F(Persistence, GivesTheSameBytesAfterALoadAndFailsWhereverTheyAreCut) {
    AddOneOfEach();
    const Bytes whole = Saved(*this);
    const MixerControl other;
    ASSERT_EQ(other.spPersist->Load(StreamOf(whole).Get()), S_OK);
    EXPECT_EQ(Saved(other), whole);
    EXPECT_EQ(other.Count(), 7);
    for (std::size_t cb = 0; cb < whole.size(); ++cb) {
        const auto cut = StreamOf(Bytes(whole.begin(), whole.begin() + std::ptrdiff_t(cb)));
        ASSERT_EQ(MixerControl().spPersist->Load(cut.Get()), E_FAIL) << cb;
    }
}

TEST_F(Persistence, WritesAnEmptyStackAsItsHeader) {
    EXPECT_EQ(Saved(*this), CStreamBytes().Header(0x02000003, 0).Get());
    EXPECT_EQ(Load(Saved(*this)), S_OK);
    std::uint64_t cb = 0;
    EXPECT_EQ(spPersist->GetSizeMax(&cb), S_OK);
    EXPECT_EQ(cb, 1024u);
    EXPECT_EQ(spPersist->GetSizeMax(nullptr), E_POINTER);
    EXPECT_EQ(spPersist->Load(nullptr), E_INVALIDARG);
    EXPECT_EQ(spPersist->Save(nullptr, 1), E_INVALIDARG);
}

TEST_F(Persistence, ReadsAStreamMadeByHand) {
    CStreamBytes bytes;
    bytes.Header(0x02000002, 5); // an earlier version reads the same
    bytes.U32(eText).Props(ShownAt(11)).U32(50).U32(20).Font(24, "Sans").U32(0x11).String(u"by hand");
    bytes.U32(eRect).Props(ShownAt(12)).U32(4).U32(4).U32(1).U32(1).String(u"never made");
    bytes.U32(7).Props(ShownAt(13));
    bytes.U32(eImage).Props(ShownAt(14)).U32(8).U32(6).String(m_File.u16string());
    bytes.U32(eFrameNumber).Props(ShownAt(15)).U32(0).U32(0).Font(0, "").U32(4).U32(0);
    AddText(eText, u"before");
    ASSERT_EQ(Load(bytes.Get()), S_OK);
    EXPECT_EQ(Names(), (std::vector<std::u16string>{u"before", u"by hand", m_File.u16string(), u"Frame Number"}))
        << "on top of what is there, in their order";
    EXPECT_EQ(spPersist->IsDirty(), S_FALSE);

    const LONG text = ItemAt(1).value().cookie;
    LOGFONT font;
    LONG nFormat = 0;
    ASSERT_EQ(spItem->GetItemTextFormat(text, &font, &nFormat, nullptr), S_OK);
    EXPECT_STREQ(font.lfFaceName, "Sans");
    EXPECT_EQ((std::array<LONG, 4>{font.lfHeight, font.lfWeight, font.lfCharSet, nFormat}),
              (std::array<LONG, 4>{24, 400, 1, 0x11}));
    EXPECT_EQ(EncodeProps(PropsOf(text)), EncodeProps(ShownAt(11)));
    EXPECT_GE(SizeOf(text).cx, 50) << "the stored size is the least";

    const LONG picture = ItemAt(2).value().cookie;
    EXPECT_EQ(SizeOf(picture), (SIZE{8, 6}));
    EXPECT_EQ(EncodeProps(PropsOf(picture)), EncodeProps(ShownAt(14)));
}

TEST_F(Persistence, PassesOverWhatCannotBeMade) {
    CStreamBytes bytes;
    bytes.Header(0x02000003, 7);
    bytes.U32(eText).Props(ShownAt(1)).U32(32768).U32(1).Font(12, "Sans").U32(4).String(u"as wide as a street");
    bytes.U32(eText).Props(ShownAt(1)).U32(16384).U32(16384).Font(12, "Sans").U32(4).String(u"as large as a field");
    bytes.U32(eImage).Props(ShownAt(1)).U32(0).U32(0).String(u"/nowhere/there is no.bmp");
    bytes.U32(eImage).Props(ShownAt(1)).U32(0).U32(0).U32(0);
    bytes.U32(eText).Props(ShownAt(1)).U32(0).U32(0).Font(30000, "Sans").U32(4).String(u"as high as a house");
    OVERLAY_PROPS outlined = ShownAt(1);
    outlined.dblOutlineWidth = 2049;
    bytes.U32(eFrameNumber).Props(outlined).U32(0).U32(0).Font(12, "Sans").U32(4).U32(0);
    bytes.U32(eText).Props(ShownAt(1)).U32(0).U32(0).Font(12, "Sans").U32(4).String(u"still there");
    ASSERT_EQ(Load(bytes.Get()), S_OK);
    EXPECT_EQ(Names(), std::vector<std::u16string>{u"still there"});
}

TEST_F(Persistence, RefusesWhatNoWriterWrites) {
    const auto text = [] {
        CStreamBytes bytes;
        bytes.Header(0x02000003, 1).U32(eText).Props(ShownAt(1)).U32(0).U32(0).Font(12, "").U32(4);
        return bytes;
    };
    EXPECT_EQ(Load(CStreamBytes().String(u"quillbrook sceneglaze data").U32(0).U32(0).Get()), E_INVALIDARG);
    EXPECT_EQ(Load(CStreamBytes().U32(0).U32(0x02000003).U32(0).Get()), E_INVALIDARG) << "no header";
    EXPECT_EQ(Load(CStreamBytes().Header(0x02000003, 0xFFFFFFFF).Get()), E_FAIL) << "a count that is not kept";
    EXPECT_EQ(Load(text().U32(4).U32(0x00780078).Get()), E_FAIL) << "a string without end";
    EXPECT_EQ(Load(text().U32(1).U32(0).Get()), E_FAIL) << "a string of one byte";
    EXPECT_EQ(Load(text().U32(0x200000).Raw(Bytes(0x200000)).Get()), E_FAIL) << "a string of two megabytes";
    EXPECT_EQ(Count(), 0);
}

TEST_F(Persistence, CountsALaterVersionAsEmpty) {
    spControl->SetItemPos2(AddText(), 1, 1);
    ASSERT_EQ(spPersist->IsDirty(), S_OK);
    EXPECT_EQ(Load(CStreamBytes().String(u"Quillbrook Sceneglaze Data").U32(0x02000004).Get()), S_OK);
    EXPECT_EQ(Names().size(), 1u);
    EXPECT_EQ(spPersist->IsDirty(), S_FALSE);
}

TEST_F(Persistence, KeepsItsMarkUntilAllIsWritten) {
    AddOneOfEach();
    EXPECT_EQ(spPersist->Save(StreamOf({}).Get(), 0), S_OK);
    EXPECT_EQ(spPersist->IsDirty(), S_OK) << "not asked to clear it";

    /// Takes so many writes and no more.
    class CFullStream final : public CUnknownImpl<ISequentialStream> {
    public:
        explicit CFullStream(int nTaken, bool bFails) : m_nTaken(nTaken), m_bFails(bFails) {}
        HRESULT Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
        HRESULT Write(const void*, ULONG cb, ULONG* pcbWritten) override {
            *pcbWritten = --m_nTaken < 0 ? cb - 1 : cb;
            return m_nTaken < 0 && m_bFails ? STG_E_MEDIUMFULL : S_OK;
        }

    private:
        int m_nTaken;
        bool m_bFails;
    };
    COverlayEngine& engine = static_cast<CCoFrameMixer*>(spMixer.Get())->Engine();
    for (const int nTaken : {0, 1, 2, 7}) {
        EXPECT_EQ(engine.Save(MakeCounted<CFullStream>(nTaken, true).Get(), true), STG_E_MEDIUMFULL);
        EXPECT_EQ(engine.Save(MakeCounted<CFullStream>(nTaken, false).Get(), true), E_FAIL) << "less than it was given";
    }
    EXPECT_EQ(spPersist->IsDirty(), S_OK);
    Save();
    EXPECT_EQ(spPersist->IsDirty(), S_FALSE);
}

} // namespace
} // namespace vellumcaster
