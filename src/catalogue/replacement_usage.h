#pragma once

#include "catalogue/catalogue_values.h"
#include "platform/settings_store.h"

#include <map>
#include <string>

namespace glyma {

/// The use of what is not in the store: snippets by their text, special entries by their character.
using ReplacementUsage = std::map<std::string, UsageRecord, std::less<>>;

/// Empty when nothing is stored or what is stored does not decode.
ReplacementUsage loadReplacementUsage(const SettingsStore& settings);
void saveReplacementUsage(SettingsStore& settings, const ReplacementUsage& usage);

} // namespace glyma
