#include "engine/live_text.h"
#include "engine/outline_string_to_alpha.h"
#include "engine/text_rasteriser.h"
#include "image/layer_planes.h"
#include "image/mix_block.h"
#include "image/prepare_layer.h"
#include "platform/kernel/system_time.h"
#include "platform/text/kept_pictures.h"
#include "support/ratio_table.h"

#include <cairo.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace vellumcaster::bench {

namespace {

constexpr SIZE sizeFrame{1920, 1080};
constexpr LONG nMargin = 4;
constexpr LONG nScale = 2;
constexpr LONG nTextFormat = 4;
constexpr std::uint32_t streams[] = {format_code::I420, format_code::RGB32};

/// What an item shows, frame by frame.
struct Content {
    const char* pszName;
    void (*pfnWrite)(unsigned frame, char (&text)[32]);
    LONG lfHeight;
    double outlineWidth;
    bool bNeverSeen; ///< no glyph of it is kept
    double goal;
};

void WriteFrameNumber(unsigned frame, char (&text)[32]) {
    static_cast<void>(std::snprintf(text, sizeof text, "%03u,%03u", 100 + frame / 1000 % 900, frame % 1000));
}

void WriteTimecode(unsigned frame, char (&text)[32]) {
    static_cast<void>(std::snprintf(text, sizeof text, "%02u:%02u:%02u:%02u", frame / 90000 % 24, frame / 1500 % 60,
                                    frame / 25 % 60, frame % 25));
}

void WriteNewString(unsigned frame, char (&text)[32]) {
    static_cast<void>(std::snprintf(text, sizeof text, "Take %c3R:48g", 'A' + static_cast<char>(frame % 26)));
}

constexpr Content contents[] = {
    {"number_plain", WriteFrameNumber, -48, 0, false, 0.15}, {"timecode_by_2", WriteTimecode, 48, 2, false, 0.3},
    {"timecode_by_8", WriteTimecode, 16, 2, false, 0.4},     {"timecode_by_16", WriteTimecode, -48, 2, false, 0.4},
    {"new_string_by_16", WriteNewString, -48, 2, true, 4},
};

LOGFONT FontOf(const Content& content) {
    LOGFONT logFont;
    logFont.lfHeight = content.lfHeight;
    std::strcpy(logFont.lfFaceName, "DejaVu Sans");
    return logFont;
}

/// A text item on its way from a string to planes.
class CScene {
public:
    CScene(const Content& content, std::uint32_t dwFormat)
        : m_Content(content), m_LogFont(FontOf(content)), m_dwFormat(dwFormat) {
        Check(m_Frame.Alloc(PictureBytes(sizeFrame), true));
        Draw();
        Prepare();
    }

    void Draw() {
        if (m_Content.bNeverSeen) CShapeCache::Clear();
        BYTE* p[3] = {};
        m_Size = {};
        if (m_Content.outlineWidth == 0)
            Check(CImageHelp::String2ImageAlpha(NextText(), &m_LogFont, &m_Size, &p[0], &p[1], nTextFormat, nMargin));
        else
            Check(CImageHelp::OutlineString2Alpha(NextText(), &m_LogFont, &m_Size, &p[0], &p[1], &p[2],
                                                  m_Content.outlineWidth, nTextFormat, nMargin, nScale));
        for (int i = 0; i < 3; ++i)
            m_Layers[i].blobAlpha.TakeOver(p[i], p[i] ? PictureBytes(m_Size) : 0);
    }

    void DrawLiterally() {
        const CImageHelp::OutlineJob job{NextText(), &m_LogFont, m_Content.outlineWidth, nTextFormat, nMargin, nScale};
        BYTE* p[3] = {};
        m_Size = {};
        Check(CImageHelp::DrawOutlined(job, CImageHelp::OutlineRoad::Literal, &m_Size, &p[0], &p[1], &p[2]));
        for (BYTE* pPicture : p)
            CoTaskMemFree(pPicture);
    }

    void Prepare() {
        constexpr std::uint32_t color = 0xC0FFE060;
        for (OverlayLayer& layer : m_Layers)
            Check(PrepareImage2(layer.blobAlpha, m_Size, m_dwFormat, color, 255, layer));
    }

    void Mix() {
        const PictureFormat pfFrame{m_dwFormat, sizeFrame.cx, -sizeFrame.cy, 0};
        const PictureFormat pfItem = OverlayFormat(m_dwFormat, m_Size);
        const RECT item{0, 0, m_Size.cx, m_Size.cy};
        const RECT place{100, 100, 100 + m_Size.cx, 100 + m_Size.cy};
        for (OverlayLayer& layer : m_Layers)
            if (layer.TakesPartInMixing())
                Check(CPictureFormats::MixBlockAlpha(layer.planeColor.Data(), layer.planeWeight.Data(), m_Frame.Data(),
                                                     &pfItem, &pfFrame, &item, &place));
    }

private:
    static void Check(HRESULT hr) {
        if (hr != S_OK) std::abort();
    }

