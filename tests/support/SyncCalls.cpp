// Replaces the system's fsync and ftruncate in a test program.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SyncCalls.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace testsupport {

namespace {
// A system call is a plain function, so its settings cannot belong to an object.
SyncCalls*& current() {
    static SyncCalls* calls = nullptr;
    return calls;
}

int syncFile(int descriptor) {
    SyncCalls* calls = current();
    if (calls == nullptr)
        return 0;
    if (++calls->count == calls->killAt)
        std::raise(SIGKILL);
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        calls->bytesSynced = status.st_size;
    if (S_ISDIR(status.st_mode))
        calls->foldersSynced.push_back(status.st_ino);
    std::this_thread::sleep_for(std::chrono::milliseconds(calls->delayMs));
    errno = calls->failure;
    return calls->failure == 0 ? 0 : -1;
}

template <typename Length> int truncateFile(const char* function, int descriptor, Length length) {
    if (current() != nullptr && current()->truncationFailure != 0) {
        errno = current()->truncationFailure;
        return -1;
    }
    auto* const original = reinterpret_cast<int (*)(int, Length)>(dlsym(RTLD_NEXT, function));
    return original(descriptor, length);
}

} // namespace

SyncCalls::SyncCalls() {
    current() = this;
}

SyncCalls::~SyncCalls() {
    current() = nullptr;
}

} // namespace testsupport

// These replace the system's functions in the whole test program.
extern "C" int fsync(int fd) {
    return testsupport::syncFile(fd);
}

extern "C" int ftruncate(int fd, off_t length) noexcept {
    return testsupport::truncateFile("ftruncate", fd, length);
}

extern "C" int ftruncate64(int fd, off64_t length) noexcept {
    return testsupport::truncateFile("ftruncate64", fd, length);
}
