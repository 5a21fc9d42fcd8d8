#pragma once

#include "data/resources.h"

#include <map>
#include <optional>
#include <string>

namespace glyma {

/// Official names of scalars: those that the installed ICU knows, and those of characters younger than it,
/// from the shipped character list. One thread at a time.
class ScalarNames {
public:
    /// \param resources  outlives it.
    explicit ScalarNames(const ResourceLocator& resources)
        : resources_(resources) {}

    /// "UNNAMED CHARACTER" for a scalar without a name, such as one for private use.
    std::string nameOf(char32_t scalar);
    /// Gives the memory of the character list back.
    void forgetList() { list_.reset(); }

private:
    std::string listedName(char32_t scalar);

    const ResourceLocator& resources_;
    std::optional<std::string> list_;
};

} // namespace glyma
