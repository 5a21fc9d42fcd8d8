#include "monitor/monitor_implementation.h"
#include "monitor/selection_dispatch.h"
#include "unicode/text.h"

#include <utility>

namespace glyma {

/// Decided here and not on the tap thread: the list that the main thread had not searched when Return came is
/// there now. A highlight outside the list chooses nothing, and the picker must not stay behind.
void KeyboardMonitor::Implementation::chooseOrDismiss(std::shared_ptr<TypingHold> hold) {
    const auto showing = shown;
    choiceHold = std::move(hold);
    if (picker.itemCount() > 0)
        picker.confirmSelection();
    choiceHold.reset();
    if (shown == showing)
        dismissPanel();
}

void KeyboardMonitor::Implementation::didSelect(const PickerItem& item) {
    const auto isKeystrokeMode = state.isKeystrokeMode();
    const auto query = queryBuffer;
    const auto deletion = deletionOf(preferences.triggerCharacter(), query, keystrokeCount, isKeystrokeMode);
    if (log.debugEnabled())
        log.debug(
            "didSelect: queryBuffer=\"{}\" ({} chars), keystrokeCount={}, isKeystrokeMode={}, deleteCount={}",
            log.redact(query), unicode::graphemeCount(query), keystrokeCount, isKeystrokeMode,
            deletion.count);
    const bool isAltHeld = picker.isAltHeld();
    const auto polled = queryPoll ? std::optional(queryPoll->query()) : std::nullopt;
    auto hold = choiceHold ? std::move(choiceHold) : tap.holdTyping(); // a click holds nothing yet
    close(shown);
    const auto inserted = textFor(item, query, isAltHeld);
    if (polled)
        insertWhenRead(inserted, *polled, std::move(hold));
    else
        text.insert(inserted, deletion.count, deletion.expected, std::move(hold));
}

/// What is inserted stays the entry that was highlighted; what is deleted is what the text holds by then.
void KeyboardMonitor::Implementation::insertWhenRead(const std::string& inserted, const PolledQuery& chosen,
                                                     std::shared_ptr<TypingHold> hold) {
    std::erase_if(choices, [](const auto& choice) { return choice->isDone(); });
    auto then = [this, inserted, hold = std::move(hold),
                 target = frontApplications.current()](const std::optional<Deletion>& deletion) {
        if (!deletion)
            text.leaveUntouched("what has been typed is not certain");
        else if (frontApplications.current() != target)
            text.leaveUntouched("another application has come to the front");
        else
            text.insert(inserted, deletion->count, deletion->expected, hold,
                        TextInserter::Otherwise::nothing);
    };
    choices.push_back(std::make_unique<ChoiceReading>(scheduler, reader, text, preferences.triggerCharacter(),
                                                      chosen, std::move(then)));
}

/// Also records the choice, which counts even if the insertion fails.
std::string KeyboardMonitor::Implementation::textFor(const PickerItem& item, const std::string& query,
                                                     bool isAltHeld) {
    if (const auto special = std::get_if<SpecialEntry>(&item)) {
        auto picked = catalogue.pickRandom(special->id == "random-emoji");
        catalogue.recordUsage(std::string(specialPrefix) + special->id, query);
        return picked;
    }
    const auto& entry = std::get<EmojiEntry>(item);
    catalogue.recordUsage(entry.character, query);
    return textOf(entry, preferences.skinToneModifier(), isAltHeld);
}

} // namespace glyma
