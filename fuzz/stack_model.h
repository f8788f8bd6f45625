#pragma once

#include "engine/item_list.h"
#include "engine/timecode.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace vellumcaster::fuzzing {

/// What a callback does with its frame.
enum class Feedback {
    None,
    Moves,
    Recolors,
    Relabels,
    Ignored,
    Fails,
    RemovesBottom,
    Clears,
    AddsOne,
    kMaxValue = AddsOne
};

inline constexpr std::u16string_view newLabel = u"R";
inline constexpr LONG nMostItems = 8;

inline LONG Wrapped(LONG a, LONG b) {
    return static_cast<LONG>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

/// What the callbacks write into a record.
inline void WriteFeedback(Feedback feedback, OVERLAY_PROPS& props) {
    props.nPosX = feedback == Feedback::Recolors ? props.nPosX : Wrapped(props.nPosX, 3);
    if (feedback == Feedback::Moves) props.bShow = !props.bShow;
    if (feedback == Feedback::Recolors) {
        props.lForeColor ^= 0x40010101;
        props.sAlphaValue = static_cast<std::int16_t>((props.sAlphaValue + 1) & 0xFF);
    }
}

/// An item without its pixels.
struct ModelItem {
    ITEM_TYPE eType = eText;
    std::u16string name;
    OVERLAY_PROPS props;
    double x = 0;
    double y = 0;
    SIZE size; ///< of texts as the engine tells it, since it is the font's affair
    Feedback feedback = Feedback::None;

    [[nodiscard]] bool IsClock() const { return eType == eDate || eType == eTime; }
    [[nodiscard]] bool DrawsItsString() const { return eType == eText || IsClock(); }
    void SnapToSetPosition() {
        x = props.nPosX;
        y = props.nPosY;
    }
};

/// The stack as it has to be after each call.
class CStackModel {
public:
    std::vector<Cookie> m_Keys;
    std::vector<ModelItem> m_Items;
    bool m_bDirty = false;
    TimecodeRate m_Rate;

    [[nodiscard]] ModelItem* Lookup(Cookie cookie) {
        const auto key = std::find(m_Keys.begin(), m_Keys.end(), cookie);
        return key == m_Keys.end() ? nullptr : &m_Items[static_cast<std::size_t>(key - m_Keys.begin())];
    }
    [[nodiscard]] Cookie FirstFree() const {
        Cookie cookie = 0;
        while (std::find(m_Keys.begin(), m_Keys.end(), cookie) != m_Keys.end())
            ++cookie;
        return cookie;
    }
    void Add(Cookie cookie, ModelItem item) {
        m_Keys.push_back(cookie);
        m_Items.push_back(std::move(item));
        m_bDirty = true;
    }
    void RemoveAt(std::size_t index) {
        m_Keys.erase(m_Keys.begin() + static_cast<std::ptrdiff_t>(index));
        m_Items.erase(m_Items.begin() + static_cast<std::ptrdiff_t>(index));
        m_bDirty = true;
    }
    void Clear() {
        m_Keys.clear();
        m_Items.clear();
    }

    /// \return whether a text has to be drawn, which may fail.
    bool Apply(ModelItem& item, const OVERLAY_PROPS& props, const std::u16string* pText) {
        const bool bDraws = item.DrawsItsString() &&
                            ((pText && *pText != item.name) || props.dblOutlineWidth != item.props.dblOutlineWidth);
        item.props = props;
        item.SnapToSetPosition();
        if (pText) item.name = *pText;
        m_bDirty = true;
        return bDraws;
    }

    void Reset() {
        for (ModelItem& item : m_Items) {
            item.props.nCounterCur = item.props.nCounterStart;
            item.SnapToSetPosition();
        }
    }

    /// \param sizeOf  an item's size after the frame, by its index then.
    template <class SizeOf>
    void MixFrame(const SIZE& sizeFrame, const SizeOf& sizeOf) {
        std::vector<std::size_t> moves;
        for (std::size_t i = 0; i < m_Items.size(); ++i) {
            CallBack(i, moves);
            if (i >= m_Items.size()) break;
            Count(m_Items[i]);
            if (m_Items[i].props.bShow) moves.push_back(i);
        }
        for (const std::size_t i : moves)
            Move(m_Items[i], sizeOf(i), sizeFrame);
    }

private:
    void CallBack(std::size_t i, std::vector<std::size_t>& moves) {
        const Feedback feedback = m_Items[i].feedback;
        if (feedback == Feedback::None) return;
        OVERLAY_PROPS props = m_Items[i].props;
        WriteFeedback(feedback, props);
        switch (feedback) {
        case Feedback::Ignored: return;
        case Feedback::Fails: m_Items[i].feedback = Feedback::None; return;
        case Feedback::Clears:
            Clear();
            moves.clear();
            return;
        case Feedback::RemovesBottom:
            RemoveAt(0);
            if (!moves.empty() && moves.front() == 0) moves.erase(moves.begin());
            for (std::size_t& move : moves)
                --move;
            return;
        case Feedback::AddsOne:
            if (m_Items.size() < nMostItems) {
                ModelItem item;
                item.eType = eFrameNumber;
                item.name = u"Frame Number";
                Add(FirstFree(), item);
            }
            break;
        default: break;
        }
        const std::u16string label(newLabel);
        Apply(m_Items[i], props, feedback == Feedback::Relabels ? &label : nullptr);
    }

    void Count(ModelItem& item) const {
        LONG& nCounter = item.props.nCounterCur;
        if (item.eType == eFrameNumber) nCounter = Wrapped(nCounter, 1);
        if (item.eType == eSMPTETimeCode && m_Rate.nFramesPerSecond != 0)
            nCounter = PackTimecode(NextFrame(UnpackTimecode(nCounter), m_Rate));
    }

    static void Move(ModelItem& item, const SIZE& size, const SIZE& sizeFrame) {
        item.x += item.props.dblXDelta;
        item.y += item.props.dblYDelta;
        if (item.props.bNoOffscreen) {
            const double width = size.cx;
            const double height = size.cy;
            if (-width > item.x) item.x = sizeFrame.cx;
            if (-height > item.y) item.y = sizeFrame.cy;
            if (sizeFrame.cx < item.x) item.x = -width;
            if (sizeFrame.cy < item.y) item.y = -height;
        }
        item.props.nPosX = Rounded(item.x);
        item.props.nPosY = Rounded(item.y);
    }

    /// Halves away from zero; beyond the range its ends, for no number 0.
    static LONG Rounded(double value) {
        if (std::isnan(value)) return 0;
        return static_cast<LONG>(std::clamp(std::round(value), -2147483648.0, 2147483647.0));
    }
};

inline bool SameBits(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

inline bool SameProps(const OVERLAY_PROPS& a, const OVERLAY_PROPS& b) {
    return a.bShow == b.bShow && a.nCounterStart == b.nCounterStart && a.nCounterCur == b.nCounterCur &&
           a.nPosX == b.nPosX && a.nPosY == b.nPosY && SameBits(a.dblXDelta, b.dblXDelta) &&
           SameBits(a.dblYDelta, b.dblYDelta) && a.bNoOffscreen == b.bNoOffscreen && a.lForeColor == b.lForeColor &&
           a.lBackColor == b.lBackColor && a.lOutColor == b.lOutColor && a.sAlphaValue == b.sAlphaValue &&
           a.nColorKeyMin == b.nColorKeyMin && a.nColorKeyMax == b.nColorKeyMax &&
           SameBits(a.dblOutlineWidth, b.dblOutlineWidth);
}

} // namespace vellumcaster::fuzzing
