// Shared by the fuzzers: a file in memory, checks that end the program, muted streams.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <streambuf>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

namespace fuzzing {

/// Ends the program, which is a finding of the fuzzer, unless `condition` holds.
inline void require(bool condition, const char* expectation) {
    if (condition)
        return;
    // std::cerr may be muted.
    std::fprintf(stderr, "This does not hold: %s\n", expectation);
    std::abort();
}

/// A regular file that never touches a disk, and that others open by a path.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes = {}) : descriptor(memfd_create("fuzz", 0)) {
        require(descriptor >= 0, "there are files in memory");
        replace(bytes);
    }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile(MemoryFile&&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    MemoryFile& operator=(MemoryFile&&) = delete;

    std::string path() const { return "/dev/fd/" + std::to_string(descriptor); }

    void replace(std::string_view bytes) const {
        const bool isReplaced =
            ftruncate(descriptor, 0) == 0 &&
            pwrite(descriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
        require(isReplaced, "a file in memory takes its bytes");
    }

    std::string bytes() const {
        const off_t size = lseek(descriptor, 0, SEEK_END);
        std::string all(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
        require(pread(descriptor, all.data(), all.size(), 0) == static_cast<ssize_t>(size),
                "a file in memory gives its bytes back");
        return all;
    }

private:
    int descriptor;
};

/// Discards all characters and counts them.
class CountingBuffer : public std::streambuf {
public:
    std::size_t count = 0;

protected:
    int_type overflow(int_type character) override {
        ++count;
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char* /*text*/, std::streamsize length) override {
        count += static_cast<std::size_t>(length);
        return length;
    }
};

/// Mutes both standard streams, whose output would take most of the time; returns their
/// replacement.
inline CountingBuffer& muteStreams() {
    static CountingBuffer buffer;
    std::cout.rdbuf(&buffer);
    std::cerr.rdbuf(&buffer);
    return buffer;
}

/// Returns an input of the fuzzer as characters.
inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

} // namespace fuzzing
