// How the sanitizers watch a fuzzer, however it is started.
// SPDX-License-Identifier: GPL-3.0-or-later

// The sanitizers look for these names.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)

/// Memory ends at 2 GiB: malloc() then gives nothing, as it does at a limit of the process, and
/// new, which nothing should call for so much, is a finding.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "max_allocation_size_mb=2048:allocator_may_return_null=1";
}

extern "C" const char* __ubsan_default_options();
extern "C" const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

/// Fontconfig keeps what it has found about fonts, and calls nothing of this tree.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
