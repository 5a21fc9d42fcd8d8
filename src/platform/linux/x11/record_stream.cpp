#include "platform/linux/x11/record_stream.h"

#include <xcb/xcbext.h>

namespace glyma::x11 {

std::optional<RecordStream> RecordStream::open(const std::string& display,
                                               std::span<const xcb_record_range_t> ranges,
                                               std::optional<std::uint32_t> except) {
    auto connection = Connection::open(display);
    if (!connection || !connection->extension(xcb_record_id))
        return std::nullopt;
    const auto context = xcb_generate_id(connection->get());
    const xcb_record_client_spec_t clients = XCB_RECORD_CS_ALL_CLIENTS;
    xcb_record_create_context(connection->get(), context, 0, 1, static_cast<std::uint32_t>(ranges.size()),
                              &clients, ranges.data());
    if (except)
        xcb_record_unregister_clients(connection->get(), context, 1, &*except);
    const auto cookie = xcb_record_enable_context(connection->get(), context);
    connection->flush();
    return RecordStream(std::move(*connection), cookie.sequence);
}

bool RecordStream::drain(
    const std::function<void(const Reply&, std::span<const std::uint8_t> data)>& handle) {
    bool isAnything = false;
    void* raw = nullptr;
    xcb_generic_error_t* error = nullptr;
    // The request is answered by one reply after another for as long as the context is enabled.
    while (xcb_poll_for_reply(connection_.get(), sequence_, &raw, &error) && raw) {
        isAnything = true;
        const auto reply = owned(static_cast<Reply*>(raw));
        handle(*reply, {xcb_record_enable_context_data(reply.get()),
                        static_cast<std::size_t>(xcb_record_enable_context_data_length(reply.get()))});
    }
    owned(error);
    return isAnything;
}

} // namespace glyma::x11
