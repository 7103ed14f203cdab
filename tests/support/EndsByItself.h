// Calls that could wait for ever, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <chrono>
#include <future>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace testsupport {

/// Returns whether a call ends by itself within ten seconds. If it does not, it may wait for the
/// other end of the FIFO at `path`, which is then opened.
template <typename Function> bool endsByItself(Function&& function, const QByteArray& path) {
    const std::future<void> result =
        std::async(std::launch::async, std::forward<Function>(function));
    if (result.wait_for(std::chrono::seconds(10)) == std::future_status::ready)
        return true;
    const int otherEnd = ::open(path.constData(), O_RDWR | O_NONBLOCK);
    result.wait_for(std::chrono::seconds(1));
    ::close(otherEnd);
    return false;
}

} // namespace testsupport
