#include "platform/linux/atspi/text_element.h"

#include "unicode/text.h"

#include <algorithm>
#include <cstdint>
#include <dbus/dbus.h>
#include <limits>
#include <thread>

namespace glyma::atspi {

namespace {

/// How long a selection may take to show, well below what our callers wait.
constexpr Milliseconds selectionWait{80};
constexpr Milliseconds selectionPoll{2};

constexpr int textBeforeCaret = 8192;
/// How soon one who follows the caret asks for the text after asking for the caret.
constexpr Milliseconds memoryTrusted{10};

constexpr auto failure() {
    return std::unexpected(AccessibilityError::failed);
}

} // namespace

TextElement::TextElement(AtspiAccessible* accessible, const Toolkit& toolkit, Conversation& conversation,
                         WindowOrigin windowOrigin, TextMemory& memory)
    : accessible_(accessible)
    , toolkit_(toolkit)
    , ask_(conversation)
    , windowOrigin_(std::move(windowOrigin))
    , memory_(memory) {
    const auto plain = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_text_iface(object);
    };
    if (accessible_)
        text_.reset(ask_.ask(plain, accessible_).value_or(nullptr));
}

bool TextElement::isEditable() {
    const auto states = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_state_set(object);
    };
    const Object<AtspiStateSet> set(ask_.ask(states, accessible_).value_or(nullptr));
    return set && atspi_state_set_contains(set.get(), ATSPI_STATE_EDITABLE);
}

std::optional<int> TextElement::characterCount() {
    const auto count = ask_.ask(atspi_text_get_character_count, text_.get());
    return count && *count >= 0 && !ask_.isOver() ? count : std::nullopt;
}

/// The text as the toolkit counts it.
std::optional<std::string> TextElement::rawText(int begin, int end) {
    if (begin >= end)
        return std::string();
    const Memory<char> text(ask_.ask(atspi_text_get_text, text_.get(), begin, end).value_or(nullptr));
    return text && !ask_.isOver() ? std::optional<std::string>(text.get()) : std::nullopt;
}

std::optional<TextElement::Span> TextElement::selection() {
    const auto count = ask_.ask(atspi_text_get_n_selections, text_.get());
    if (count && *count > 0) {
        const Memory<AtspiRange> range(ask_.ask(atspi_text_get_selection, text_.get(), 0).value_or(nullptr));
        if (range && range->start_offset >= 0 && range->end_offset >= 0 &&
            range->start_offset != range->end_offset)
            return Span{std::min(range->start_offset, range->end_offset),
                        std::max(range->start_offset, range->end_offset)};
    }
    const auto caret = ask_.ask(atspi_text_get_caret_offset, text_.get());
    if (!caret || *caret < 0 || ask_.isOver())
        return std::nullopt;
    return Span{*caret, *caret};
}

/// Keeps the base some way in front of the caret, and still while the caret moves about.
void TextElement::moveBase(int caret) {
    auto& base = memory_.base;
    if (caret < base || caret - base > 4 * textBeforeCaret)
        base = caret > 2 * textBeforeCaret ? caret - textBeforeCaret : 0;
}

std::optional<int> TextElement::toToolkit(std::ptrdiff_t utf16) {
    const auto count = characterCount();
    if (!count)
        return std::nullopt;
    const auto wanted = static_cast<int>(std::clamp<std::ptrdiff_t>(utf16, 0, *count));
    if (toolkit_.offsets == Toolkit::OffsetUnit::utf16 || wanted <= memory_.base)
        return wanted;
    const int base = memory_.base;
    const auto text = rawText(base, wanted);
    return text ? std::optional(base + static_cast<int>(toolkitOffset(toolkit_, utf16 - base, *text)))
                : std::nullopt;
}

std::optional<TextElement::Span> TextElement::toToolkit(TextRange range) {
    const auto begin = toToolkit(range.location);
    const auto end = range.length > 0 ? toToolkit(range.location + range.length) : begin;
    return begin && end ? std::optional(Span{*begin, *end}) : std::nullopt;
}

std::optional<std::ptrdiff_t> TextElement::fromToolkit(int offset) {
    const int base = memory_.base;
    if (toolkit_.offsets == Toolkit::OffsetUnit::utf16 || offset <= base)
        return offset;
    auto before = rawText(base, offset);
    if (!before)
        return std::nullopt;
    const auto utf16 = base + utf16Offset(toolkit_, offset - base, *before);
    memory_.beforeSelection = std::move(*before);
    memory_.readAt = std::chrono::steady_clock::now();
    return utf16;
}

