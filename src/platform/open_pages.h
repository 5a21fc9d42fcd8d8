#pragma once

#include <functional>
#include <string>
#include <vector>

namespace glyma {

/// The web pages that are open in running browsers, as far as these tell.
class OpenPages {
public:
    virtual ~OpenPages() = default;
    /// Looks for their addresses and returns at once.
    /// \param onFound  told them, perhaps none, on any thread and perhaps seconds later; never once this is
    /// gone.
    virtual void find(std::function<void(std::vector<std::string> addresses)> onFound) = 0;
};

} // namespace glyma
