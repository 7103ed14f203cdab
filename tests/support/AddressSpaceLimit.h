// Lets memory run out in a test.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/FileBytes.h"

#include <sys/resource.h>
#include <unistd.h>

namespace testsupport {

/// Limits further address space of the process, in MiB, while it lives.
class AddressSpaceLimit {
public:
    explicit AddressSpaceLimit(rlim_t mebibytesMore) {
        const rlim_t pages = readBytes(QStringLiteral("/proc/self/statm")).split(' ')[0].toULong();
        const rlim_t used = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
        ::getrlimit(RLIMIT_AS, &earlier);
        // Only the soft limit, so that the earlier one can be restored.
        const rlimit lowered{used + (mebibytesMore << 20U), earlier.rlim_max};
        if (::setrlimit(RLIMIT_AS, &lowered) != 0)
            qFatal("the address space cannot be limited");
    }
    ~AddressSpaceLimit() { ::setrlimit(RLIMIT_AS, &earlier); }
    Q_DISABLE_COPY_MOVE(AddressSpaceLimit)

    /// Whether the process can live with one: AddressSanitizer reserves all the space there is.
    static constexpr bool isPossible() {
#if defined(__SANITIZE_ADDRESS__)
        return false;
#elif defined(__has_feature) // As clang reports it.
        return !__has_feature(address_sanitizer);
#else
        return true;
#endif
    }

private:
    rlimit earlier{};
};

} // namespace testsupport