TextElement::Result<TextRange> TextElement::selectedRange() {
    const auto span = selection();
    if (!span)
        return std::unexpected(AccessibilityError::noValue);
    moveBase(span->begin);
    memory_.beforeSelection.clear();
    const auto end = fromToolkit(span->end);
    const auto begin = span->end == span->begin ? end : fromToolkit(span->begin);
    if (!begin || !end)
        return failure();
    return TextRange{*begin, *end - *begin};
}

TextElement::Result<std::string> TextElement::selectedText() {
    const auto span = selection();
    if (!span)
        return std::unexpected(AccessibilityError::noValue);
    auto text = rawText(span->begin, span->end);
    if (!text)
        return failure();
    return plainText(toolkit_, std::move(*text));
}

TextElement::Result<std::string> TextElement::value() {
    const auto count = characterCount();
    auto text = count ? rawText(0, *count) : std::nullopt;
    if (!text)
        return failure();
    return plainText(toolkit_, std::move(*text));
}

/// The range in the toolkit's offsets, when that needs no question; not checked against the text's length.
std::optional<TextElement::Span> TextElement::spanInMemory(TextRange range) {
    const auto begin = range.location;
    const auto end = begin + range.length;
    if (end > std::numeric_limits<int>::max())
        return std::nullopt;
    if (toolkit_.offsets == Toolkit::OffsetUnit::utf16)
        return Span{static_cast<int>(begin), static_cast<int>(end)};
    const auto before = std::exchange(memory_.beforeSelection, {});
    const auto base = memory_.base;
    if (std::chrono::steady_clock::now() - memory_.readAt > memoryTrusted || begin < base ||
        end - base > static_cast<std::ptrdiff_t>(unicode::utf16Length(before)))
        return std::nullopt;
    return Span{base + static_cast<int>(toolkitOffset(toolkit_, begin - base, before)),
                base + static_cast<int>(toolkitOffset(toolkit_, end - base, before))};
}

/// A text that is shorter than asked for shows, without another question, that the range is not in it; one
/// unit less only means that the range ends inside a surrogate pair.
TextElement::Result<std::string> TextElement::string(TextRange range) {
    if (range.location < 0 || range.length < 0)
        return std::unexpected(AccessibilityError::noValue);
    auto span = spanInMemory(range);
    if (!span)
        span = toToolkit(range);
    auto text = span ? rawText(span->begin, span->end) : std::nullopt;
    if (!text)
        return failure();
    auto plain = plainText(toolkit_, std::move(*text));
    const auto length = static_cast<std::ptrdiff_t>(unicode::utf16Length(plain));
    if (length < range.length && (length == 0 || length + 1 < range.length))
        return std::unexpected(AccessibilityError::noValue);
    return plain;
}

AtspiCoordType TextElement::coordinates() const {
    return toolkit_.knowsScreenCoordinates ? ATSPI_COORD_TYPE_SCREEN : ATSPI_COORD_TYPE_WINDOW;
}

/// Takes the rectangle over; absent when it has no height, as at the end of many a text.
std::optional<Rect> TextElement::onScreen(AtspiRect* rectangle) {
    const Memory<AtspiRect> owned(rectangle);
    if (!owned || owned->height <= 0)
        return std::nullopt;
    Rect result{static_cast<double>(owned->x), static_cast<double>(owned->y),
                static_cast<double>(owned->width), static_cast<double>(owned->height)};
    if (!toolkit_.knowsScreenCoordinates) {
        const auto origin = windowOrigin_();
        if (!origin)
            return std::nullopt;
        result.x += origin->x;
        result.y += origin->y;
    }
    return result;
}

std::optional<Rect> TextElement::characterRect(int offset) {
    return onScreen(
        ask_.ask(atspi_text_get_character_extents, text_.get(), offset, coordinates()).value_or(nullptr));
}

std::optional<Rect> TextElement::spanRect(Span span) {
    if (span.end - span.begin <= 1) {
        const auto rect = characterRect(span.begin);
        return rect ? rect : characterRect(span.begin); // Firefox: see extents
    }
    return onScreen(ask_.ask(atspi_text_get_range_extents, text_.get(), span.begin, span.end, coordinates())
                        .value_or(nullptr));
}

TextElement::Result<Rect> TextElement::bounds(TextRange range) {
    const auto span = toToolkit(range);
    if (!span)
        return failure();
    if (auto rect = spanRect(*span)) {
        if (range.length == 0)
            rect->width = 1;
        return *rect;
    }
    if (span->begin > 0)
        if (const auto before = characterRect(span->begin - 1))
            return Rect{before->right(), before->y, 1, before->height};
    if (characterCount() == 0)
        if (const auto whole = extents())
            return Rect{whole->x, whole->y, 1, whole->height};
    return std::unexpected(AccessibilityError::noValue);
}

