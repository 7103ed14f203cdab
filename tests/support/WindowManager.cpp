// Asks the window manager for what a person asks of it by a window's frame.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/WindowManager.h"

#include <QWidget>

#include <cstdlib>
#include <cstring>
#include <memory>

#include <xcb/xcb.h>

namespace testsupport {

namespace {

constexpr quint8 messageBits = 32;
constexpr quint32 fromPager = 2; // Whom the request comes from: 1 a program, 2 a person's tool.

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

} // namespace

bool closeByWindowManager(const QWidget& window) {
    if (!window.isVisible())
        return false;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return false;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = messageBits;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = atom(connection.get(), "_NET_CLOSE_WINDOW");
    message.data.data32[1] = fromPager;
    const auto cookie = xcb_send_event_checked(connection.get(), 0, root,
                                               XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                                               reinterpret_cast<const char*>(&message));
    const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(
        xcb_request_check(connection.get(), cookie), &std::free);
    return !error;
}

} // namespace testsupport
