#pragma once

#include "platform/linux/x11/connection.h"

#include <xcb/record.h>

#include <functional>
#include <optional>
#include <span>

namespace glyma::x11 {

/// What the RECORD extension tells of all clients. One thread.
class RecordStream {
public:
    using Reply = xcb_record_enable_context_reply_t;

    /// Absent when the server has no such extension.
    /// \param except  a resource of the client that is not recorded; none: all are.
    static std::optional<RecordStream> open(const std::string& display,
                                            std::span<const xcb_record_range_t> ranges,
                                            std::optional<std::uint32_t> except = std::nullopt);

    int descriptor() const { return connection_.descriptor(); }
    bool isBroken() const { return connection_.isBroken(); }
    /// \return whether anything came.
    bool drain(const std::function<void(const Reply& reply, std::span<const std::uint8_t> data)>& handle);

private:
    RecordStream(Connection connection, unsigned sequence)
        : connection_(std::move(connection))
        , sequence_(sequence) {}

    Connection connection_;
    unsigned sequence_;
};

} // namespace glyma::x11
