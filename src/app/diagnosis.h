#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// One thing that the program uses, and whether it does here.
struct Diagnosis {
    enum class State {
        ok,
        limited, ///< the program works without it, less well
        missing, ///< the program does not work
    };
    std::string name;
    State state = State::ok;
    std::string why;  ///< what was found
    std::string mend; ///< what the user can do; empty when nothing need be done
    bool operator==(const Diagnosis&) const = default;
};

std::string diagnosesAsText(std::span<const Diagnosis> diagnoses);
/// An array of objects with the field names as keys.
std::string diagnosesAsJson(std::span<const Diagnosis> diagnoses);
/// What diagnosesAsJson wrote; nothing when the text is something else.
std::vector<Diagnosis> diagnosesFromJson(std::string_view json);
/// Done when nothing is missing.
int exitStatus(std::span<const Diagnosis> diagnoses);

} // namespace glyma