TextElement::Result<Rect> TextElement::extents() {
    const auto component = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_component_iface(object);
    };
    const Object<AtspiComponent> object(ask_.ask(component, accessible_).value_or(nullptr));
    if (!object)
        return std::unexpected(AccessibilityError::unsupported);
    const auto rect =
        onScreen(ask_.ask(atspi_component_get_extents, object.get(), coordinates()).value_or(nullptr));
    if (!rect)
        return std::unexpected(AccessibilityError::noValue);
    return *rect;
}

/// GTK 4 adds the selection but never replies, so nobody may wait for it.
void TextElement::sendAddSelection(Span span) {
    const auto* object = reinterpret_cast<const AtspiObject*>(accessible_);
    if (!object->app || !object->app->bus)
        return;
    auto* message = dbus_message_new_method_call(object->app->bus_name, object->path, "org.a11y.atspi.Text",
                                                 "AddSelection");
    const std::int32_t begin = span.begin;
    const std::int32_t end = span.end;
    dbus_message_append_args(message, DBUS_TYPE_INT32, &begin, DBUS_TYPE_INT32, &end, DBUS_TYPE_INVALID);
    dbus_message_set_no_reply(message, TRUE);
    dbus_connection_send(object->app->bus, message, nullptr);
    dbus_message_unref(message);
}

bool TextElement::requestSelection(Span span) {
    if (span.begin == span.end)
        return ask_.ask(atspi_text_set_caret_offset, text_.get(), span.begin).value_or(FALSE);
    // GTK changes a selection that is there and adds one where there is none, but not the other way round.
    const auto present = ask_.ask(atspi_text_get_n_selections, text_.get());
    if (present && *present > 0)
        return ask_.ask(atspi_text_set_selection, text_.get(), 0, span.begin, span.end).value_or(FALSE);
    if (toolkit_.answersAddSelection)
        return ask_.ask(atspi_text_add_selection, text_.get(), span.begin, span.end).value_or(FALSE);
    if (!ask_.isOver())
        sendAddSelection(span);
    return true;
}

/// Firefox answers before the page has taken the selection over.
bool TextElement::waitForSelection(Span span) {
    for (Milliseconds waited{0};; waited += selectionPoll) {
        if (selection() == span)
            return true;
        if (waited >= selectionWait || ask_.isOver())
            return false;
        std::this_thread::sleep_for(selectionPoll);
    }
}

TextElement::Result<void> TextElement::select(TextRange range) {
    const auto span = toToolkit(range);
    const auto before = selection();
    if (!span || !before)
        return failure();
    if (requestSelection(*span) && waitForSelection(*span))
        return {};
    // A page under load takes it over later still, and no sooner undoes it.
    if (toolkit_.selectsLate)
        return std::unexpected(AccessibilityError::timedOut);
    // It must not be made later, when the caller has gone on without it.
    requestSelection(*before);
    return failure();
}

TextElement::Result<void> TextElement::replaceSelection(const std::string& text) {
    const auto editable = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_editable_text_iface(object);
    };
    if (!toolkit_.edits)
        return std::unexpected(AccessibilityError::unsupported);
    const Object<AtspiEditableText> object(ask_.ask(editable, accessible_).value_or(nullptr));
    const auto span = selection();
    if (!object || !span)
        return failure();
    if (span->begin != span->end &&
        !ask_.ask(atspi_editable_text_delete_text, object.get(), span->begin, span->end).value_or(FALSE))
        return failure();
    const auto before = characterCount();
    if (!before)
        return failure();
    ask_.ask(atspi_editable_text_insert_text, object.get(), span->begin, text.c_str(),
             static_cast<int>(insertLength(toolkit_, text)));
    // Answers are not to be trusted; but a field may also take the text and change it (a line of input drops
    // line breaks), and then it must not be inserted once more.
    const auto after = characterCount();
    if (!after || (*after <= *before && !text.empty()))
        return failure();
    ask_.ask(atspi_text_set_caret_offset, text_.get(), span->begin + (*after - *before));
    return {};
}

TextElement::Result<void> TextElement::setValue(const std::string& text) {
    const auto editable = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_editable_text_iface(object);
    };
    if (!toolkit_.edits)
        return std::unexpected(AccessibilityError::unsupported);
    const Object<AtspiEditableText> object(ask_.ask(editable, accessible_).value_or(nullptr));
    if (!object ||
        !ask_.ask(atspi_editable_text_set_text_contents, object.get(), text.c_str()).value_or(FALSE))
        return failure();
    return {};
}

} // namespace glyma::atspi
