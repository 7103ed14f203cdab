// Opens untrusted paths without blocking on FIFOs or devices.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

/// Keeps a regular file open, so that a FIFO or device that has taken its name in the meantime is
/// not opened instead, which could block for ever.
class RegularFile {
public:
    enum class Purpose { Reading, Appending };

    /// Appending creates a file that does not exist.
    RegularFile(const std::filesystem::path& name, Purpose purpose);
    ~RegularFile();
    RegularFile(const RegularFile&) = delete;
    RegularFile(RegularFile&&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    RegularFile& operator=(RegularFile&&) = delete;

    /// Returns a path under which a file stream opens this same file during the object's lifetime.
    /// Empty if it could not be opened or is not a regular file.
    std::filesystem::path path() const;

private:
    int descriptor; ///< -1 if there is none.
};
