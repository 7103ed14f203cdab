// What the long campaigns judge recordings, files and costs by.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/KilledSessions.h"
#include "reliability/PresentedSounds.h"
#include "reliability/ProcessResources.h"
#include "reliability/ResampledSounds.h"
#include "reliability/ResponseCost.h"
#include "reliability/ToneFrequency.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr double samplingRate = 40000;

QVector<float> tone(double frequency, int count, double amplitude, double phase) {
    constexpr double twoPi = 6.283185307179586;
    QVector<float> samples(count);
    for (int i = 0; i < count; ++i)
        samples[i] =
            static_cast<float>(amplitude * std::sin(twoPi * frequency * i / samplingRate + phase));
    return samples;
}

QByteArray header() {
    return "filename\tnTrials\tfrequency matched (Hz)\r\n";
}

} // namespace

class TestReliability : public QObject {
    Q_OBJECT

private slots:
    void frequencies_data();
    void frequencies();
    void silenceHasNoFrequency();
    void cents();
    void fates_data();
    void fates();
    void fatesOfResampledSounds_data();
    void fatesOfResampledSounds();
    void wrongLinesAreTold_data();
    void wrongLinesAreTold();
    void responsesAreFoundInFiles_data();
    void responsesAreFoundInFiles();
    void growthOfMemoryIsThatOfTheBestLine_data();
    void growthOfMemoryIsThatOfTheBestLine();
    void medianAndMostOfValues_data();
    void medianAndMostOfValues();
};

void TestReliability::frequencies_data() {
    QTest::addColumn<double>("frequency");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("amplitude");
    QTest::addColumn<double>("phase");
    QTest::newRow("one period of the lowest") << 10.0 << 4000 << 1.0 << 0.0;
    QTest::newRow("lowest, upside down") << 10.0 << 4000 << -1.0 << 0.0;
    QTest::newRow("two and a half periods") << 10.0 << 10000 << 1.0 << 0.0;
    QTest::newRow("lowest, a little too high") << 10.001 << 10000 << 1.0 << 0.0;
    QTest::newRow("middle") << 500.0 << 4000 << 1.0 << 0.0;
    QTest::newRow("middle, soft") << 500.0 << 4000 << 0.01 << 0.0;
    QTest::newRow("middle, any phase") << 437.3 << 6000 << 0.7 << 2.5;
    QTest::newRow("highest") << 1000.0 << 4000 << 1.0 << 0.0;
    QTest::newRow("highest, long") << 1000.0 << 10000 << 1.0 << 1.0;
    QTest::newRow("beyond") << 1999.0 << 10000 << 1.0 << 0.0;
}

void TestReliability::frequencies() {
    QFETCH(double, frequency);
    QFETCH(int, count);
    QFETCH(double, amplitude);
    QFETCH(double, phase);
    const double measured = toneFrequency(tone(frequency, count, amplitude, phase), samplingRate);
    // What rounding to floats leaves of a single slow period.
    constexpr double mostCents = 1e-5;
    const double error = centsAbove(measured, frequency);
    QVERIFY2(std::abs(error) < mostCents, qPrintable(QString::number(error)));
}

void TestReliability::silenceHasNoFrequency() {
    QVERIFY(std::isnan(toneFrequency(QVector<float>(4000, 0.0F), samplingRate)));
}

void TestReliability::cents() {
    QCOMPARE(centsAbove(880, 440), 1200.0);
    QCOMPARE(centsAbove(220, 440), -1200.0);
    QCOMPARE(centsAbove(440, 440), 0.0);
}

