// One main function for a test program made of several test classes.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QTest>

#include <algorithm>
#include <vector>

namespace testsupport {

/// Whether an argument names a test function of a class, with or without a row of its data.
inline bool namesFunctionOf(const QMetaObject& tests, const char* argument) {
    return tests.indexOfSlot(QByteArray(argument).split(':').constFirst() + "()") >= 0;
}

/// Runs each test class in turn with the program's own arguments and returns the number of
/// classes that failed, so that an exit status of 0 means that every one of them passed. Where
/// arguments name test functions, only the classes that have them run.
template <typename... TestClasses> int runAll(int argc, char** argv) {
    const std::vector<char*> arguments(argv, argv + argc);
    const auto isNameInAny = [](const char* argument) {
        return (namesFunctionOf(TestClasses::staticMetaObject, argument) || ...);
    };
    const bool isSelection = std::any_of(arguments.cbegin() + 1, arguments.cend(), isNameInAny);
    int failedClasses = 0;
    const auto run = [&](auto&& test) {
        const QMetaObject& functions = *test.metaObject();
        std::vector<char*> words;
        bool isSelected = !isSelection;
        for (char* argument : arguments) {
            const bool isOurs = namesFunctionOf(functions, argument);
            isSelected = isSelected || isOurs;
            if (isOurs || !isNameInAny(argument))
                words.push_back(argument);
        }
        if (isSelected && QTest::qExec(&test, static_cast<int>(words.size()), words.data()) != 0)
            ++failedClasses;
    };
    (run(TestClasses()), ...);
    return failedClasses;
}

/// The same for tests of the windows, under the program's own name.
template <typename... TestClasses> int runWithWindows(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    return runAll<TestClasses...>(argc, argv);
}

} // namespace testsupport
