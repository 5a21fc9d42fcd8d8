#include "platform/linux/atspi/focus_tracker.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace glyma::atspi {

namespace {

constexpr std::array eventTypes = {"object:state-changed:focused", "window:activate", "window:deactivate"};
/// A walk in search of the focus ends after so many elements.
constexpr int walkLimit = 300;
constexpr Milliseconds absenceTrusted{1000};
constexpr int nestingLimit = 20;
constexpr std::string_view embeddedObject = "\uFFFC";

using Element = Object<AtspiAccessible>;

struct ArrayRelease {
    void operator()(GArray* array) const { g_array_unref(array); }
};

Object<AtspiStateSet> states(AtspiAccessible* element, Conversation& ask) {
    const auto get = [](AtspiAccessible* object, GError**) { return atspi_accessible_get_state_set(object); };
    return Object<AtspiStateSet>(ask.ask(get, element).value_or(nullptr));
}

bool has(const Object<AtspiStateSet>& set, AtspiStateType state) {
    return set && atspi_state_set_contains(set.get(), state);
}

std::vector<Element> children(AtspiAccessible* element, Conversation& ask) {
    std::vector<Element> result;
    const int count = ask.ask(atspi_accessible_get_child_count, element).value_or(0);
    for (int index = 0; index < std::min(count, walkLimit) && !ask.isOver(); ++index)
        if (Element child{ask.ask(atspi_accessible_get_child_at_index, element, index).value_or(nullptr)})
            result.push_back(std::move(child));
    return result;
}

/// The last element below a window with a state and a role (invalid: any); null when there is none or the
/// window cannot be asked.
Element lastMatch(AtspiAccessible* window, AtspiStateType state, AtspiRole role, Conversation& ask) {
    const auto get = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_collection_iface(object);
    };
    const Object<AtspiCollection> collection(ask.ask(get, window).value_or(nullptr));
    if (!collection)
        return nullptr;
    const Object<AtspiStateSet> wanted(atspi_state_set_new(nullptr));
    atspi_state_set_add(wanted.get(), state);
    const std::unique_ptr<GArray, ArrayRelease> roles(g_array_new(FALSE, FALSE, sizeof(AtspiRole)));
    if (role != ATSPI_ROLE_INVALID)
        g_array_append_val(roles.get(), role);
    const Object<AtspiMatchRule> rule(
        atspi_match_rule_new(wanted.get(), ATSPI_Collection_MATCH_ALL, nullptr, ATSPI_Collection_MATCH_ALL,
                             roles->len > 0 ? roles.get() : nullptr,
                             roles->len > 0 ? ATSPI_Collection_MATCH_ANY : ATSPI_Collection_MATCH_ALL,
                             nullptr, ATSPI_Collection_MATCH_ALL, FALSE));
    auto* matches = ask.ask(atspi_collection_get_matches, collection.get(), rule.get(),
                            ATSPI_Collection_SORT_ORDER_CANONICAL, 0, TRUE)
                        .value_or(nullptr);
    if (!matches)
        return nullptr;
    Element last;
    for (guint index = 0; index < matches->len; ++index)
        last.reset(g_array_index(matches, AtspiAccessible*, index));
    g_array_free(matches, TRUE);
    return last;
}

/// Depth first, only through what can be seen, and the last first: the contents of a window come after its
/// bars.
Element walkToFocused(Element root, Conversation& ask) {
    std::vector<Element> waiting;
    waiting.push_back(std::move(root));
    Element doubtful;
    for (int visited = 0; !waiting.empty() && visited < walkLimit && !ask.searchMustEnd(); ++visited) {
        auto element = std::move(waiting.back());
        waiting.pop_back();
        const auto set = states(element.get(), ask);
        if (has(set, ATSPI_STATE_FOCUSED) && has(set, ATSPI_STATE_FOCUSABLE))
            return element;
        // Qt calls the current tab of a tab bar focused, though it never is.
        if (has(set, ATSPI_STATE_FOCUSED) && !doubtful)
            doubtful = share(element.get());
        // GTK 4 calls what is on the screen visible, but not showing.
        if (visited > 0 && !has(set, ATSPI_STATE_SHOWING) && !has(set, ATSPI_STATE_VISIBLE))
            continue;
        auto below = children(element.get(), ask);
        std::ranges::move(below, std::back_inserter(waiting));
    }
    return doubtful;
}

