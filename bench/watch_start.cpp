// Starts a program and watches the screen until its windows are open with something in them.
// SPDX-License-Identifier: GPL-3.0-or-later
//
//     watch_start WINDOWS PROGRAM [ARG...]
//
// WINDOWS is the number of main windows that the program opens at its start. Prints one JSON object
// and ends the program again:
//
//   mapped_ms    from launch until the last of the windows is viewable
//   painted_ms   ... and its commonest colour covers less than 99 % of 32 rows of pixels; a window
//                half hidden by its program's own splash screen counts by what shows of it
//   cpu_ms       what the program's threads had computed by then; the X server's work is not in it
//   pss_kib      proportional set size, one second later
//   rss_kib      resident set size, one second later
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

template <typename Reply> struct Freed {
    void operator()(Reply* reply) const { std::free(reply); }
};
template <typename Reply> using OwnedReply = std::unique_ptr<Reply, Freed<Reply>>;

[[noreturn]] void fail(const char* message) {
    std::fprintf(stderr, "watch_start: %s\n", message);
    std::exit(1);
}

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// The screen as the window manager and the X server report it.
class Screen {
public:
    Screen() : connection(xcb_connect(nullptr, nullptr), &xcb_disconnect) {
        if (xcb_connection_has_error(connection.get()) != 0)
            fail("no screen");
        root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
        clientList = atom("_NET_CLIENT_LIST");
        processId = atom("_NET_WM_PID");
        windowType = atom("_NET_WM_WINDOW_TYPE");
        normalType = atom("_NET_WM_WINDOW_TYPE_NORMAL");
        const auto version = xcb_damage_query_version(connection.get(), XCB_DAMAGE_MAJOR_VERSION,
                                                      XCB_DAMAGE_MINOR_VERSION);
        if (!OwnedReply<xcb_damage_query_version_reply_t>(
                xcb_damage_query_version_reply(connection.get(), version, nullptr)))
            fail("the X server does not report painting");
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection.get(), root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(connection.get());
    }

    /// Returns when something has been opened or painted, or after a few milliseconds.
    void waitForChange() const {
        // What came with earlier answers is not announced again.
        if (takeEvents())
            return;
        pollfd descriptor{xcb_get_file_descriptor(connection.get()), POLLIN, 0};
        poll(&descriptor, 1, 5);
        takeEvents();
        if (xcb_connection_has_error(connection.get()) != 0)
            fail("the screen is gone");
    }

    /// Lists a process' main windows: no splash screens, no dialogs.
    std::vector<xcb_window_t> mainWindows(pid_t process) const {
        std::vector<xcb_window_t> found;
        for (const xcb_window_t window : property(root, clientList)) {
            const std::vector<std::uint32_t> owner = property(window, processId);
            const std::vector<std::uint32_t> types = property(window, windowType);
            if (owner == std::vector{static_cast<std::uint32_t>(process)} &&
                (types.empty() || types.front() == normalType))
                found.push_back(window);
        }
        return found;
    }

    /// From now on waitForChange() notices when the window is painted.
    void watchPainting(xcb_window_t window) const {
        xcb_damage_create(connection.get(), xcb_generate_id(connection.get()), window,
                          XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        xcb_flush(connection.get());
    }

    bool isViewable(xcb_window_t window) const {
        const OwnedReply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
            connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    /// Looks at some rows of pixels only: a whole window takes longer than its painting.
    bool isPainted(xcb_window_t window) const {
        const OwnedReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
            connection.get(), xcb_get_geometry(connection.get(), window), nullptr));
        if (!geometry)
            return false;
        std::array<xcb_get_image_cookie_t, 32> rows;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto y = static_cast<std::int16_t>(geometry->height * (2 * i + 1) / 64);
            rows[i] = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, y,
                                    geometry->width, 1, 0x00FFFFFF);
        }
        std::unordered_map<std::uint32_t, int> pixelsOfColour;
        int pixels = 0;
        for (const xcb_get_image_cookie_t row : rows) {
            const OwnedReply<xcb_get_image_reply_t> image(
                xcb_get_image_reply(connection.get(), row, nullptr));
            if (!image)
                continue;
            for (const std::uint32_t pixel :
                 words(xcb_get_image_data(image.get()), xcb_get_image_data_length(image.get())))
                ++pixelsOfColour[pixel];
            pixels += geometry->width;
        }
        const auto commonest = std::max_element(
            pixelsOfColour.begin(), pixelsOfColour.end(),
            [](const auto& left, const auto& right) { return left.second < right.second; });
        return commonest != pixelsOfColour.end() && commonest->second < 0.99 * pixels;
    }

