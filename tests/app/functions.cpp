// Texts, counts and places that are computed without a window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "base/NumberTexts.h"
#include "base/Sampling.h"
#include "window/TopLevelWindow.h"

#include <QLocale>
#include <QTest>

#include <limits>

namespace {
constexpr int minimumInt = std::numeric_limits<int>::min();
constexpr int maximumInt = std::numeric_limits<int>::max();
// A vector's bytes and the 24 of its header fit an int.
constexpr int maximumInVector = 268435452;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
} // namespace

void TestAppFunctions::millisecondsHaveTwoDecimals_data() {
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("default sound") << 0.25 << "250.00";
    QTest::newRow("default silence") << 0.5 << "500.00";
    QTest::newRow("nothing") << 0.0 << "0.00";
    QTest::newRow("rounded down") << 0.0430012 << "43.00";
    QTest::newRow("rounded up") << 0.0429764 << "42.98";
    QTest::newRow("no exponent") << 12345.6 << "12345600.00";
}

void TestAppFunctions::millisecondsHaveTwoDecimals() {
    QFETCH(double, seconds);
    QTEST(millisecondsText(seconds), "text");
}

void TestAppFunctions::millisecondsAreReadAsSeconds_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("seconds");
    QTest::newRow("default sound") << "250.00" << 0.25;
    QTest::newRow("divided, not multiplied") << "43.00" << 43.0 / 1000;
    QTest::newRow("without decimals") << "7" << 7.0 / 1000;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("no number") << "long" << 0.0;
    QTest::newRow("decimal comma") << "250,00" << 0.0;
    QTest::newRow("negative") << "-20.00" << -0.02;
}

void TestAppFunctions::millisecondsAreReadAsSeconds() {
    QFETCH(QString, text);
    QFETCH(double, seconds);
    QVERIFY(secondsFromMillisecondsText(text) == seconds);
}

void TestAppFunctions::hertzHaveSixSignificantDigits_data() {
    QTest::addColumn<double>("hertz");
    QTest::addColumn<QString>("text");
    QTest::newRow("default rate") << 40000.0 << "40000";
    QTest::newRow("match") << 640.0 << "640";
    QTest::newRow("fraction") << 523.25 << "523.25";
    QTest::newRow("six digits") << 1000.0 / 3 << "333.333";
    QTest::newRow("exponent") << 1234567.0 << "1.23457e+06";
    QTest::newRow("zero") << 0.0 << "0";
}

void TestAppFunctions::hertzHaveSixSignificantDigits() {
    QFETCH(double, hertz);
    QTEST(hertzText(hertz), "text");
}

void TestAppFunctions::textsKeepTheDecimalPointInEveryLocale() {
    const QLocale earlier;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString milliseconds = millisecondsText(1.2345);
    const QString hertz = hertzText(44100.5);
    const double seconds = secondsFromMillisecondsText(QStringLiteral("1234.50"));
    QLocale::setDefault(earlier);
    QCOMPARE(milliseconds, QStringLiteral("1234.50"));
    QCOMPARE(hertz, QStringLiteral("44100.5"));
    QVERIFY(seconds == 1234.5 / 1000);
}

void TestAppFunctions::conversionsToIntAreLimited_data() {
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("converted");
    QTest::newRow("fraction dropped") << 819.9999 << 819;
    QTest::newRow("negative towards zero") << -1.9 << -1;
    QTest::newRow("largest") << 2147483647.0 << maximumInt;
    QTest::newRow("just within") << 2147483646.9 << maximumInt - 1;
    QTest::newRow("too large") << 2147483648.0 << maximumInt;
    QTest::newRow("much too large") << 1e300 << maximumInt;
    QTest::newRow("smallest") << -2147483648.0 << minimumInt;
    QTest::newRow("too small") << -2147483649.0 << minimumInt;
    QTest::newRow("infinite") << infinity << maximumInt;
    QTest::newRow("minus infinity") << -infinity << minimumInt;
    QTest::newRow("not a number") << notANumber << 0;
}

void TestAppFunctions::conversionsToIntAreLimited() {
    QFETCH(double, number);
    QTEST(truncatedToInt(number), "converted");
}

