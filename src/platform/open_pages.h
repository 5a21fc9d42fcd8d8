#pragma once

#include <string>
#include <vector>

namespace glyma {

/// The web pages that are open in running browsers, as far as these tell.
class OpenPages {
public:
    virtual ~OpenPages() = default;
    /// Their addresses; empty when nothing can be found out. May take seconds. Any thread but the main one.
    virtual std::vector<std::string> addresses() = 0;
};

} // namespace glyma
