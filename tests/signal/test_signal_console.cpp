// The signal library's interface, its warnings without a box, and its tests' main function.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "support/SignalCalls.h"
#include "support/StreamCapture.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <array>
#include <cstring>
#include <iostream>
#include <string>
#include <type_traits>

using testsupport::SignalCall;
using testsupport::StreamCapture;

namespace {

/// Captures standard error during a call and compares what was written to it.
void compareStandardError(const SignalCall& call, const QString& expected) {
    const StreamCapture standardError(std::cerr);
    call();
    QCOMPARE(QString::fromStdString(standardError.text()), expected);
}

/// The bits of a value: those of 0 and -0 differ, those of NaN equal themselves.
quint64 bits(double value) {
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// The arguments of a program that needs no screen.
struct Arguments {
    std::string program = "tool";
    std::string option = "-platform";
    std::string platform = "minimal";
    std::array<char*, 4> values{program.data(), option.data(), platform.data(), nullptr};
    int count = 3;
};

} // namespace

QString difference(const QVector<double>& actual, const QVector<double>& expected) {
    if (actual.size() != expected.size())
        return QStringLiteral("%1 samples, not %2").arg(actual.size()).arg(expected.size());
    for (int i = 0; i < actual.size(); ++i)
        if (bits(actual[i]) != bits(expected[i]))
            return QStringLiteral("sample %1 is %2, not %3")
                .arg(i)
                .arg(actual[i], 0, 'g', 17)
                .arg(expected[i], 0, 'g', 17);
    return {};
}

void TestSignalLibrary::interfaceHasItsSignatures() {
    using Samples = QVector<double>;
    QVERIFY(std::is_empty_v<OstrelClasses>);
    QVERIFY(std::is_default_constructible_v<OstrelClasses>);
    QVERIFY((std::is_same_v<decltype(whiteNoise), Samples(int)>));
    QVERIFY((std::is_same_v<decltype(sine), Samples(double, double, double, double, double)>));
    QVERIFY((std::is_same_v<decltype(sam), Samples(double, double, double, double, double, double,
                                                   double, double, bool)>));
    QVERIFY((std::is_same_v<decltype(randomInteger), int(int, int)>));
    QVERIFY((std::is_same_v<decltype(randomIntegers), QVector<int>(int, int, int)>));
    // The conversion chooses among functions of one name: without an exact match it does not
    // compile.
    using Rms = double (*)(Samples);
    using RmsOfIntegers = double (*)(QVector<int>);
    QVERIFY(static_cast<Rms>(&rms) != nullptr);
    QVERIFY(static_cast<RmsOfIntegers>(&rms) != nullptr);
}

void TestSignalLibrary::warningWithoutAnApplicationIsPrinted_data() {
    testsupport::addCallsThatWarn();
}

void TestSignalLibrary::warningWithoutAnApplicationIsPrinted() {
    QFETCH(SignalCall, call);
    QFETCH(QString, text);
    QVERIFY(QCoreApplication::instance() == nullptr);
    compareStandardError(call, text + u'\n');
}

void TestSignalLibrary::warningWithoutWidgetsIsPrinted_data() {
    testsupport::addCallsThatWarn();
}

void TestSignalLibrary::warningWithoutWidgetsIsPrinted() {
    QFETCH(SignalCall, call);
    QFETCH(QString, text);
    Arguments arguments;
    {
        const QCoreApplication console(arguments.count, arguments.values.data());
        compareStandardError(call, text + u'\n');
    }
    const QGuiApplication windowed(arguments.count, arguments.values.data());
    compareStandardError(call, text + u'\n');
}

void TestSignalLibrary::validCallWritesNothing_data() {
    testsupport::addCallsThatDoNotWarn();
}

void TestSignalLibrary::validCallWritesNothing() {
    QFETCH(SignalCall, call);
    QFETCH(QString, text);
    compareStandardError(call, text);
}

int main(int argc, char** argv) {
    return testsupport::runAll<TestSignalLibrary, TestSignalGenerators, TestSignalRamps,
                               TestSignalRandom, TestSignalRms>(argc, argv);
}
