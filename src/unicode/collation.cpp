#include "unicode/collation.h"

#include <unicode/coll.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <stdexcept>

namespace glyma::unicode {
namespace {

/// The locale that POSIX would sort by; the root order where that is the C locale's byte order.
icu::Locale sortingLocale() {
    for (const auto* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        const auto* value = std::getenv(variable);
        if (!value || !*value)
            continue;
        const std::string_view name(value);
        if (name == "C" || name == "POSIX" || name.starts_with("C."))
            break;
        return icu::Locale::createCanonical(value);
    }
    return icu::Locale::getRoot();
}

std::unique_ptr<icu::Collator> makeCollator() {
    auto status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(sortingLocale(), status));
    if (U_FAILURE(status))
        throw std::runtime_error("ICU has no collation data");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    return collator;
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

} // namespace

struct Collator::Implementation {
    std::unique_ptr<icu::Collator> collator = makeCollator();
};

Collator::Collator()
    : implementation_(std::make_unique<Implementation>()) {}
Collator::~Collator() = default;
Collator::Collator(Collator&&) noexcept = default;
Collator& Collator::operator=(Collator&&) noexcept = default;

std::string Collator::sortKey(std::string_view text) const {
    const auto& collator = *implementation_->collator;
    const auto source = icu::UnicodeString::fromUTF8(piece(text));
    std::string key(128, '\0');
    const auto fill = [&] {
        return static_cast<std::size_t>(collator.getSortKey(
            source, reinterpret_cast<std::uint8_t*>(key.data()), static_cast<std::int32_t>(key.size())));
    };
    auto length = fill();
    if (length > key.size()) {
        key.resize(length);
        length = fill();
    }
    key.resize(length > 0 ? length - 1 : 0); // without ICU's terminating zero
    return key;
}

bool Collator::less(std::string_view left, std::string_view right) const {
    auto status = U_ZERO_ERROR;
    return implementation_->collator->compareUTF8(piece(left), piece(right), status) == UCOL_LESS;
}

} // namespace glyma::unicode
