#pragma once

#include "platform/linux/x11/record_stream.h"

#include <functional>
#include <optional>

namespace glyma::x11 {

/// A client asked for the whole keyboard, or gave it back, or is gone. Whether it got it, the server does not
/// say.
struct GrabRequest {
    enum class Kind { grab, ungrab, clientDied };
    Kind kind = Kind::grab;
    std::uint32_t client = 0; ///< its resource base
    xcb_window_t window = XCB_WINDOW_NONE;
    bool operator==(const GrabRequest&) const = default;
};

/// The requests by which clients grab keyboards. One thread.
class GrabRequests {
public:
    /// Absent when the server has no RECORD extension.
    /// \param except  a resource of the client whose requests are left out.
    static std::optional<GrabRequests> open(const std::string& display, std::uint32_t except);

    int descriptor() const { return stream_.descriptor(); }
    bool isBroken() const { return stream_.isBroken(); }
    bool drain(const std::function<void(const GrabRequest&)>& handle);

private:
    GrabRequests(RecordStream stream, std::uint8_t xinputOpcode)
        : stream_(std::move(stream))
        , xinputOpcode_(xinputOpcode) {}
    std::optional<GrabRequest> read(std::span<const std::uint8_t> request) const;

    RecordStream stream_;
    std::uint8_t xinputOpcode_;
};

} // namespace glyma::x11
