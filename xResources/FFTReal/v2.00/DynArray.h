// An owned array on the heap with checked indexes, for the tables and values of the real FFT.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Assertion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

#ifdef __linux__
#include <sys/mman.h>
#endif

/// A heap array of default-initialised elements of any default-constructible type: numbers are
/// uninitialised, not zero. Elements are destroyed with the array, also when resize() replaces it.
/// Violated preconditions abort the program (FFTREAL_ASSERT). It is neither copied nor moved.
template <typename T> class DynArray {
public:
    DynArray() = default;

    /// An array of `size` >= 0 elements.
    explicit DynArray(std::int64_t size) {
        FFTREAL_ASSERT(size >= 0, "size >= 0");
        resize(size);
    }

    ~DynArray() { release(); }
    DynArray(const DynArray&) = delete;
    DynArray& operator=(const DynArray&) = delete;

    /// Replaces the array by a new one of `size` > 0 elements; the old contents are lost. A size of
    /// 0 leaves the array as it is. If memory cannot be allocated, std::bad_alloc is thrown and the
    /// array is unchanged.
    void resize(std::int64_t size) {
        FFTREAL_ASSERT(size >= 0, "size >= 0");
        if (size > 0) {
            T* const elems = allocate(size);
            release();
            _elems = elems;
            _len = size;
        }
    }

    /// The number of elements.
    [[nodiscard]] std::int64_t size() const { return _len; }

    /// The element at 0 <= `pos` < size(). In an inner loop take the address of the first element
    /// once and use the pointer: both bounds are checked at every call, in every build.
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
    // The alignment of an array; 0 is that of plain new[]. Longer arrays are aligned to a cache
    // line or a huge page; for short ones an aligned allocation takes longer than it gains.
    // Elements with a destructor use plain new[], because only delete[] calls destructors, and it
    // frees only what plain new[] has allocated.
    static constexpr std::size_t LINE = std::max<std::size_t>(64, alignof(T));
    static constexpr std::size_t LARGE_PAGE = std::size_t{1} << 21;
    static std::size_t alignment(std::int64_t size) {
        if (!std::is_trivially_destructible_v<T>)
            return 0;
        const std::size_t bytes = static_cast<std::size_t>(size) * sizeof(T);
        return bytes >= LARGE_PAGE ? LARGE_PAGE : bytes >= 32 * LINE ? LINE : 0;
    }

    static T* allocate(std::int64_t size) {
        const auto count = static_cast<std::size_t>(size);
        if (alignment(size) == 0)
            return new T[count];
        T* const elems = new (std::align_val_t{alignment(size)}) T[count];
#ifdef __linux__
        // Page faults on small pages take half of the time of constructing a long transform. The
        // kernel may refuse huge pages; nothing depends on them.
        if (alignment(size) == LARGE_PAGE)
            madvise(elems, count * sizeof(T), MADV_HUGEPAGE);
#endif
        return elems;
    }

    void release() {
        if (alignment(_len) == 0)
            delete[] _elems;
        else
            ::operator delete[](_elems, std::align_val_t{alignment(_len)});
    }

    T* _elems = nullptr;
    std::int64_t _len = 0;
};