    const char* NextText() {
        m_Content.pfnWrite(m_nFrame++, m_Text);
        return m_Text;
    }

    const Content& m_Content;
    LOGFONT m_LogFont;
    std::uint32_t m_dwFormat;
    unsigned m_nFrame = 0;
    char m_Text[32] = {};
    SIZE m_Size;
    OverlayLayer m_Layers[3];
    CVirtualBlob m_Frame;
};

/// The same string filled and stroked with smooth edges by Cairo at its final size.
class CCairoScene {
public:
    explicit CCairoScene(const Content& content)
        : m_Content(content),
          m_pSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 400, 72)),
          m_pCairo(cairo_create(m_pSurface)) {
        cairo_select_font_face(m_pCairo, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        constexpr double cellToEm = 1.164;
        cairo_set_font_size(m_pCairo, content.lfHeight < 0 ? -content.lfHeight : content.lfHeight / cellToEm);
        cairo_set_line_width(m_pCairo, 2);
        cairo_set_line_join(m_pCairo, CAIRO_LINE_JOIN_ROUND);
    }
    CCairoScene(const CCairoScene&) = delete;
    CCairoScene& operator=(const CCairoScene&) = delete;
    ~CCairoScene() {
        cairo_destroy(m_pCairo);
        cairo_surface_destroy(m_pSurface);
    }

    void Draw() {
        char text[32];
        m_Content.pfnWrite(m_nFrame++, text);
        cairo_set_operator(m_pCairo, CAIRO_OPERATOR_CLEAR);
        cairo_paint(m_pCairo);
        cairo_set_operator(m_pCairo, CAIRO_OPERATOR_OVER);
        cairo_move_to(m_pCairo, nMargin, 52);
        cairo_text_path(m_pCairo, text);
        cairo_set_source_rgb(m_pCairo, 1, 1, 1);
        cairo_fill_preserve(m_pCairo);
        cairo_set_source_rgb(m_pCairo, 0, 0, 0);
        cairo_stroke(m_pCairo);
    }

private:
    const Content& m_Content;
    unsigned m_nFrame = 0;
    cairo_surface_t* m_pSurface;
    cairo_t* m_pCairo;
};

void AddContent(const Content& content, std::uint32_t dwFormat, std::vector<RatioLine>& lines) {
    const bool bPlanar = dwFormat == format_code::I420;
    const std::string row = std::string(content.pszName) + (bPlanar ? "_I420" : "_RGB32");
    const auto spScene = std::make_shared<CScene>(content, dwFormat);
    const auto spCairo = std::make_shared<CCairoScene>(content);
    AddBenchmark(row, "ours", [=] {
        spScene->Draw();
        spScene->Prepare();
        spScene->Mix();
    });
    AddBenchmark(row, "drawing", [=] { spScene->Draw(); });
    AddBenchmark(row, "planes", [=] { spScene->Prepare(); });
    AddBenchmark(row, "mixing", [=] { spScene->Mix(); });
    AddBenchmark(row, "cairo", [=] { spCairo->Draw(); });
    lines.push_back({row, "ours", "cairo", content.goal});
    lines.push_back({row, "drawing", "cairo", std::nullopt});
    lines.push_back({row, "planes", "cairo", std::nullopt});
    lines.push_back({row, "mixing", "cairo", std::nullopt});
    if (!bPlanar || content.outlineWidth == 0) return;
    AddBenchmark(row, "literal", [=] { spScene->DrawLiterally(); });
    lines.push_back({row, "literal", "cairo", std::nullopt});
}

/// A clock within one second, against the drawing that it is spared.
void AddUnchangedClock(std::vector<RatioLine>& lines) {
    const std::string row = "unchanged_clock";
    const auto spItem = std::make_shared<OverlayItem>();
    spItem->eType = eTime;
    spItem->props.lForeColor = -1;
    spItem->props.sAlphaValue = 255;
    spItem->props.nCounterCur = -1;
    if (FAILED(spItem->bsName.Assign(std::u16string_view(u"HH:mm:ss")))) std::abort();
    SetLocalClock([] { return SYSTEMTIME{2024, 1, 1, 1, 12, 0, 0, 0}; });
    AddBenchmark(row, "ours", [=] {
        if (FAILED(UpdateLiveItem(*spItem, true, {format_code::I420, 0}))) std::abort();
    });
    const auto spCairo = std::make_shared<CCairoScene>(contents[1]);
    AddBenchmark(row, "cairo", [=] { spCairo->Draw(); });
    lines.push_back({row, "ours", "cairo", std::nullopt});
}

std::vector<RatioLine> AddTexts() {
    std::vector<RatioLine> lines;
    for (const Content& content : contents)
        for (const std::uint32_t dwFormat : streams)
            AddContent(content, dwFormat, lines);
    AddUnchangedClock(lines);
    return lines;
}

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster::bench;
    return RunAndPrintTable(argc, argv, AddTexts());
}
