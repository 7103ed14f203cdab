// The options of the sanitizers in a fuzzer, independent of its environment.
// SPDX-License-Identifier: GPL-3.0-or-later

// The sanitizers look for these names.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)

/// Memory is limited to 2 GiB. Beyond that malloc() returns null, as at a limit of the process; a
/// failing operator new is a finding.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "max_allocation_size_mb=2048:allocator_may_return_null=1";
}

extern "C" const char* __ubsan_default_options();
extern "C" const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

/// Fontconfig keeps its cache of fonts and calls no code of this tree.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
