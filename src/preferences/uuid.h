#pragma once

#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace glyma {

/// Makes random UUIDs (version 4) in the canonical form: 36 characters, upper case. One thread.
class UuidMaker {
public:
    std::string operator()();

private:
    // Made once for many: finding the processor's source of randomness costs a virtual machine some 20 us.
    std::random_device device_;
};

/// The canonical form of a UUID written with hyphens in either case; absent when the text is none.
std::optional<std::string> canonicalUuid(std::string_view text);

} // namespace glyma
