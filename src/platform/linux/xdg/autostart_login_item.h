#pragma once

#include "platform/login_item.h"

#include <filesystem>
#include <string>

namespace glyma::xdg {

/// The desktop entry "glyma.desktop" among those that the session starts.
class AutostartLoginItem : public LoginItem {
public:
    /// \param folder      where the session looks; made when needed.
    /// \param executable  the program to start.
    AutostartLoginItem(const std::filesystem::path& folder, std::filesystem::path executable);

    bool isEnabled() const override;
    std::expected<void, Message> enable() override;
    std::expected<void, Message> disable() override;

private:
    std::string entryText() const;

    std::filesystem::path file_;
    std::filesystem::path executable_;
};

} // namespace glyma::xdg
