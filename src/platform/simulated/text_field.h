#pragma once

#include "platform/accessibility.h"
#include "platform/geometry.h"

#include <string>
#include <string_view>

namespace glyma::simulated {

/// An editable text with a selection; the caret is the end of it. UTF-8 text, UTF-16 offsets.
class TextField {
public:
    explicit TextField(Rect frame = {100, 100, 600, 300})
        : frame_(frame) {}

    const std::string& text() const { return text_; }
    /// Also puts the caret behind the text.
    void setText(std::string_view text);
    TextRange selection() const { return selection_; }
    void setSelection(TextRange range);
    std::string selectedText() const;
    /// The text with "|" at the caret, or around the selection.
    std::string textWithCaret() const;
    const Rect& frame() const { return frame_; }
    void setFrame(const Rect& frame) { frame_ = frame; }

    // What keys do
    void insert(std::string_view text);
    void deleteBackwards(bool wholeCharacters);
    void deleteForwards();
    void moveCaret(std::ptrdiff_t characters);
    void moveToLineStart();
    void moveToLineEnd();

    std::string substring(TextRange range) const;
    std::ptrdiff_t length() const;
    /// Where the characters stand: cells of 8 by 18 from the top left of the frame.
    Rect bounds(TextRange range) const;

private:
    std::string before() const;
    std::string after() const;

    Rect frame_;
    std::string text_;
    TextRange selection_;
};

} // namespace glyma::simulated
