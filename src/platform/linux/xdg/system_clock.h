#pragma once

#include "platform/scheduler.h"

namespace glyma::xdg {

class SystemClock : public WallClock {
public:
    Timestamp now() const override { return std::chrono::system_clock::now(); }
};

} // namespace glyma::xdg
