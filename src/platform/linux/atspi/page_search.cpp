#include "platform/linux/atspi/page_search.h"

#include "platform/linux/atspi/conversation.h"
#include "platform/linux/atspi/object.h"

#include <atspi/atspi.h>

#include <algorithm>
#include <unistd.h>

namespace glyma::atspi {

namespace {

using Element = Object<AtspiAccessible>;

constexpr Milliseconds searchTime{2000};
constexpr int applicationLimit = 200;
constexpr int windowLimit = 50;
constexpr int pageLimit = 500; // in one window
constexpr int nestingLimit = 60;

std::vector<Element> children(AtspiAccessible* element, int limit, Conversation& ask) {
    std::vector<Element> result;
    const int count = ask.ask(atspi_accessible_get_child_count, element).value_or(0);
    for (int index = 0; index < std::min(count, limit) && !ask.isOver(); ++index)
        if (Element child{ask.ask(atspi_accessible_get_child_at_index, element, index).value_or(nullptr)})
            result.push_back(std::move(child));
    return result;
}

/// Pages and what is embedded in them, in their order.
std::vector<Element> documents(AtspiAccessible* window, Conversation& ask) {
    const auto get = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_collection_iface(object);
    };
    const Object<AtspiCollection> collection(ask.ask(get, window).value_or(nullptr));
    if (!collection)
        return {};
    AtspiRole role = ATSPI_ROLE_DOCUMENT_WEB;
    const std::unique_ptr<GArray, decltype(&g_array_unref)> roles(g_array_new(FALSE, FALSE, sizeof role),
                                                                  &g_array_unref);
    g_array_append_val(roles.get(), role);
    const Object<AtspiStateSet> anyState(atspi_state_set_new(nullptr));
    const Object<AtspiMatchRule> rule(atspi_match_rule_new(
        anyState.get(), ATSPI_Collection_MATCH_ALL, nullptr, ATSPI_Collection_MATCH_ALL, roles.get(),
        ATSPI_Collection_MATCH_ANY, nullptr, ATSPI_Collection_MATCH_ALL, FALSE));
    auto* matches = ask.ask(atspi_collection_get_matches, collection.get(), rule.get(),
                            ATSPI_Collection_SORT_ORDER_CANONICAL, pageLimit, TRUE)
                        .value_or(nullptr);
    std::vector<Element> found;
    for (guint index = 0; matches && index < matches->len; ++index)
        found.emplace_back(g_array_index(matches, AtspiAccessible*, index));
    if (matches)
        g_array_free(matches, TRUE);
    return found;
}

/// Whether another page is around it. Browsers put pages into frames of their own, too, so that only the
/// whole way up tells.
bool isEmbedded(AtspiAccessible* document, Conversation& ask) {
    Element around(ask.ask(atspi_accessible_get_parent, document).value_or(nullptr));
    for (int level = 0; around && level < nestingLimit; ++level) {
        if (ask.ask(atspi_accessible_get_role, around.get()) == ATSPI_ROLE_DOCUMENT_WEB)
            return true;
        around.reset(ask.ask(atspi_accessible_get_parent, around.get()).value_or(nullptr));
    }
    return false;
}

std::string addressOf(AtspiAccessible* element, Conversation& ask) {
    const auto get = [](AtspiAccessible* object, GError**) {
        return atspi_accessible_get_document_iface(object);
    };
    const Object<AtspiDocument> document(ask.ask(get, element).value_or(nullptr));
    if (!document)
        return {};
    std::string name = "DocURL";
    const Memory<char> address(
        ask.ask(atspi_document_get_document_attribute_value, document.get(), name.data()).value_or(nullptr));
    return address ? address.get() : "";
}

} // namespace

std::vector<std::string> pageAddresses() {
    std::vector<std::string> addresses;
    const std::atomic<bool> abandoned = false;
    Conversation askDesktop(abandoned, searchTime);
    const Element desktop(atspi_get_desktop(0));
    if (!desktop)
        return addresses;
    for (const auto& application : children(desktop.get(), applicationLimit, askDesktop)) {
        if (askDesktop.searchMustEnd())
            break;
        // One that hangs costs its own answers only.
        Conversation ask(abandoned);
        const auto process = ask.ask(atspi_accessible_get_process_id, application.get());
        if (!process || static_cast<pid_t>(*process) == getpid())
            continue;
        for (const auto& window : children(application.get(), windowLimit, ask))
            for (const auto& document : documents(window.get(), ask))
                if (!isEmbedded(document.get(), ask))
                    if (auto address = addressOf(document.get(), ask); !address.empty())
                        addresses.push_back(std::move(address));
    }
    return addresses;
}

} // namespace glyma::atspi
