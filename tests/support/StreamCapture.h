// Captures a standard stream while an object lives.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <iostream>
#include <sstream>
#include <string>
#include <utility>

namespace testsupport {

/// Captures a stream such as std::cerr from construction to destruction.
class StreamCapture {
public:
    explicit StreamCapture(std::ostream& stream)
        : stream_(stream), original_(stream.rdbuf(&buffer_)) {}
    ~StreamCapture() { stream_.rdbuf(original_); }
    Q_DISABLE_COPY_MOVE(StreamCapture)

    /// Returns everything written so far.
    [[nodiscard]] std::string text() const { return buffer_.str(); }

    /// Returns the part of it that has been flushed.
    [[nodiscard]] std::string flushedText() const {
        return buffer_.str().substr(0, buffer_.flushedSize);
    }

    /// Returns the part of it that has been flushed, and clears everything.
    [[nodiscard]] std::string takeFlushed() {
        std::string text = flushedText();
        buffer_.str({});
        buffer_.flushedSize = 0;
        return text;
    }

private:
    struct Buffer : std::stringbuf {
        std::size_t flushedSize = 0;

        int sync() override {
            flushedSize = str().size();
            return 0;
        }
    };

    std::ostream& stream_;
    Buffer buffer_;
    std::streambuf* original_;
};

/// Returns what a function writes to standard error.
template <typename Function> std::string errorsOf(Function&& function) {
    const StreamCapture errors(std::cerr);
    std::forward<Function>(function)();
    return errors.text();
}

} // namespace testsupport
