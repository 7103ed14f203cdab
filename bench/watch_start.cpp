// Starts a program and watches the screen until its windows are open and painted.
// SPDX-License-Identifier: GPL-3.0-or-later
//
//     watch_start WINDOWS PROGRAM
//
// WINDOWS is the number of main windows that the program opens at its start, on a screen without
// others. Prints one JSON object and ends the program again:
//
//   painted_ms   from launch until the commonest colour covers less than 99 % of 16 rows of pixels
//                of each window; of a window partly hidden by a splash screen, the visible part
//   cpu_ms       processor time of the program until then, without the X server's
//   pss_kib      proportional set size, one second later
//   rss_kib      resident set size, one second later
//
// xdotool can wait for windows too, but checks only twice a second, and does not see what is
// painted.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const char* message) {
    std::fprintf(stderr, "watch_start: %s\n", message);
    std::exit(1);
}

/// The screen as the window manager and the X server report it.
class WatchedScreen {
public:
    WatchedScreen() : display(XOpenDisplay(nullptr), &XCloseDisplay) {
        if (!display)
            fail("no screen");
        // A window may be closed while it is inspected.
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }

    /// Lists the main windows: no splash screens, no dialogs.
    std::vector<Window> mainWindows() const {
        const Atom normal = atom("_NET_WM_WINDOW_TYPE_NORMAL");
        std::vector<Window> found;
        for (const Window window : property(DefaultRootWindow(display.get()), "_NET_CLIENT_LIST")) {
            const std::vector<unsigned long> types = property(window, "_NET_WM_WINDOW_TYPE");
            if (types.empty() || types.front() == normal)
                found.push_back(window);
        }
        return found;
    }

    /// Reads only some rows of pixels: reading a whole window takes longer than painting it. A
    /// window that is not viewable yet has no pixels.
    bool isPainted(Window window) const {
        XWindowAttributes attributes;
        if (XGetWindowAttributes(display.get(), window, &attributes) == 0 ||
            attributes.map_state != IsViewable)
            return false;
        std::unordered_map<unsigned long, int> pixelsOfColour;
        int commonest = 0;
        constexpr int rows = 16;
        for (int row = 0; row < rows; ++row) {
            XImage* const image =
                XGetImage(display.get(), window, 0, attributes.height * (2 * row + 1) / (2 * rows),
                          static_cast<unsigned>(attributes.width), 1, 0x00FFFFFF, ZPixmap);
            if (image == nullptr)
                return false;
            for (int x = 0; x < attributes.width; ++x)
                commonest = std::max(commonest, ++pixelsOfColour[XGetPixel(image, x, 0)]);
            XDestroyImage(image);
        }
        return commonest < 0.99 * rows * attributes.width;
    }

private:
    Atom atom(const char* name) const { return XInternAtom(display.get(), name, False); }

    /// Returns the items of a property; none where it or the window does not exist.
    std::vector<unsigned long> property(Window window, const char* name) const {
        Atom type = None;
        int bits = 0;
        unsigned long count = 0;
        unsigned long rest = 0;
        unsigned char* items = nullptr;
        XGetWindowProperty(display.get(), window, atom(name), 0, 1024, False, AnyPropertyType,
                           &type, &bits, &count, &rest, &items);
        const std::unique_ptr<unsigned char, decltype(&XFree)> owner(items, &XFree);
        // Xlib returns 32-bit items as longs.
        const auto* const first = reinterpret_cast<const unsigned long*>(items);
        return bits == 32 ? std::vector<unsigned long>(first, first + count)
                          : std::vector<unsigned long>();
    }

    std::unique_ptr<Display, decltype(&XCloseDisplay)> display;
};

/// Starts a program without input and output.
pid_t launch(char** command) {
    const pid_t process = fork();
    if (process == 0) {
        const int nothing = open("/dev/null", O_RDWR);
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            dup2(nothing, descriptor);
        execvp(*command, command);
        _exit(127);
    }
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

double computedMilliseconds(pid_t process) {
    clockid_t clock = 0;
    timespec computed{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &computed) != 0)
        fail("no processor time of the program");
    return 1e3 * static_cast<double>(computed.tv_sec) +
           1e-6 * static_cast<double>(computed.tv_nsec);
}

/// Returns a line of a process' memory map, in KiB.
long memory(pid_t process, const std::string& name) {
    std::ifstream lines("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string line; std::getline(lines, line);)
        if (line.rfind(name + ':', 0) == 0)
            return std::stol(line.substr(name.size() + 1));
    return 0;
}

/// Waits until `windows` windows are painted; fails after half a minute.
void watch(const WatchedScreen& screen, pid_t process, std::size_t windows) {
    const Clock::time_point start = Clock::now();
    std::set<Window> painted;
    while (painted.size() < windows) {
        if (waitpid(process, nullptr, WNOHANG) != 0)
            fail("the program has ended");
        if (Clock::now() - start > 30s) {
            end(process);
            fail("the windows did not open");
        }
        for (const Window window : screen.mainWindows())
            if (painted.count(window) == 0 && screen.isPainted(window))
                painted.insert(window);
        // So that the X server has time to paint.
        std::this_thread::sleep_for(1ms);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        fail("usage: watch_start WINDOWS PROGRAM");
    const WatchedScreen screen;
    const Clock::time_point start = Clock::now();
    const pid_t process = launch(argv + 2);
    watch(screen, process, std::strtoul(argv[1], nullptr, 10));
    const std::chrono::duration<double, std::milli> painted = Clock::now() - start;
    const double computed = computedMilliseconds(process);
    std::this_thread::sleep_for(1s);
    std::printf("{\"painted_ms\": %.2f, \"cpu_ms\": %.2f, \"pss_kib\": %ld, \"rss_kib\": %ld}\n",
                painted.count(), computed, memory(process, "Pss"), memory(process, "Rss"));
    end(process);
    return 0;
}
