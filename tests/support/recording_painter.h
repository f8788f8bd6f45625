#pragma once

#include "engine/item_painter.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vellumcaster::testing_support {

/// Writes down what it is asked for, one word a call.
class CRecordingPainter final : public IItemPainter {
public:
    HRESULT UpdateLiveItem(OverlayItem&, bool bShow) override { return Note(bShow ? "live" : "live-hidden"); }
    HRESULT UpdateTextItem(OverlayItem&) override { return Note("text"); }
    HRESULT UpdateDate(OverlayItem&, bool bForce) override { return Note(bForce ? "date!" : "date"); }
    HRESULT UpdateTime(OverlayItem&, bool bForce) override { return Note(bForce ? "time!" : "time"); }
    HRESULT UpdateItemColors(OverlayItem&) override { return Note("colors"); }
    HRESULT UpdateItemAlpha(OverlayItem&) override { return Note("alpha"); }
    HRESULT PrepareImage(OverlayItem&) override { return Note("prepare"); }

    /// The journal so far, words separated by blanks, which is then empty.
    std::string TakeJournal() {
        std::string journal;
        for (const std::string& word : m_Words)
            journal += (journal.empty() ? "" : " ") + word;
        m_Words.clear();
        return journal;
    }

    std::function<void()> m_meanwhile; ///< runs once, during the next drawing call

private:
    HRESULT Note(const char* pszWord) {
        m_Words.emplace_back(pszWord);
        if (const auto meanwhile = std::exchange(m_meanwhile, nullptr)) meanwhile();
        return S_OK;
    }

    std::vector<std::string> m_Words;
};

} // namespace vellumcaster::testing_support