void TestReliability::fates_data() {
    using Samples = QVector<float>;
    QTest::addColumn<Samples>("stretch");
    QTest::addColumn<int>("fate");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("missing");
    QTest::addColumn<bool>("isFollowedByMore");
    const auto row = [](const char* name, const Samples& stretch, Fate fate, int start = -1,
                        int missing = 0, bool isFollowedByMore = false) {
        QTest::newRow(name) << stretch << int(fate) << start << missing << isFollowedByMore;
    };
    // The sound is 0, 1, 2, 0, 3, 4.
    row("alone", {0, 1, 2, 0, 3, 4}, Fate::Complete, 0);
    row("between silence", {0, 0, 0, 1, 2, 0, 3, 4, 0, 0}, Fate::Complete, 2);
    row("with its first zero outside", {1, 2, 0, 3, 4}, Fate::Gaps);
    row("twice", {0, 1, 2, 0, 3, 4, 0, 1, 2, 0, 3, 4}, Fate::Complete, 0, 0, true);
    row("click behind", {0, 1, 2, 0, 3, 4, 0, 5}, Fate::Complete, 0, 0, true);
    row("click before", {5, 0, 1, 2, 0, 3, 4}, Fate::Different);
    row("silence", {0, 0, 0, 0, 0, 0, 0, 0}, Fate::Missing, -1, 4);
    row("nothing", {}, Fate::Missing, -1, 4);
    row("end cut off", {0, 0, 1, 2, 0, 3, 0, 0}, Fate::CutAtEnd, -1, 1);
    row("end of the recording", {0, 0, 1, 2, 0, 3}, Fate::CutAtEnd, -1, 1);
    row("end cut off behind a gap", {0, 1, 0, 0, 0, 2, 0, 0}, Fate::CutAtEnd, -1, 2);
    row("start cut off", {0, 0, 0, 0, 3, 4, 0, 0}, Fate::CutAtStart, -1, 2);
    row("piece missing", {0, 1, 0, 3, 4, 0, 0}, Fate::CutInside, -1, 1);
    row("piece replaced by silence", {0, 1, 0, 0, 3, 4, 0, 0}, Fate::CutInside, -1, 1);
    row("gap", {0, 1, 0, 0, 0, 2, 0, 3, 4}, Fate::Gaps);
    row("longer silence in the middle", {0, 1, 2, 0, 0, 3, 4}, Fate::Gaps);
    row("missing silence in the middle", {0, 1, 2, 3, 4, 0, 0}, Fate::Gaps);
    row("one sample wrong", {0, 1, 2, 0, 3, 5}, Fate::Different);
    row("another sound", {0, 5, 6, 7, 8, 9, 10}, Fate::Different);
    row("in another order", {0, 2, 1, 0, 3, 4}, Fate::Different);
    row("half of another sound", {0, 5, 6, 0, 0, 0}, Fate::Different, -1, 2);
    row("wrong and cut", {0, 1, 5, 4, 0, 0}, Fate::Different, -1, 1);
}

void TestReliability::fates() {
    QFETCH(QVector<float>, stretch);
    QFETCH(int, fate);
    QFETCH(int, start);
    QFETCH(int, missing);
    QFETCH(bool, isFollowedByMore);
    const HeardSound heard = findSound(stretch, {0, 1, 2, 0, 3, 4});
    QCOMPARE(int(heard.fate), fate);
    QCOMPARE(heard.start, start);
    QCOMPARE(heard.samplesMissing, missing);
    QCOMPARE(heard.isFollowedByMore, isFollowedByMore);
}

void TestReliability::fatesOfResampledSounds_data() {
    QTest::addColumn<int>("cutFrom");
    QTest::addColumn<int>("cutLength");
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("fate");
    const auto row = [](const char* name, int cutFrom, int cutLength, Fate fate, double level = 1) {
        QTest::newRow(name) << cutFrom << cutLength << level << int(fate);
    };
    row("complete", 0, 0, Fate::Complete);
    row("as quiet as a wrong volume makes it", 0, 0, Fate::Different, 0.97);
    row("a quantum missing", 4000, 614, Fate::Gaps);
    row("end cut off", 11000, 1000, Fate::Gaps);
    row("start cut off", 0, 1000, Fate::Gaps);
    row("a click", 5000, 10, Fate::Different);
    row("nothing", 0, 12000, Fate::Missing);
}

/// A sum of tones of 40000 Hz that a device of 48000 Hz receives 37.3 samples late.
void TestReliability::fatesOfResampledSounds() {
    QFETCH(int, cutFrom);
    QFETCH(int, cutLength);
    QFETCH(double, level);
    constexpr double deviceRate = 48000;
    constexpr double lateBy = 37.3; // Samples of the device.
    constexpr int count = 10000;
    const auto at = [](double seconds) {
        const double edge = std::min(seconds, count / samplingRate - seconds);
        constexpr double ramp = 0.01;
        const double gain = edge < 0 ? 0 : std::min(edge / ramp, 1.0);
        return gain * (std::sin(2000 * seconds) + 0.5 * std::sin(19000 * seconds + 1));
    };
    QVector<float> sound(count);
    for (int i = 0; i < count; ++i)
        sound[i] = float(at(i / samplingRate));
    QVector<float> stretch(14000);
    for (int i = 0; i < stretch.size(); ++i) {
        const double sample = i - lateBy;
        const bool isCut = sample >= cutFrom && sample < cutFrom + cutLength;
        stretch[i] = isCut ? 0 : float(level * at(sample / deviceRate));
    }
    const HeardSound heard = findResampledSound(stretch, deviceRate, sound, samplingRate);
    QTEST(int(heard.fate), "fate");
    QCOMPARE(heard.isFollowedByMore, false);
    QCOMPARE(heard.samplesMissing > 0, heard.fate != Fate::Complete);
}

