// Opens untrusted paths without blocking on FIFOs or devices.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/RegularFile.h"

#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
int openFlags(RegularFile::Purpose purpose) {
    return purpose == RegularFile::Purpose::Reading ? O_RDONLY : O_WRONLY | O_APPEND | O_CREAT;
}
constexpr mode_t modeBeforeUmask = 0666;
} // namespace

// O_NONBLOCK: opening a FIFO must not wait for its other end.
RegularFile::RegularFile(const std::filesystem::path& name, Purpose purpose)
    : descriptor(open(name.c_str(), openFlags(purpose) | O_NONBLOCK | O_CLOEXEC | O_NOCTTY,
                      modeBeforeUmask)) {
    struct stat status = {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        descriptor = -1;
    }
}

RegularFile::~RegularFile() {
    if (descriptor >= 0)
        close(descriptor);
}

std::filesystem::path RegularFile::path() const {
    if (descriptor < 0)
        return {};
    return "/dev/fd/" + std::to_string(descriptor);
}
