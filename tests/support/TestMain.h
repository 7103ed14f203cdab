// One main function for a test program made of several test classes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtTest>

namespace testsupport {

/// Runs each test class in turn with the program's own arguments and returns the number of
/// classes that failed, so that an exit status of 0 means that every one of them passed.
template <typename... TestClasses> int runAll(int argc, char** argv) {
    int failedClasses = 0;
    const auto run = [&](auto&& test) {
        if (QTest::qExec(&test, argc, argv) != 0)
            ++failedClasses;
    };
    (run(TestClasses()), ...);
    return failedClasses;
}

} // namespace testsupport