void TestAppFunctions::samplesOfADurationAreRoundedDown_data() {
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("samplingRate");
    QTest::addColumn<int>("count");
    QTest::newRow("default") << 0.25 << 40000.0 << 10000;
    QTest::newRow("short sound") << 0.1 << 40000.0 << 4000;
    // The double nearest to 0.043 is below 0.043, so the product is below 1720.
    QTest::newRow("the last sample lost") << 0.043 << 40000.0 << 1719;
    QTest::newRow("fraction of a sample") << 0.99 << 1.0 << 0;
    QTest::newRow("below zero") << -0.5 << 40000.0 << 0;
    QTest::newRow("no duration") << 0.0 << 40000.0 << 0;
    QTest::newRow("no rate") << 0.25 << 0.0 << 0;
    QTest::newRow("as many as a vector holds") << 268435452.0 << 1.0 << maximumInVector;
    QTest::newRow("one more") << 268435453.0 << 1.0 << maximumInVector;
    QTest::newRow("beyond an int") << 1e6 << 40000.0 << maximumInVector;
    QTest::newRow("infinite rate") << 0.25 << infinity << maximumInVector;
    QTest::newRow("no duration, infinite rate") << 0.0 << infinity << 0;
    QTest::newRow("no number") << notANumber << 40000.0 << 0;
}

void TestAppFunctions::samplesOfADurationAreRoundedDown() {
    QFETCH(double, seconds);
    QFETCH(double, samplingRate);
    QTEST(sampleCount(seconds, samplingRate), "count");
}

void TestAppFunctions::windowIsPlacedOnTheAvailableScreen_data() {
    QTest::addColumn<QSize>("available");
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<bool>("center");
    QTest::addColumn<double>("widthFraction");
    QTest::addColumn<double>("heightFraction");
    QTest::addColumn<QRect>("placement");
    const QSize screen(1920, 1080);
    const QPoint anywhere(700, 300);
    QTest::newRow("main window") << screen << anywhere << true << 0.8 << 0.9
                                 << QRect(192, 54, 1536, 972);
    QTest::newRow("subject window")
        << screen << anywhere << true << 0.7 << 0.8 << QRect(288, 108, 1344, 864);
    // 1092.8 by 691.2, then 274 / 2 and 77 / 2
    QTest::newRow("sizes and halves cut off")
        << QSize(1366, 768) << anywhere << true << 0.8 << 0.9 << QRect(137, 38, 1092, 691);
    QTest::newRow("fractions below 0")
        << screen << anywhere << true << -0.5 << -1e300 << QRect(960, 540, 0, 0);
    QTest::newRow("fractions above 1")
        << screen << anywhere << true << 1.5 << 1e300 << QRect(0, 0, 1920, 1080);
    QTest::newRow("each fraction on its own")
        << screen << anywhere << true << 2.0 << 0.5 << QRect(0, 270, 1920, 540);
    QTest::newRow("both fractions 0")
        << screen << anywhere << true << notANumber << notANumber << QRect(960, 540, 0, 0);
    QTest::newRow("stays where it is")
        << screen << anywhere << false << 0.5 << 0.25 << QRect(700, 300, 960, 270);
    QTest::newRow("at the minimum place")
        << screen << QPoint(5, 40) << false << 0.5 << 0.25 << QRect(5, 40, 960, 270);
    QTest::newRow("too far left") << screen << QPoint(4, 300) << false << 0.5 << 0.25
                                  << QRect(5, 300, 960, 270);
    QTest::newRow("too high") << screen << QPoint(700, 39) << false << 0.5 << 0.25
                              << QRect(700, 40, 960, 270);
    QTest::newRow("off the screen")
        << screen << QPoint(-3000, -3000) << false << 0.5 << 0.25 << QRect(5, 40, 960, 270);
    QTest::newRow("limited without centring")
        << screen << anywhere << false << 7.0 << -7.0 << QRect(700, 300, 1920, 0);
}

void TestAppFunctions::windowIsPlacedOnTheAvailableScreen() {
    QFETCH(QSize, available);
    QFETCH(QPoint, position);
    QFETCH(bool, center);
    QFETCH(double, widthFraction);
    QFETCH(double, heightFraction);
    QTEST(windowPlacement(available, position, center, widthFraction, heightFraction), "placement");
}
