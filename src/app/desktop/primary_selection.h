#pragma once

#include "charinfo/character_info_port.h"
#include "platform/linux/x11/selection_owner.h"
#include "platform/qt/selection_reader.h"

namespace glyma {

/// PRIMARY, where the applications of an X11 desktop keep what was selected last.
class PrimarySelection : public LastSelection {
public:
    std::optional<std::string> inFrontApplication() override {
        return owner_.isInFront() ? reader_.readText() : std::nullopt;
    }
    std::optional<std::string> anywhere() override { return reader_.readText(); }

private:
    x11::SelectionOwner owner_{"PRIMARY"};
    qt::SelectionReader reader_{"PRIMARY"};
};

} // namespace glyma
