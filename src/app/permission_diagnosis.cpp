#include "app/permission_diagnosis.h"

#include <fmt/format.h>

namespace glyma {

namespace {

using State = Diagnosis::State;

Diagnosis diagnosisOf(const char* name, const Permission& permission, State otherwise) {
    const auto granted = permission.remedy.isEmpty() ? State::ok : State::limited;
    return {.name = name,
            .state = permission.isGranted ? granted : otherwise,
            .why = permission.finding.english(),
            .mend = permission.remedy.english()};
}

Diagnosis diagnosisOf(const SecureInput& secureInput) {
    constexpr auto name = "Secure Input";
    if (!secureInput.isOn)
        return {.name = name, .state = State::ok, .why = "off: typing is heard", .mend = {}};
    return {.name = name,
            .state = State::limited,
            .why = secureInput.holder ? fmt::format("on: held by {} (process {})", secureInput.holder->name,
                                                    secureInput.holder->process)
                                      : "on, and nobody says who holds it",
            .mend = "Leave the password field, or switch the secure keyboard off in the program named."};
}

} // namespace

std::vector<Diagnosis> diagnosePermissions(const Permission& inputMonitoring, const Permission& accessibility,
                                           const std::optional<SecureInput>& secureInput) {
    std::vector<Diagnosis> diagnoses{diagnosisOf("Input Monitoring", inputMonitoring, State::missing),
                                     diagnosisOf("Accessibility", accessibility, State::limited)};
    if (secureInput)
        diagnoses.push_back(diagnosisOf(*secureInput));
    return diagnoses;
}

} // namespace glyma