std::string text(AtspiText* object, int begin, int end, Conversation& ask) {
    const Memory<char> result(ask.ask(atspi_text_get_text, object, begin, end).value_or(nullptr));
    return result ? result.get() : "";
}

/// Which of the objects embedded in a text holds the caret; -1 when the caret is in the text itself.
int childAtCaret(AtspiAccessible* element, Conversation& ask) {
    const auto get = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_text_iface(object);
    };
    const Object<AtspiText> object(ask.ask(get, element).value_or(nullptr));
    if (!object)
        return -1;
    const int caret = ask.ask(atspi_text_get_caret_offset, object.get()).value_or(-1);
    if (caret < 0 || text(object.get(), caret, caret + 1, ask) != embeddedObject)
        return -1;
    const auto before = caret > 0 ? text(object.get(), 0, caret, ask) : std::string();
    int index = 0;
    for (auto at = before.find(embeddedObject); at != std::string::npos;
         at = before.find(embeddedObject, at + embeddedObject.size()))
        ++index;
    return index;
}

std::string_view busName(AtspiAccessible* element) {
    const auto* application = reinterpret_cast<AtspiObject*>(element)->app;
    return application && application->bus_name ? application->bus_name : "";
}

} // namespace

FocusTracker::FocusTracker(std::function<void(pid_t)> willAsk, std::function<void()> focusMoved)
    : willAsk_(std::move(willAsk))
    , focusMoved_(std::move(focusMoved)) {
    for (const auto* type : eventTypes) {
        auto& listener = listeners_.emplace_back(atspi_event_listener_new(onEvent, this, nullptr));
        atspi_event_listener_register(listener.get(), type, nullptr);
    }
}

FocusTracker::~FocusTracker() {
    for (std::size_t index = 0; index < listeners_.size(); ++index)
        atspi_event_listener_deregister(listeners_[index].get(), eventTypes[index], nullptr);
}

void FocusTracker::onEvent(AtspiEvent* received, void* self) {
    struct Release {
        void operator()(AtspiEvent* event) const { g_boxed_free(ATSPI_TYPE_EVENT, event); }
    };
    const std::unique_ptr<AtspiEvent, Release> event(received); // a copy of ours
    auto& tracker = *static_cast<FocusTracker*>(self);
    const std::atomic<bool> abandoned = false;
    Conversation ask(abandoned, Conversation::backgroundPatience);
    if (event->source) {
        const auto process = tracker.processOf(event->source, ask);
        const std::string_view type = event->type;
        // Our own windows are no place to insert into, and asking our own main thread would have it wait for
        // itself.
        if (process == getpid() || process == 0)
            return;
        tracker.willAsk_(process);
        if (type.starts_with("window:"))
            tracker.windowChanged(type == "window:activate", process, ask);
        else if (event->detail1)
            tracker.focusGained(event->source, process, ask);
        else
            tracker.focusLost(event->source, process);
        tracker.willAsk_(0);
        if (event->detail1 && !type.starts_with("window:"))
            tracker.focusMoved_();
    }
}

void FocusTracker::focusGained(AtspiAccessible* element, pid_t process, Conversation& ask) {
    focused_[process] = share(element);
    absent_.erase(process);
    lastProcess_ = process;
    passwordProcess_ = process;
    isPasswordField_ = ask.ask(atspi_accessible_get_role, element) == ATSPI_ROLE_PASSWORD_TEXT;
}

void FocusTracker::focusLost(AtspiAccessible* element, pid_t process) {
    const auto found = focused_.find(process);
    if (found == focused_.end() || found->second.get() != element)
        return;
    focused_.erase(found);
    if (passwordProcess_ == process)
        isPasswordField_ = false;
}

void FocusTracker::windowChanged(bool activated, pid_t process, Conversation& ask) {
    if (!activated) {
        if (passwordProcess_ == process)
            isPasswordField_ = false;
        return;
    }
    // Some toolkits do not repeat the focus event when the user comes back to a window.
    if (const auto element = focusedElement(process, ask))
        focusGained(share(element.get()).get(), process, ask);
}

