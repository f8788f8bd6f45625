#include "graph/format_guid_names.h"

#include "platform/media/base_filter.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/mem_input_pin.h"

#include <algorithm>
#include <string_view>

namespace vellumcaster {

namespace {

constexpr bool StandsBefore(const GuidName& a, const GuidName& b) { return BytesOf(a.guid) < BytesOf(b.guid); }

template <std::size_t count>
constexpr std::array<GuidName, count> Sorted(std::array<GuidName, count> rows) {
    std::sort(rows.begin(), rows.end(), StandsBefore);
    return rows;
}

/// No GUID stands twice.
template <std::size_t count>
constexpr bool IsStrictlySorted(const std::array<GuidName, count>& rows) {
    return std::adjacent_find(rows.begin(), rows.end(),
                              [](const GuidName& a, const GuidName& b) { return !StandsBefore(a, b); }) == rows.end();
}

constexpr std::uint32_t ReadDigit(char c) {
    if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<std::uint32_t>(c - 'A' + 10);
    throw "not a digit";
}

constexpr std::uint32_t ReadDigits(std::string_view text) {
    std::uint32_t value = 0;
    for (const char c : text)
        value = value << 4 | ReadDigit(c);
    return value;
}

/// The GUID of a text of the form XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX.
constexpr GUID ReadGuid(std::string_view text) {
    if (text.size() != 36) throw "not a GUID";
    GUID guid{ReadDigits(text.substr(0, 8)),
              static_cast<std::uint16_t>(ReadDigits(text.substr(9, 4))),
              static_cast<std::uint16_t>(ReadDigits(text.substr(14, 4))),
              {}};
    constexpr std::array<std::size_t, 8> places{19, 21, 24, 26, 28, 30, 32, 34};
    for (std::size_t i = 0; i < places.size(); ++i)
        guid.Data4[i] = static_cast<std::uint8_t>(ReadDigits(text.substr(places[i], 2)));
    return guid;
}

// No header publishes "WME Sink(?]"; its row has an identifier of this project's own.
constexpr auto publishedNames = Sorted(std::to_array<GuidName>({
    {GUID_NULL, "GUID_NULL"},
    {ReadGuid("E436EBB3-524F-11CE-9F53-0020AF0BA770"), "Filter Graph"},
    {ReadGuid("FCC152B7-F372-11D0-8E00-00C04FD7C08B"), "DVD Graph Builder"},
    {ReadGuid("BF87B6E0-8C27-11D0-B3F0-00AA003761C5"), "Capture Graph Builder"},
    {ReadGuid("E436EBB1-524F-11CE-9F53-0020AF0BA770"), "System Reference clock"},
    {ReadGuid("9B8C4620-2C1A-11D0-8493-00A02438AD48"), "DVD Navigator"},
    {ReadGuid("E436EBB5-524F-11CE-9F53-0020AF0BA770"), "Async Reader"},
    {ReadGuid("E436EBB6-524F-11CE-9F53-0020AF0BA770"), "File Source (URL)"},
    {ReadGuid("1643E180-90F5-11CE-97D5-00AA0055595A"), "Colour space convertor"},
    {ReadGuid("F8388A40-D5BB-11D0-BE5A-0080C706568E"), "Infinite Pin Tee Filter"},
    {ReadGuid("CC58E280-8AA1-11D1-B3F1-00AA003761C5"), "Smart Tee Filter"},
    {ReadGuid("1B544C22-FD0B-11CE-8C63-00AA0044B51E"), "Vfw Capture Filter"},
    {ReadGuid("4A2286E0-7BEF-11CE-9BD9-0000E202599C"), "MPEG-1 Audio Decoder"},
    {ReadGuid("FEB50740-7BEF-11CE-9BD9-0000E202599C"), "MPEG-1 Video Decoder"},
    {ReadGuid("6A08CF80-0E18-11CF-A24D-0020AFD79767"), "ACM wrapper"},
    {ReadGuid("E2510970-F137-11CE-8B67-00AA00A3F1A6"), "Avi Mux"},
    {ReadGuid("1B544C20-FD0B-11CE-8C63-00AA0044B51E"), "Avi Splitter"},
    {ReadGuid("D76E2820-1563-11CF-AC98-00AA004C0FA9"), "AVI Compressor"},
    {ReadGuid("CF49D4E0-1115-11CE-B03A-0020AF0BA770"), "AVI Decompressor"},
    {ReadGuid("A888DF60-1E90-11CF-AC98-00AA004C0FA9"), "AVI Draw Filter"},
    {ReadGuid("336475D0-942A-11CE-A870-00AA002FEAB5"), "MPEG-1 Stream Splitter"},
    {ReadGuid("AFB6C280-2C41-11D3-8A60-0000F81E0E4A"), "MPEG-2 Demultiplexer"},
    {ReadGuid("3AE86B20-7BE8-11D1-ABE6-00A0C905F375"), "MPEG-2 Splitter"},
    {ReadGuid("129D7E40-C10D-11D0-AFB9-00AA00B67A42"), "DV Mux"},
    {ReadGuid("4EB31670-9FC6-11CF-AF6E-00AA00B67A42"), "DV Splitter"},
    {ReadGuid("B1B77C00-C3E4-11CF-AF79-00AA00B67A42"), "DV Video Codec"},
    {ReadGuid("13AA3650-BB6F-11D0-AFB9-00AA00B67A42"), "DV Video Encoder"},
    {ReadGuid("6E8D4A20-310C-11D0-B79A-00AA003767A7"), "Line21 Decoder"},
    {ReadGuid("CD8743A1-3736-11D0-9E69-00C04FD7C15B"), "Overlay Mixer"},
    {ReadGuid("A0025E90-E45B-11D1-ABE9-00A0C905F375"), "Overlay Mixer 2"},
    {ReadGuid("70E102B0-5556-11CE-97C0-00AA0055595A"), "Video Renderer"},
    {ReadGuid("B87BEB7B-8D29-423F-AE4D-6582C10175AC"), "VMR"},
    {ReadGuid("51B4ABF3-748F-4E3B-A276-C828330E926A"), "Video Mixing Renderer 9"},
    {ReadGuid("E30629D1-27E5-11CE-875D-00608CB78066"), "Audio Render"},
    {ReadGuid("79376820-07D0-11CF-A24D-0020AFD79767"), "DirectSound Renderer"},
    {ReadGuid("07B65360-C445-11CE-AFDE-00AA006C14F4"), "MIDI Renderer"},
    {ReadGuid("C1F400A4-3F08-11D3-9F0B-006008039E37"), "Null Renderer"},
    {ReadGuid("8596E5F0-0DA5-11D0-BD21-00A0C911CE86"), "File Writer"},
    {ReadGuid("187463A0-5BB7-11D3-ACBE-0080C75E246E"), "Asf Reader"},
    {ReadGuid("7C23220E-55BB-11D3-8B16-00C04FB6BD3D"), "Asf Writer"},
    {ReadGuid("94297043-BD82-4DFD-B0DE-8177739C6D20"), "WMP DMO Container"},
    {ReadGuid("5F0D2A6C-91B7-4E3D-A8C4-6E1B72D93F58"), "WME Sink(?]"},
    {ReadGuid("7DF62B50-6843-11D2-9EEB-006008039E37"), "Still Video Source"},
    {ReadGuid("DA4E3DA0-D07D-11D0-BD50-00A0C911CE86"), "Active Movie Categories"},
    {ReadGuid("083863F1-70DE-11D0-BD40-00A0C911CE86"), "DirectShow Filters category"},
    {ReadGuid("33D9A761-90C8-11D0-BD43-00A0C911CE86"), "Audio Compressor Category"},
    {ReadGuid("33D9A762-90C8-11D0-BD43-00A0C911CE86"), "Audio Input Device Category"},
    {ReadGuid("E0F158E1-CB04-11D0-BD4E-00A0C911CE86"), "Audio Renderer Category"},
    {ReadGuid("2721AE20-7E70-11D0-A5D6-28DB04C10000"), "DVD HW Decoders Category"},
    {ReadGuid("4EFE2452-168A-11D1-BC76-00C04FB9453B"), "Midi Renderer Category"},
    {ReadGuid("33D9A760-90C8-11D0-BD43-00A0C911CE86"), "Video Compressor Category"},
    {ReadGuid("860BB310-5D01-11D0-BD3B-00A0C911CE86"), "Video Input Device Category"},
    {ReadGuid("65E8773D-8F56-11D0-A3B9-00A0C9223196"), "WDM Streaming Capture Devices"},
    {ReadGuid("65E8773E-8F56-11D0-A3B9-00A0C9223196"), "WDM Streaming Rendering Devices"},
    {ReadGuid("6E8D4A21-310C-11D0-B79A-00AA003767A7"), "IAMLine21Decoder"},
    {IBaseFilter::IID, "IBaseFilter"},
    {ReadGuid("56A868B3-0AD4-11CE-B03A-0020AF0BA770"), "IBasicAudio"},
    {ReadGuid("56A868B5-0AD4-11CE-B03A-0020AF0BA770"), "IBasicVideo"},
    {ReadGuid("329BB360-F6EA-11D1-9038-00A0C9697298"), "IBasicVideo2"},
    {ReadGuid("A70EFE61-E2A3-11D0-A9BE-00AA0061BE93"), "IDvdControl"},
    {ReadGuid("33BC7430-EEC0-11D2-8201-00A0C9D74842"), "IDvdControl2"},
    {ReadGuid("FCC152B6-F372-11D0-8E00-00C04FD7C08B"), "IDvdGraphBuilder"},
    {ReadGuid("A70EFE60-E2A3-11D0-A9BE-00AA0061BE93"), "IDvdInfo"},
    {ReadGuid("34151510-EEC0-11D2-8201-00A0C9D74842"), "IDvdInfo2"},
    {ReadGuid("86303D6D-1C4A-4087-AB42-F711167048EF"), "IDvdState"},
    {ReadGuid("56A86893-0AD4-11CE-B03A-0020AF0BA770"), "IEnumFilters"},
    {IEnumMediaTypes::IID, "IEnumMediaTypes"},
    {IEnumPins::IID, "IEnumPins"},
    {ReadGuid("56A868A6-0AD4-11CE-B03A-0020AF0BA770"), "IFileSourceFilter"},
    {ReadGuid("56A8689F-0AD4-11CE-B03A-0020AF0BA770"), "IFilterGraph"},
    {ReadGuid("36B73882-C2C8-11CF-8B46-00805F6CEF60"), "IFilterGraph2"},
    {ReadGuid("56A868A9-0AD4-11CE-B03A-0020AF0BA770"), "IGraphBuilder"},
    {ReadGuid("B61178D1-A2D9-11CF-9E53-00AA00A216A1"), "IKsPin"},
    {ReadGuid("31EFAC30-515C-11D0-A9AA-00AA0061BE93"), "IKsPropertySet"},
    {ReadGuid("56A868B1-0AD4-11CE-B03A-0020AF0BA770"), "IMediaControl"},
    {ReadGuid("56A868B6-0AD4-11CE-B03A-0020AF0BA770"), "IMediaEvent"},
    {ReadGuid("56A868C0-0AD4-11CE-B03A-0020AF0BA770"), "IMediaEventEx"},
    {IMediaFilter::IID, "IMediaFilter"},
    {ReadGuid("56A868B2-0AD4-11CE-B03A-0020AF0BA770"), "IMediaPosition"},
    {IMediaSample::IID, "IMediaSample"},
    {ReadGuid("36B73884-C2C8-11CF-8B46-00805F6CEF60"), "IMediaSample2"},
    {ReadGuid("36B73880-C2C8-11CF-8B46-00805F6CEF60"), "IMediaSeeking"},
    {IMemAllocator::IID, "IMemAllocator"},
    {IMemInputPin::IID, "IMemInputPin"},
    {ReadGuid("593CDDE1-0759-11D1-9E69-00C04FD7C15B"), "IMixerPinConfig"},
    {ReadGuid("EBF47182-8764-11D1-9E69-00C04FD7C15B"), "IMixerPinConfig2"},
    {ReadGuid("56A868A1-0AD4-11CE-B03A-0020AF0BA770"), "IOverlay"},
    {IPin::IID, "IPin"},
    {ReadGuid("56A868A5-0AD4-11CE-B03A-0020AF0BA770"), "IQualityControl"},
    {ReadGuid("56A86897-0AD4-11CE-B03A-0020AF0BA770"), "IReferenceClock"},
    {ReadGuid("B196B28B-BAB4-101A-B69C-00AA00341D07"), "ISpecifyPropertyPages"},
    {ReadGuid("56A868B4-0AD4-11CE-B03A-0020AF0BA770"), "IVideoWindow"},
    {MEDIATYPE_AnalogAudio, "MEDIATYPE_AnalogAudio"},
    {ReadGuid("0482DDE1-7817-11CF-8A03-00AA006ECB65"), "MEDIATYPE_AnalogVideo"},
    {MEDIATYPE_Video, "MEDIATYPE_Video"},
    {MEDIATYPE_Audio, "MEDIATYPE_Audio"},
    {ReadGuid("E436EB83-524F-11CE-9F53-0020AF0BA770"), "MEDIATYPE_Stream"},
    {MEDIATYPE_DVD_ENCRYPTED_PACK, "MEDIATYPE_DVD_ENCRYPTED_PACK"},
    {ReadGuid("E06D802E-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIATYPE_DVD_NAVIGATION"},
    {MEDIATYPE_MPEG2_PES, "MEDIATYPE_MPEG2_PES"},
    {MEDIATYPE_AUXLine21Data, "MEDIATYPE_AUXLine21Data"},
    {SubtypeOfFourCC(0x656C6966), "MEDIATYPE_File"},
    {MEDIATYPE_Interleaved, "MEDIATYPE_Interleaved"},
    {SubtypeOfFourCC(0x74726C6D), "MEDIATYPE_LMRT"},
    {ReadGuid("E436EB82-524F-11CE-9F53-0020AF0BA770"), "MEDIATYPE_MPEG1SystemStream"},
    {MEDIATYPE_Midi, "MEDIATYPE_Midi"},
    {MEDIATYPE_ScriptCommand, "MEDIATYPE_ScriptCommand"},
    {MEDIATYPE_Text, "MEDIATYPE_Text"},
    {MEDIATYPE_Timecode, "MEDIATYPE_Timecode"},
    {SubtypeOfFourCC(0x736C7275), "MEDIATYPE_URL_STREAM"},
    {MEDIATYPE_VBI, "MEDIATYPE_VBI"},
    {SubtypeOfFourCC(0x00000001), "MEDIASUBTYPE_PCM"},
    {ReadGuid("E436EB8B-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_WAVE"},
    {ReadGuid("E06D802C-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_DOLBY_AC3"},
    {SubtypeOfFourCC(0x00000092), "MEDIASUBTYPE_DOLBY_AC3_SPDIF"},
    {SubtypeOfFourCC(0x00000240), "MEDIASUBTYPE_RAW_SPORT"},
    {SubtypeOfFourCC(0x00000241), "MEDIASUBTYPE_SPDIF_TAG_241h"},
    {ReadGuid("E436EB78-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_RGB1"},
    {ReadGuid("E436EB79-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_RGB4"},
    {ReadGuid("E436EB7A-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_RGB8"},
    {MEDIASUBTYPE_RGB555, "MEDIASUBTYPE_RGB555"},
    {MEDIASUBTYPE_RGB565, "MEDIASUBTYPE_RGB565"},
    {MEDIASUBTYPE_RGB24, "MEDIASUBTYPE_RGB24"},
    {MEDIASUBTYPE_RGB32, "MEDIASUBTYPE_RGB32"},
    {MEDIASUBTYPE_ARGB32, "MEDIASUBTYPE_ARGB32"},
    {SubtypeOfFourCC(0x4C504C43), "MEDIASUBTYPE_CLPL"},
    {SubtypeOfFourCC(0x56595559), "MEDIASUBTYPE_YUYV"},
    {SubtypeOfFourCC(0x56555949), "MEDIASUBTYPE_IYUV"},
    {SubtypeOfFourCC(0x39555659), "MEDIASUBTYPE_YVU9"},
    {SubtypeOfFourCC(0x31313459), "MEDIASUBTYPE_Y411"},
    {SubtypeOfFourCC(0x50313459), "MEDIASUBTYPE_Y41P"},
    {MEDIASUBTYPE_YUY2, "MEDIASUBTYPE_YUY2"},
    {MEDIASUBTYPE_YVYU, "MEDIASUBTYPE_YVYU"},
    {MEDIASUBTYPE_UYVY, "MEDIASUBTYPE_UYVY"},
    {SubtypeOfFourCC(0x31313259), "MEDIASUBTYPE_Y211"},
    {MEDIASUBTYPE_YV12, "MEDIASUBTYPE_YV12"},
    {SubtypeOfFourCC(0x524A4C43), "MEDIASUBTYPE_CLJR"},
    {SubtypeOfFourCC(0x39304649), "MEDIASUBTYPE_IF09"},
    {SubtypeOfFourCC(0x414C5043), "MEDIASUBTYPE_CPLA"},
    {MEDIASUBTYPE_I420, "MEDIASUBTYPE_I420"},
    {MEDIASUBTYPE_IYU2, "MEDIASUBTYPE_IYU2"},
    {ReadGuid("E436EB84-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_MPEG1System"},
    {ReadGuid("E436EB87-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_MPEG1Audio"},
    {SubtypeOfFourCC(0x00000050), "MEDIASUBTYPE_MPEG1AudioPayload"},
    {ReadGuid("E436EB80-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_MPEG1Packet"},
    {ReadGuid("E436EB81-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_MPEG1Payload"},
    {ReadGuid("E436EB86-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_MPEG1Video"},
    {ReadGuid("E436EB85-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_MPEG1VideoCD"},
    {ReadGuid("E06D8022-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_MPEG2_PROGRAM"},
    {ReadGuid("E06D8023-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_MPEG2_TRANSPORT"},
    {ReadGuid("E06D802B-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_MPEG2_AUDIO"},
    {ReadGuid("E06D8026-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_MPEG2_VIDEO"},
    {ReadGuid("E06D802D-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_DVD_SUBPICTURE"},
    {ReadGuid("E06D8032-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_DVD_LPCM_AUDIO"},
    {ReadGuid("E06D8030-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_DVD_NAVIGATION_DSI"},
    {ReadGuid("E06D802F-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_DVD_NAVIGATION_PCI"},
    {ReadGuid("E06D8031-DB46-11CF-B4D1-00805F6CBBEA"), "MEDIASUBTYPE_DVD_NAVIGATION_PROVIDER"},
    {ReadGuid("CA20D9A0-3E3E-11D1-9BF9-00C04FBBDEBF"), "KSDATAFORMAT_SUBTYPE_RAW8"},
    {ReadGuid("33214CC1-011F-11D2-B4B1-00A0D102CFBE"), "KSDATAFORMAT_SUBTYPE_CC"},
    {ReadGuid("E757BCA2-39AC-11D1-A9F5-00C04FBBDE8F"), "KSDATAFORMAT_SUBTYPE_NABTS"},
    {ReadGuid("F72A76E3-EB0A-11D0-ACE4-0000C0CC16BA"), "MEDIASUBTYPE_TELETEXT"},
    {ReadGuid("6E8D4A22-310C-11D0-B79A-00AA003767A7"), "MEDIASUBTYPE_Line21_BytePair"},
    {ReadGuid("6E8D4A23-310C-11D0-B79A-00AA003767A7"), "MEDIASUBTYPE_Line21_GOPPacket"},
    {ReadGuid("6E8D4A24-310C-11D0-B79A-00AA003767A7"), "MEDIASUBTYPE_Line21_VBIRawData"},
    {SubtypeOfFourCC(0x6765706A), "MEDIASUBTYPE_QTJpeg"},
    {ReadGuid("E436EB89-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_QTMovie"},
    {SubtypeOfFourCC(0x20656C72), "MEDIASUBTYPE_QTRle"},
    {SubtypeOfFourCC(0x617A7072), "MEDIASUBTYPE_QTRpza"},
    {SubtypeOfFourCC(0x20636D73), "MEDIASUBTYPE_QTSmc"},
    {ReadGuid("A0AF4F82-E163-11D0-BAD9-00609744111A"), "MEDIASUBTYPE_DssAudio"},
    {ReadGuid("A0AF4F81-E163-11D0-BAD9-00609744111A"), "MEDIASUBTYPE_DssVideo"},
    {ReadGuid("5A9B6A41-1A22-11D1-BAD9-00609744111A"), "MEDIASUBTYPE_VPVBI"},
    {ReadGuid("5A9B6A40-1A22-11D1-BAD9-00609744111A"), "MEDIASUBTYPE_VPVideo"},
    {ReadGuid("E436EB7F-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_Overlay"},
    {ReadGuid("E436EB88-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_Avi"},
    {ReadGuid("E436EB8D-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_AIFF"},
    {ReadGuid("3DB80F90-9412-11D1-ADED-0000F8754B99"), "MEDIASUBTYPE_Asf"},
    {ReadGuid("E436EB8C-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_AU"},
    {ReadGuid("E436EB8E-524F-11CE-9F53-0020AF0BA770"), "MEDIASUBTYPE_None"},
    {FORMAT_VideoInfo, "FORMAT_VideoInfo"},
    {FORMAT_VideoInfo2, "FORMAT_VideoInfo2"},
    {ReadGuid("05589F81-C356-11CE-BF01-00AA0055595A"), "FORMAT_WaveFormatEx"},
    {ReadGuid("05589F83-C356-11CE-BF01-00AA0055595A"), "FORMAT_MPEGStreams"},
    {ReadGuid("05589F82-C356-11CE-BF01-00AA0055595A"), "FORMAT_MPEGVideo"},
    {ReadGuid("E06D80E5-DB46-11CF-B4D1-00805F6CBBEA"), "FORMAT_MPEG2Audio"},
    {ReadGuid("E06D80E3-DB46-11CF-B4D1-00805F6CBBEA"), "FORMAT_MPEG2Video"},
    {ReadGuid("0482DDE0-7817-11CF-8A03-00AA006ECB65"), "FORMAT_AnalogVideo"},
    {ReadGuid("E06D80E6-DB46-11CF-B4D1-00805F6CBBEA"), "FORMAT_DVD_LPCMAudio"},
    {ReadGuid("E06D80E4-DB46-11CF-B4D1-00805F6CBBEA"), "FORMAT_DolbyAC3"},
    {ReadGuid("05589F84-C356-11CE-BF01-00AA0055595A"), "FORMAT_DvInfo"},
    {FORMAT_None, "FORMAT_None"},
    {ReadGuid("F72A76E0-EB0A-11D0-ACE4-0000C0CC16BA"), "KSDATAFORMAT_SPECIFIER_VBI"},
    {ReadGuid("0E8A0A40-6AEF-11D0-9ED0-00A024CA19B3"), "KSPROPSETID_CopyProt"},
    {ReadGuid("A503C5C0-1D1D-11D1-AD80-444553540000"), "KSPROPSETID_TSRateChange"},
    {ReadGuid("AC390460-43AF-11D0-BD6A-003505C103A9"), "KSPROPSETID_DvdSubPic"},
    {ReadGuid("7B785570-8C82-11CF-BC0C-00AA00AC74F6"), "TIME_FORMAT_FRAME"},
    {ReadGuid("7B785571-8C82-11CF-BC0C-00AA00AC74F6"), "TIME_FORMAT_BYTE"},
    {ReadGuid("7B785572-8C82-11CF-BC0C-00AA00AC74F6"), "TIME_FORMAT_SAMPLE"},
    {ReadGuid("7B785573-8C82-11CF-BC0C-00AA00AC74F6"), "TIME_FORMAT_FIELD"},
    {ReadGuid("7B785574-8C82-11CF-BC0C-00AA00AC74F6"), "TIME_FORMAT_MEDIA_TIME"},
    {ReadGuid("FB6C4283-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_ANALOGVIDEOIN"},
    {ReadGuid("FB6C4281-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_CAPTURE"},
    {ReadGuid("FB6C4289-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_CC"},
    {ReadGuid("FB6C4287-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_EDS"},
    {ReadGuid("FB6C4286-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_NABTS"},
    {ReadGuid("FB6C4282-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_PREVIEW"},
    {ReadGuid("FB6C428A-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_STILL"},
    {ReadGuid("FB6C4288-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_TELETEXT"},
    {ReadGuid("FB6C428B-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_TIMECODE"},
    {ReadGuid("FB6C4284-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_VBI"},
    {ReadGuid("FB6C4285-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_VIDEOPORT"},
    {ReadGuid("FB6C428C-0353-11D1-905F-0000C0CC16BA"), "PIN_CATEGORY_VIDEOPORT_VBI"},
}));
static_assert(IsStrictlySorted(publishedNames));

constexpr auto otherDecoders = Sorted(std::to_array<GuidName>({
    {ReadGuid("9BC1B781-85E3-11D2-98D0-0080C84E9C39"), "CyberLink V/SP Decoder"},
    {ReadGuid("9BC1B780-85E3-11D2-98D0-0080C84E9C39"), "CyberLink Audio Decoder"},
    {ReadGuid("8ACD52ED-9C2D-4008-9129-DCE955D86065"), "CyberLink V/SP Decoder 6"},
    {ReadGuid("284DC28A-4A7D-442C-BC2E-D7480556E4D8"), "CyberLink Audio Decoder 6"},
    {ReadGuid("43E11D60-7538-11D1-AB9F-00A0240AC114"), "MGI Soft DVD Navigator"},
    {ReadGuid("7EF53EA1-98E5-11D2-BFEA-006097C50E25"), "MGISoft Video Decoder"},
    {ReadGuid("1EDECD41-8B69-11D1-BFE9-006097C50DC9"), "MGISoft Audio Decoder"},
    {ReadGuid("FF482321-94EE-11D1-BFE9-006097C50DC9"), "MGISoft Subtitle Decoder"},
    {ReadGuid("0246CA20-776D-11D2-8010-00104B9B8592"), "InterVideo Video Decoder"},
    {ReadGuid("7E2E0DC1-31FD-11D2-9C21-00104B3801F6"), "InterVideo Audio Decoder"},
    {ReadGuid("145BC783-FC0C-11CF-BE4B-00AA003F29A1"), "DirectDVD V/SP Decoder"},
    {ReadGuid("145BC782-FC0C-11CF-BE4B-00AA003F29A1"), "DirectDVD Audio Decoder"},
    {ReadGuid("595E37C1-A479-11D1-BC3C-006097B18ABC"), "CineMaster DVD Decoder"},
    {ReadGuid("A753A1EC-973E-4718-AF8E-A3F554D45C44"), "AC3 Audio Decoder"},
    {ReadGuid("731B8692-4001-46D4-B1A5-33EC792B4501"), "Moonlight MPEG2 Demux"},
    {ReadGuid("F50B3F13-19C4-11CF-AA9A-02608C9BABA2"), "Elecard MPEG2 Video Decoder"},
    {ReadGuid("E32C3B01-C81B-4D01-8AD4-2B93F7FA544C"), "Moonlight Audio Decoder"},
    {ReadGuid("61DC8C73-3303-4A3B-86DC-20FBC250DCB1"), "honetech Mpeg2 Video Decoder"},
    {ReadGuid("CE1B27BE-851B-45DD-AB26-44389A8F71B4"), "GPL MPEG-1/2 Decoder"},
    {ReadGuid("78766964-0000-0010-8000-00AA00389B71"), "DivX MPEG-4 Video Decoder"},
    {ReadGuid("0E6772C0-DD80-11D4-B58F-A86B66D0611C"), "3ivx D4 Video Decoder"},
    {ReadGuid("64697678-0000-0010-8000-00AA00389B71"), "XviD MPEG-4 Video Decoder"},
    {ReadGuid("38BE3000-DBF4-11D0-860E-00A024CFEF6D"), "MPEG Layer-3 Decoder"},
    {ReadGuid("30355649-0000-0010-8000-00AA00389B71"), "Indeo video 5.10 Decompressor"},
    {ReadGuid("D3CD7858-971A-4838-ACEC-40CA5D529DC8"), "Morgan Stream Switcher"},
}));
static_assert(IsStrictlySorted(otherDecoders));

constexpr GuidNameTable otherTable(otherDecoders);
constexpr GuidNameTable publishedTable(publishedNames, &otherTable);

} // namespace

const char* GuidNameTable::Find(const GUID& guid) const {
    const GuidName wanted{guid, nullptr};
    const auto row = std::lower_bound(m_Rows.begin(), m_Rows.end(), wanted, StandsBefore);
    if (row != m_Rows.end() && row->guid == guid) return row->pszName;
    return m_pNext ? m_pNext->Find(guid) : nullptr;
}

const GuidNameTable& GuidNames() { return publishedTable; }

} // namespace vellumcaster
