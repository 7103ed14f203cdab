// Closes a window as its close button does: through the window manager.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CloseButton.h"

#include <QEvent>
#include <QWidget>

#include <cstdlib>
#include <cstring>
#include <memory>

#include <xcb/xcb.h>

namespace testsupport {

namespace {

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    const xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply != nullptr ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

} // namespace

bool pressCloseButton(const QWidget& window) {
    // A connection of its own: to the window manager this is a pager, not the program.
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return false;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    constexpr std::uint32_t fromPager = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = atom(connection.get(), "_NET_CLOSE_WINDOW");
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = fromPager;
    const xcb_void_cookie_t cookie = xcb_send_event_checked(
        connection.get(), 0, root,
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&message));
    const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(
        xcb_request_check(connection.get(), cookie), &std::free);
    return error == nullptr;
}

CloseEvents::CloseEvents(QWidget& window) : QObject() {
    window.installEventFilter(this);
}

bool CloseEvents::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close)
        ++closeEvents;
    return QObject::eventFilter(watched, event);
}

} // namespace testsupport