pid_t FocusTracker::processOf(AtspiAccessible* element, Conversation& ask) {
    const auto name = busName(element);
    if (const auto known = processes_.find(name); known != processes_.end())
        return known->second;
    const auto process = static_cast<pid_t>(ask.ask(atspi_accessible_get_process_id, element).value_or(0));
    if (process > 0)
        processes_.emplace(name, process);
    return std::max(process, 0);
}

const Toolkit& FocusTracker::toolkitOf(AtspiAccessible* element, Conversation& ask) {
    const auto name = busName(element);
    if (const auto known = toolkits_.find(name); known != toolkits_.end())
        return known->second;
    static const Toolkit unknown;
    // Only the application's own element knows, and GTK 4 and Qt do not pass the question on.
    const Element root(ask.ask(atspi_accessible_get_application, element).value_or(nullptr));
    if (!root)
        return unknown;
    const Memory<char> toolkit(ask.ask(atspi_accessible_get_toolkit_name, root.get()).value_or(nullptr));
    const Memory<char> version(ask.ask(atspi_accessible_get_toolkit_version, root.get()).value_or(nullptr));
    if (!toolkit || !*toolkit)
        return unknown;
    return toolkits_.emplace(name, toolkitNamed(toolkit.get(), version ? version.get() : "")).first->second;
}

Object<AtspiAccessible> FocusTracker::application(pid_t process, Conversation& ask) {
    if (const auto known = applications_.find(process); known != applications_.end())
        return share(known->second.get());
    const auto now = std::chrono::steady_clock::now();
    if (const auto missed = absent_.find(process);
        missed != absent_.end() && now - missed->second < absenceTrusted)
        return nullptr;
    const Element desktop(atspi_get_desktop(0));
    for (auto& candidate : children(desktop.get(), ask))
        if (const auto owner = processOf(candidate.get(), ask); owner > 0)
            applications_[owner] = std::move(candidate);
    if (const auto found = applications_.find(process); found != applications_.end())
        return share(found->second.get());
    absent_[process] = now;
    return nullptr;
}

Object<AtspiAccessible> FocusTracker::activeWindow(AtspiAccessible* application, Conversation& ask) {
    auto windows = children(application, ask);
    for (auto& window : windows)
        if (has(states(window.get(), ask), ATSPI_STATE_ACTIVE))
            return std::move(window);
    return nullptr;
}

Object<AtspiAccessible> FocusTracker::search(AtspiAccessible* application, Conversation& ask) {
    auto window = activeWindow(application, ask);
    if (!window)
        return walkToFocused(share(application), ask);
    if (auto found = lastMatch(window.get(), ATSPI_STATE_FOCUSED, ATSPI_ROLE_INVALID, ask))
        return found;
    return walkToFocused(std::move(window), ask);
}

Object<AtspiAccessible> FocusTracker::page(pid_t process, Conversation& ask) {
    const auto root = application(process, ask);
    const auto window = root ? activeWindow(root.get(), ask) : nullptr;
    return window ? lastMatch(window.get(), ATSPI_STATE_SHOWING, ATSPI_ROLE_DOCUMENT_WEB, ask) : nullptr;
}

Object<AtspiAccessible> FocusTracker::focusedElement(pid_t process, Conversation& ask) {
    const auto known = focused_.find(process);
    auto element = known != focused_.end() ? share(known->second.get()) : nullptr;
    if (!element || !has(states(element.get(), ask), ATSPI_STATE_FOCUSED)) {
        if (ask.isOver())
            return nullptr;
        const auto root = application(process, ask);
        element = root ? search(root.get(), ask) : nullptr;
        if (!element) {
            if (ask.isOver()) // which says nothing about the application
                return nullptr;
            focused_.erase(process);
            applications_.erase(process);
            return nullptr;
        }
        focused_[process] = share(element.get());
    }
    return innermostText(std::move(element), ask);
}

/// Where paragraphs are objects of their own, the one with the caret.
Object<AtspiAccessible> FocusTracker::innermostText(Object<AtspiAccessible> element, Conversation& ask) {
    if (!toolkitOf(element.get(), ask).nestsText)
        return element;
    for (int depth = 0; depth < nestingLimit; ++depth) {
        const int index = childAtCaret(element.get(), ask);
        if (index < 0)
            break;
        Element child(ask.ask(atspi_accessible_get_child_at_index, element.get(), index).value_or(nullptr));
        if (!child)
            break;
        element = std::move(child);
    }
    return element;
}

} // namespace glyma::atspi
