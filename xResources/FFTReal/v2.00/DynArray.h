// An owned array on the heap with checked indexes, for the tables of the real FFT.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Assertion.h"

#include <cstddef>
#include <cstdint>
#include <memory>

/// A heap array of default-initialised elements: numbers start out undetermined, not zero.
/// Violated preconditions abort the program (FFTREAL_ASSERT). It is neither copied nor moved.
template <typename T> class DynArray {
public:
    DynArray() = default;

    /// An array of `size` >= 0 elements.
    explicit DynArray(std::int64_t size) {
        FFTREAL_ASSERT(size >= 0, "size >= 0");
        resize(size);
    }

    ~DynArray() = default;
    DynArray(const DynArray&) = delete;
    DynArray& operator=(const DynArray&) = delete;

    /// Replaces the array by a new one of `size` > 0 elements; the old contents are lost. A size
    /// of 0 leaves the array as it is. When memory cannot be had, std::bad_alloc is thrown and
    /// the array is unchanged.
    void resize(std::int64_t size) {
        FFTREAL_ASSERT(size >= 0, "size >= 0");
        if (size > 0) {
            _elems.reset(new T[static_cast<std::size_t>(size)]);
            _len = size;
        }
    }

    /// The number of elements.
    [[nodiscard]] std::int64_t size() const { return _len; }

    /// The element at 0 <= `pos` < size(). In an inner loop take the address of the first element
    /// once and go on from there: both bounds are checked at every call, in every build.
    [[nodiscard]] const T& operator[](std::int64_t pos) const {
        FFTREAL_ASSERT(pos >= 0, "pos >= 0");
        FFTREAL_ASSERT(pos < _len, "pos < _len");
        return _elems[static_cast<std::size_t>(pos)];
    }

    [[nodiscard]] T& operator[](std::int64_t pos) {
        FFTREAL_ASSERT(pos >= 0, "pos >= 0");
        FFTREAL_ASSERT(pos < _len, "pos < _len");
        return _elems[static_cast<std::size_t>(pos)];
    }

private:
    std::unique_ptr<T[]> _elems;
    std::int64_t _len = 0;
};
