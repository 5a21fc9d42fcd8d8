#include "platform/linux/x11/client_process.h"

#include <xcb/res.h>

namespace glyma::x11 {

pid_t clientProcess(const Connection& connection, std::uint32_t resource) {
    if (!connection.extension(xcb_res_id))
        return 0;
    const xcb_res_client_id_spec_t spec{.client = resource, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto cookie = xcb_res_query_client_ids(connection.get(), 1, &spec);
    const auto reply = owned(xcb_res_query_client_ids_reply(connection.get(), cookie, nullptr));
    if (!reply)
        return 0;
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids))
        if (xcb_res_client_id_value_value_length(ids.data) > 0)
            return static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
    return 0;
}

} // namespace glyma::x11