void TestReliability::wrongLinesAreTold_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("wrong");
    const QByteArray first = "target.wav\t1\t640\r\n";
    const QByteArray second = "target.wav\t2\t10\r\n";
    const auto row = [](const char* name, const QByteArray& file, const char* wrong = "") {
        QTest::newRow(name) << file << QString(wrong);
    };
    row("header alone", header());
    row("one response", header() + first);
    row("two responses", header() + first + second);
    const char* const noHeader = "there is no whole header";
    row("nothing", "", noHeader);
    row("cut header", header().chopped(2), noHeader);
    row("header without its carriage return", header().replace('\r', "") + first, noHeader);
    row("no header", first + second, noHeader);
    const char* const cut = "the last line is not whole";
    row("cut in the frequency", header() + first + "target.wav\t2\t1", cut);
    row("cut before the line feed", header() + first.chopped(1), cut);
    row("cut in the name", header() + first + "tar", cut);
    row("zeros behind", header() + first + QByteArray(3, '\0'), cut);
    const char* const firstWrong = "line 1 is not whole";
    row("begins with the second", header() + second, firstWrong);
    row("empty line", header() + "\r\n" + first, firstWrong);
    row("other target", header() + "target2.wav\t1\t640\r\n", firstWrong);
    row("frequency below the lowest", header() + "target.wav\t1\t9\r\n", firstWrong);
    row("no frequency", header() + "target.wav\t1\t\r\n", firstWrong);
    row("a field too few", header() + "target.wav\t1\r\n", firstWrong);
    row("a field too many", header() + "target.wav\t1\t640\t1\r\n", firstWrong);
    row("line without its carriage return", header() + "target.wav\t1\t640\n" + second, firstWrong);
    const char* const secondWrong = "line 2 is not whole";
    row("the same twice", header() + first + first, secondWrong);
    row("one is missing", header() + first + "target.wav\t3\t10\r\n", secondWrong);
    row("two lines in one", header() + first + "target.wav\t2\ttarget.wav\t3\t10\r\n", secondWrong);
}

void TestReliability::wrongLinesAreTold() {
    QFETCH(QByteArray, file);
    QTEST(wrongWithLines(file), "wrong");
}

void TestReliability::responsesAreFoundInFiles_data() {
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isHeld");
    // The response is the second, of 640 Hz.
    QTest::newRow("last line") << QByteArray("target.wav\t1\t10\r\ntarget.wav\t2\t640\r\n") << true;
    QTest::newRow("line in between")
        << QByteArray("target.wav\t2\t640\r\ntarget.wav\t3\t10\r\n") << true;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("other frequency") << QByteArray("target.wav\t2\t641\r\n") << false;
    QTest::newRow("longer frequency") << QByteArray("target.wav\t2\t6400\r\n") << false;
    QTest::newRow("other number") << QByteArray("target.wav\t1\t640\r\n") << false;
    QTest::newRow("longer number") << QByteArray("target.wav\t22\t640\r\n") << false;
    QTest::newRow("other target") << QByteArray("a target.wav\t2\t640\r\n") << false;
    QTest::newRow("cut line") << QByteArray("target.wav\t2\t640\r") << false;
}

void TestReliability::responsesAreFoundInFiles() {
    QFETCH(QByteArray, lines);
    QTEST(holds(header() + lines, {2, "640"}), "isHeld");
}

void TestReliability::growthOfMemoryIsThatOfTheBestLine_data() {
    QTest::addColumn<QVector<double>>("mebibytes");
    QTest::addColumn<int>("firstIndex");
    QTest::addColumn<double>("growth");
    using Values = QVector<double>;
    QTest::newRow("none") << Values{7, 7, 7, 7} << 0 << 0.0;
    QTest::newRow("as a line") << Values{1, 3, 5, 7, 9} << 0 << 2.0;
    QTest::newRow("two") << Values{1, 4} << 0 << 3.0;
    QTest::newRow("shrinking") << Values{9, 8, 7} << 0 << -1.0;
    QTest::newRow("behind the first ones") << Values{100, 50, 1, 3, 5, 7} << 2 << 2.0;
    // Around its middle: (-1.5 * 0 - 0.5 * 2 + 0.5 * 1 + 1.5 * 5) / (2.25 + 0.25 + 0.25 + 2.25).
    QTest::newRow("uneven") << Values{0, 2, 1, 5} << 0 << 1.4;
}

void TestReliability::growthOfMemoryIsThatOfTheBestLine() {
    QFETCH(QVector<double>, mebibytes);
    QFETCH(int, firstIndex);
    QVector<ProcessResources> held;
    for (const double residentMiB : mebibytes) {
        ProcessResources resources;
        resources.residentMiB = residentMiB;
        held.append(resources);
    }
    QTEST(growthOfMemory(held, firstIndex), "growth");
}

void TestReliability::medianAndMostOfValues_data() {
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<QString>("text");
    using Values = QVector<double>;
    QTest::newRow("one") << Values{3} << "3.00 / 3.00";
    QTest::newRow("odd count") << Values{9, 1, 2} << "2.00 / 9.00";
    QTest::newRow("even count") << Values{4, 1, 2, 0.5} << "1.50 / 4.00";
}

void TestReliability::medianAndMostOfValues() {
    QFETCH(QVector<double>, values);
    QTEST(medianAndMost(values).text(), "text");
}

QTEST_APPLESS_MAIN(TestReliability)
#include "test_reliability.moc"
