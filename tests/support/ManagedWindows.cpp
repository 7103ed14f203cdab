// The window manager's list of the windows on the screen, those of other programs included.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ManagedWindows.h"

#include <QByteArray>
#include <QList>

#include <cstdlib>
#include <cstring>
#include <memory>

#include <xcb/xcb.h>

namespace testsupport {

namespace {

template <typename Reply> using OwnedReply = std::unique_ptr<Reply, decltype(&std::free)>;

/// A separate connection to the X server, because Qt's belongs to its event loop.
class Server {
public:
    Server() : connection(xcb_connect(nullptr, nullptr), &xcb_disconnect) {}

    bool answers() const { return xcb_connection_has_error(connection.get()) == 0; }

    xcb_window_t root() const {
        return xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    }

    xcb_atom_t atom(const char* name) const {
        const auto cookie =
            xcb_intern_atom(connection.get(), 0, static_cast<quint16>(std::strlen(name)), name);
        const OwnedReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection.get(), cookie, nullptr), &std::free);
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    /// Returns the bytes of a property; none where the window or the property is not there.
    QByteArray property(xcb_window_t window, xcb_atom_t name) const {
        constexpr quint32 maximumWords = 4096;
        const auto cookie = xcb_get_property(connection.get(), 0, window, name,
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, maximumWords);
        const OwnedReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(connection.get(), cookie, nullptr), &std::free);
        if (!reply)
            return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    bool sendToWindowManager(const xcb_client_message_event_t& message) const {
        const auto cookie = xcb_send_event_checked(connection.get(), 0, root(),
                                                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                                                   reinterpret_cast<const char*>(&message));
        const OwnedReply<xcb_generic_error_t> error(xcb_request_check(connection.get(), cookie),
                                                    &std::free);
        return !error;
    }

private:
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection;
};

} // namespace

QVector<ManagedWindow> managedWindows() {
    const Server server;
    if (!server.answers())
        return {};
    const QByteArray list = server.property(server.root(), server.atom("_NET_CLIENT_LIST"));
    QVector<quint32> ids(list.size() / static_cast<int>(sizeof(quint32)));
    std::memcpy(ids.data(), list.constData(), static_cast<std::size_t>(list.size()));
    QVector<ManagedWindow> windows;
    for (const quint32 id : ids) {
        // The instance's name and the class's, each ended by a zero byte.
        const QList<QByteArray> names = server.property(id, XCB_ATOM_WM_CLASS).split('\0');
        windows.append({id, QString::fromUtf8(server.property(id, server.atom("_NET_WM_NAME"))),
                        QString::fromLatin1(names.value(1))});
    }
    return windows;
}

bool closeManagedWindow(quint64 id) {
    const Server server;
    if (!server.answers())
        return false;
    constexpr quint8 messageBits = 32;
    constexpr quint32 fromPager = 2; // Source of the request: 1 a program, 2 a pager or task bar.
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = messageBits;
    message.window = static_cast<xcb_window_t>(id);
    message.type = server.atom("_NET_CLOSE_WINDOW");
    message.data.data32[1] = fromPager;
    return server.sendToWindowManager(message);
}

} // namespace testsupport
