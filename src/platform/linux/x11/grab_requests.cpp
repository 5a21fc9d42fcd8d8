#include "platform/linux/x11/grab_requests.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <cstring>

namespace glyma::x11 {

namespace {

constexpr std::uint8_t fromClient = 1; // XRecordFromClient
constexpr std::uint8_t clientDied = 3; // XRecordClientDied
constexpr std::size_t wordSize = 4;

std::size_t lengthOf(std::span<const std::uint8_t> request) {
    std::uint16_t words = 0;
    std::memcpy(&words, request.data() + 2, sizeof words);
    // None of these requests is ever long enough for the extended length, which a zero announces.
    return words == 0 ? request.size() : std::min(request.size(), words * wordSize);
}

} // namespace

std::optional<GrabRequests> GrabRequests::open(const std::string& display, std::uint32_t except) {
    const auto connection = Connection::open(display);
    const auto* const xinput = connection ? connection->extension(xcb_input_id) : nullptr;
    if (!xinput)
        return std::nullopt;
    xcb_record_range_t range{};
    range.core_requests = {.first = XCB_GRAB_KEYBOARD, .last = XCB_UNGRAB_KEYBOARD};
    range.ext_requests = {.major = {.first = xinput->major_opcode, .last = xinput->major_opcode},
                          .minor = {.first = XCB_INPUT_XI_GRAB_DEVICE, .last = XCB_INPUT_XI_UNGRAB_DEVICE}};
    range.client_died = 1;
    auto stream = RecordStream::open(display, {&range, 1}, except);
    return stream ? std::optional(GrabRequests(std::move(*stream), xinput->major_opcode)) : std::nullopt;
}

bool GrabRequests::drain(const std::function<void(const GrabRequest&)>& handle) {
    return stream_.drain([&](const RecordStream::Reply& reply, std::span<const std::uint8_t> data) {
        if (reply.category == clientDied)
            handle({.kind = GrabRequest::Kind::clientDied, .client = reply.xid_base});
        // A client of the other byte order is not understood; that somebody has grabbed is found out all the
        // same.
        if (reply.category != fromClient || reply.client_swapped)
            return;
        while (data.size() >= wordSize) {
            const auto length = lengthOf(data);
            if (auto request = read(data.first(length))) {
                request->client = reply.xid_base;
                handle(*request);
            }
            data = data.subspan(length);
        }
    });
}

std::optional<GrabRequest> GrabRequests::read(std::span<const std::uint8_t> request) const {
    const auto isGrab = request[0] == XCB_GRAB_KEYBOARD ||
                        (request[0] == xinputOpcode_ && request[1] == XCB_INPUT_XI_GRAB_DEVICE);
    const auto isUngrab = request[0] == XCB_UNGRAB_KEYBOARD ||
                          (request[0] == xinputOpcode_ && request[1] == XCB_INPUT_XI_UNGRAB_DEVICE);
    if (isUngrab)
        return GrabRequest{.kind = GrabRequest::Kind::ungrab};
    // Both requests for a grab name the window in their second word.
    GrabRequest grab{.kind = GrabRequest::Kind::grab};
    if (!isGrab || request.size() < 2 * wordSize)
        return std::nullopt;
    std::memcpy(&grab.window, request.data() + wordSize, sizeof grab.window);
    return grab;
}

} // namespace glyma::x11
