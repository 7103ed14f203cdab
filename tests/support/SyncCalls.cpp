// What a test program does when the program waits for the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SyncCalls.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace testsupport {

namespace {
// A system call is a plain function, so what it looks at has to stand outside of any object.
SyncCalls*& current() {
    static SyncCalls* calls = nullptr;
    return calls;
}

int syncFile(int descriptor) {
    SyncCalls* calls = current();
    if (calls == nullptr)
        return 0;
    ++calls->count;
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))
        calls->bytesSynced = status.st_size;
    if (S_ISDIR(status.st_mode))
        calls->foldersSynced.push_back(status.st_ino);
    std::this_thread::sleep_for(std::chrono::milliseconds(calls->delayMs));
    errno = calls->failure;
    return calls->failure == 0 ? 0 : -1;
}

} // namespace

SyncCalls::SyncCalls() {
    current() = this;
}

SyncCalls::~SyncCalls() {
    current() = nullptr;
}

} // namespace testsupport

// For the whole test program, in the place of the system's.
extern "C" int fsync(int fd) {
    return testsupport::syncFile(fd);
}
