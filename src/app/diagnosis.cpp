#include "app/diagnosis.h"

#include "app/command_line.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string_view>

namespace glyma {

namespace {

using State = Diagnosis::State;

std::string_view word(State state) {
    switch (state) {
    case State::ok:
        return "ok";
    case State::limited:
        return "limited";
    case State::missing:
        break;
    }
    return "missing";
}

State stateOf(const std::string& text) {
    for (const auto state : {State::ok, State::limited})
        if (word(state) == text)
            return state;
    return State::missing;
}

} // namespace

std::string diagnosesAsText(std::span<const Diagnosis> diagnoses) {
    std::size_t nameColumns = 0;
    for (const auto& diagnosis : diagnoses)
        nameColumns = std::max(nameColumns, diagnosis.name.size());
    std::string text;
    for (const auto& [name, state, why, mend] : diagnoses) {
        text += fmt::format("{:<7}  {:<{}}  {}\n", word(state), name, nameColumns, why);
        if (!mend.empty())
            text += fmt::format("{:<{}}→ {}\n", "", nameColumns + 11, mend);
    }
    return text;
}

std::string diagnosesAsJson(std::span<const Diagnosis> diagnoses) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& [name, state, why, mend] : diagnoses)
        list.push_back({{"name", name}, {"state", word(state)}, {"why", why}, {"mend", mend}});
    return list.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::vector<Diagnosis> diagnosesFromJson(std::string_view text) {
    const auto list = nlohmann::json::parse(text, nullptr, false);
    std::vector<Diagnosis> diagnoses;
    for (const auto& each : list) {
        if (!each.is_object())
            return {};
        const auto field = [&each](const char* name) {
            const auto place = each.find(name);
            return place != each.end() && place->is_string() ? place->get<std::string>() : std::string();
        };
        diagnoses.push_back({.name = field("name"),
                             .state = stateOf(field("state")),
                             .why = field("why"),
                             .mend = field("mend")});
    }
    return diagnoses;
}

int exitStatus(std::span<const Diagnosis> diagnoses) {
    const bool works = std::ranges::none_of(
        diagnoses, [](const Diagnosis& diagnosis) { return diagnosis.state == Diagnosis::State::missing; });
    return works ? status::done : status::failed;
}

} // namespace glyma