private:
    bool takeEvents() const {
        bool hasTaken = false;
        while (OwnedReply<xcb_generic_event_t>(xcb_poll_for_event(connection.get())))
            hasTaken = true;
        return hasTaken;
    }

    static std::vector<std::uint32_t> words(const void* bytes, int length) {
        std::vector<std::uint32_t> result(static_cast<std::size_t>(length) / 4);
        if (!result.empty())
            std::memcpy(result.data(), bytes, result.size() * 4);
        return result;
    }

    xcb_atom_t atom(const char* name) const {
        const auto cookie = xcb_intern_atom(connection.get(), 0,
                                            static_cast<std::uint16_t>(std::strlen(name)), name);
        const OwnedReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection.get(), cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    /// Returns the 32-bit items of a property; none where it or the window is not there.
    std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name) const {
        constexpr std::uint32_t mostWords = 1024;
        const auto cookie = xcb_get_property(connection.get(), 0, window, name,
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords);
        const OwnedReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(connection.get(), cookie, nullptr));
        if (!reply)
            return {};
        return words(xcb_get_property_value(reply.get()),
                     xcb_get_property_value_length(reply.get()));
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection;
    xcb_window_t root = XCB_WINDOW_NONE;
    xcb_atom_t clientList = XCB_ATOM_NONE;
    xcb_atom_t processId = XCB_ATOM_NONE;
    xcb_atom_t windowType = XCB_ATOM_NONE;
    xcb_atom_t normalType = XCB_ATOM_NONE;
};

/// Starts a program whose words nobody wants to read.
pid_t launch(char** command) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    pid_t process = 0;
    const int error = posix_spawnp(&process, *command, &actions, nullptr, command, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        fail(std::strerror(error));
    return process;
}

void end(pid_t process) {
    kill(process, SIGTERM);
    for (int tries = 0; tries < 300; ++tries) {
        if (waitpid(process, nullptr, WNOHANG) != 0)
            return;
        std::this_thread::sleep_for(10ms);
    }
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

/// Sums up the milliseconds for which a process' living threads have run.
double computedMilliseconds(pid_t process) {
    double nanoseconds = 0;
    std::error_code error;
    const std::string threads = "/proc/" + std::to_string(process) + "/task";
    for (const auto& thread : std::filesystem::directory_iterator(threads, error)) {
        double running = 0;
        std::ifstream(thread.path() / "schedstat") >> running;
        nanoseconds += running;
    }
    return nanoseconds / 1e6;
}

/// Returns a line of a process' memory map, in KiB.
long memory(pid_t process, const std::string& name) {
    std::ifstream lines("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string line; std::getline(lines, line);)
        if (line.rfind(name + ':', 0) == 0)
            return std::stol(line.substr(name.size() + 1));
    return 0;
}

struct Times {
    double mapped = 0;  ///< Milliseconds.
    double painted = 0; ///< Milliseconds.
};

/// Waits until so many windows are painted; gives up after half a minute.
std::map<xcb_window_t, Times> watch(const Screen& screen, pid_t process, std::size_t windows,
                                    Clock::time_point start) {
    std::map<xcb_window_t, Times> seen;
    const auto isDone = [&] {
        return seen.size() >= windows && std::all_of(seen.begin(), seen.end(), [](const auto& one) {
                   return one.second.painted > 0;
               });
    };
    while (!isDone()) {
        if (waitpid(process, nullptr, WNOHANG) != 0)
            fail("the program has ended");
        if (Clock::now() - start > 30s) {
            end(process);
            fail("the windows did not come");
        }
        screen.waitForChange();
        for (const xcb_window_t window : screen.mainWindows(process))
            if (seen.try_emplace(window).second)
                screen.watchPainting(window);
        for (auto& [window, times] : seen) {
            const double now = millisecondsSince(start);
            if (times.mapped == 0 && screen.isViewable(window))
                times.mapped = now;
            if (times.mapped > 0 && times.painted == 0 && screen.isPainted(window))
                times.painted = now;
        }
    }
    return seen;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        fail("usage: watch_start WINDOWS PROGRAM [ARG...]");
    const Screen screen;
    const auto start = Clock::now();
    const pid_t process = launch(argv + 2);
    const auto seen = watch(screen, process, std::strtoul(argv[1], nullptr, 10), start);
    const double computed = computedMilliseconds(process);
    std::this_thread::sleep_for(1s);
    const long proportional = memory(process, "Pss");
    const long resident = memory(process, "Rss");
    end(process);

    double mapped = 0;
    double painted = 0;
    for (const auto& [window, times] : seen) {
        mapped = std::max(mapped, times.mapped);
        painted = std::max(painted, times.painted);
    }
    std::printf("{\"mapped_ms\": %.2f, \"painted_ms\": %.2f, \"cpu_ms\": %.2f, \"pss_kib\": %ld, "
                "\"rss_kib\": %ld}\n",
                mapped, painted, computed, proportional, resident);
    return 0;
}
