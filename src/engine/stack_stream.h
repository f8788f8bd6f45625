#pragma once

#include "engine/overlay_item.h"

#include <vellumcaster/stream.h>

/// The bytes of a saved stack. All integers are little-endian, and nothing is padded:
///
///     header     string     "Quillbrook Sceneglaze Data"
///     version    4 bytes
///     count      4 bytes
///     records    count of them, from the bottom of the stack up
///
/// A record is its kind (4 bytes), the item's properties (80 bytes), and by the kind
///
///     a picture          size (8), name
///     a rectangle        size (8), ellipse (8), name
///     a text             size (8), font (60), format word (4), text
///     what is not known  nothing
///
/// A string is its length in bytes (4), the closing zero with it, and the text in UTF-16; a length of 0 is no string.
///
/// Who reads trusts nothing: a stream that ends too soon, or a string that no writer writes, is a failure before anything
/// is allocated for it. What the numbers of a record mean is judged by who makes the item.
namespace vellumcaster {

/// Streams of later versions count as empty.
inline constexpr DWORD nStackVersion = 0x02000003;

/// A string of more bytes than this is taken for a lie.
inline constexpr DWORD cbLongestString = DWORD{1} << 20;

/// One record.
struct StoredItem {
    ITEM_TYPE eType = eImage;
    OVERLAY_PROPS props; ///< `bsTextString` is null
    SIZE size;
    SIZE sizeEllipse;     ///< of a rectangle
    LOGFONT logFont;      ///< of a text
    LONG nTextFormat = 0; ///< of a text
    CBstr bsName;
};

/// How the beginning of a stream was read.
struct StackHeader {
    DWORD nVersion = 0;
    DWORD cItems = 0; ///< as the stream says; 0 for a later version
};

/// Reads header, version and, unless the version is a later one, count.
/// \return S_OK; E_INVALIDARG for a stream that is none of ours; as `ReadItem`.
[[nodiscard]] HRESULT ReadHeader(ISequentialStream& stream, StackHeader& header);

/// Reads one record.
/// \return S_OK; E_FAIL for a stream that ends too soon, or a string whose length no string has or that has no end;
///         E_OUTOFMEMORY; what reading failed with.
[[nodiscard]] HRESULT ReadItem(ISequentialStream& stream, StoredItem& item);

/// Whether a record may cost what it says, before anything is allocated for it. A picture is taken for a lie above the
/// pixels of a frame of 8192 by 4096; a text above 2048 by 2048, as its size, its font or its outline has it.
[[nodiscard]] bool IsWorthMaking(const StoredItem& item);

/// Writes the header and the version.
/// \return S_OK; E_FAIL for a stream that takes less than it is given; what writing failed with. Throws `std::bad_alloc`.
[[nodiscard]] HRESULT WriteHeader(ISequentialStream& stream);

/// Writes a count. \return as `WriteHeader`.
[[nodiscard]] HRESULT WriteCount(ISequentialStream& stream, LONG cItems);

/// Writes one record. \return as `WriteHeader`.
[[nodiscard]] HRESULT WriteItem(ISequentialStream& stream, const OverlayItem& item);

} // namespace vellumcaster
