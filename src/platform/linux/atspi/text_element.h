#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/conversation.h"
#include "platform/linux/atspi/object.h"
#include "platform/linux/atspi/toolkit.h"

#include <atspi/atspi.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace glyma::atspi {

/// What is kept with an element from one request to the next.
struct TextMemory {
    /// A toolkit that counts code points has to be asked for the text in front of an offset; to spare the
    /// whole of a long text, what stands before the base counts one unit a code point. So offsets far into a
    /// long text are exact only among each other, which is all that those who read a range, select near it
    /// and replace what they selected need.
    int base = 0;
    /// The toolkit's text from the base to the selection, read to tell where that is. Who then asks for a
    /// range of it, as one who follows the caret does, need not have it read again to find the range; used
    /// once, and only at once.
    std::string beforeSelection;
    std::chrono::steady_clock::time_point readAt;
};

/// The text of one element during one request, in the port's units, whatever its toolkit counts in. Worker
/// thread.
class TextElement {
public:
    template<typename Value>
    using Result = Accessibility::Result<Value>;

    /// Where the contents of the element's window begin on the desktop; asked only of toolkits that do not
    /// know.
    using WindowOrigin = std::function<std::optional<Point>()>;

    TextElement(AtspiAccessible* accessible, const Toolkit& toolkit, Conversation& conversation,
                WindowOrigin windowOrigin, TextMemory& memory);

    const Toolkit& toolkit() const { return toolkit_; }
    bool hasText() const { return text_ != nullptr; }
    bool isEditable();

    Result<TextRange> selectedRange();
    Result<std::string> selectedText();
    Result<std::string> value();
    Result<std::string> string(TextRange range);
    /// Of the caret at the range's start when the range is empty.
    Result<Rect> bounds(TextRange range);
    Result<Rect> extents();

    /// Fails unless reading back shows that the selection is as told.
    Result<void> select(TextRange range);
    Result<void> replaceSelection(const std::string& text);
    Result<void> setValue(const std::string& text);

private:
    /// In the toolkit's offsets; empty for a caret.
    struct Span {
        int begin = 0;
        int end = 0;
        bool operator==(const Span&) const = default;
    };

    std::optional<int> characterCount();
    std::optional<std::string> rawText(int begin, int end);
    std::optional<Span> selection();
    void moveBase(int caret);
    std::optional<int> toToolkit(std::ptrdiff_t utf16);
    std::optional<std::ptrdiff_t> fromToolkit(int offset);
    std::optional<Span> toToolkit(TextRange range);
    std::optional<Span> spanInMemory(TextRange range);
    bool requestSelection(Span span);
    bool waitForSelection(Span span);
    void sendAddSelection(Span span);
    std::optional<Rect> characterRect(int offset);
    std::optional<Rect> spanRect(Span span);
    std::optional<Rect> onScreen(AtspiRect* rectangle);
    AtspiCoordType coordinates() const;

    AtspiAccessible* accessible_;
    Toolkit toolkit_;
    Conversation& ask_;
    WindowOrigin windowOrigin_;
    TextMemory& memory_;
    Object<AtspiText> text_;
};

} // namespace glyma::atspi
