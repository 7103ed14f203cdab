// Tests of the functions by which the long campaigns judge recordings, files and costs.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/KilledSessions.h"
#include "reliability/ProcessResources.h"
#include "reliability/ResampledSounds.h"
#include "reliability/ResponseCost.h"
#include "support/HeardSounds.h"
#include "support/TestTable.h"

#include <QTest>

#include <cmath>

using testsupport::columns;
using testsupport::HeardSound;
using testsupport::Outcome;

namespace {

const QByteArray header = "filename\tnTrials\tfrequency matched (Hz)\r\n";

} // namespace

Q_DECLARE_METATYPE(testsupport::Outcome)

class TestReliability : public QObject {
    Q_OBJECT

private slots:
    void outcomes_data();
    void outcomes();
    void outcomesOfResampledSounds_data();
    void outcomesOfResampledSounds();
    void wholeLinesAreRecognised_data();
    void wholeLinesAreRecognised();
    void responsesAreFoundInFiles_data();
    void responsesAreFoundInFiles();
    void growthOfMemoryIsTheSlopeOfTheBestLine_data();
    void growthOfMemoryIsTheSlopeOfTheBestLine();
    void medianAndMaximumOfValues_data();
    void medianAndMaximumOfValues();
};

void TestReliability::outcomes_data() {
    const auto addRow = columns<QVector<float>, Outcome, int, int, bool>(
        "stretch", "outcome", "start", "missing", "isFollowedByMore");
    const auto row = [addRow](const char* name, const QVector<float>& stretch, Outcome outcome,
                              int start = -1, int missing = 0, bool isFollowedByMore = false) {
        addRow(name, stretch, outcome, start, missing, isFollowedByMore);
    };
    // The sound is 0, 1, 2, 0, 3, 4.
    row("alone", {0, 1, 2, 0, 3, 4}, Outcome::Complete, 0);
    row("between silence", {0, 0, 0, 1, 2, 0, 3, 4, 0, 0}, Outcome::Complete, 2);
    row("with its first zero outside", {1, 2, 0, 3, 4}, Outcome::Gaps);
    row("twice", {0, 1, 2, 0, 3, 4, 0, 1, 2, 0, 3, 4}, Outcome::Complete, 0, 0, true);
    row("click after it", {0, 1, 2, 0, 3, 4, 0, 5}, Outcome::Complete, 0, 0, true);
    row("click before", {5, 0, 1, 2, 0, 3, 4}, Outcome::Different);
    row("silence", {0, 0, 0, 0, 0, 0, 0, 0}, Outcome::Missing, -1, 4);
    row("nothing", {}, Outcome::Missing, -1, 4);
    row("end cut off", {0, 0, 1, 2, 0, 3, 0, 0}, Outcome::CutAtEnd, -1, 1);
    row("end of the recording", {0, 0, 1, 2, 0, 3}, Outcome::CutAtEnd, -1, 1);
    row("end cut off after a gap", {0, 1, 0, 0, 0, 2, 0, 0}, Outcome::CutAtEnd, -1, 2);
    row("start cut off", {0, 0, 0, 0, 3, 4, 0, 0}, Outcome::CutAtStart, -1, 2);
    row("piece missing", {0, 1, 0, 3, 4, 0, 0}, Outcome::CutInside, -1, 1);
    row("piece replaced by silence", {0, 1, 0, 0, 3, 4, 0, 0}, Outcome::CutInside, -1, 1);
    row("gap", {0, 1, 0, 0, 0, 2, 0, 3, 4}, Outcome::Gaps);
    row("longer silence in the middle", {0, 1, 2, 0, 0, 3, 4}, Outcome::Gaps);
    row("missing silence in the middle", {0, 1, 2, 3, 4, 0, 0}, Outcome::Gaps);
    row("one sample wrong", {0, 1, 2, 0, 3, 5}, Outcome::Different);
    row("another sound", {0, 5, 6, 7, 8, 9, 10}, Outcome::Different);
    row("reordered", {0, 2, 1, 0, 3, 4}, Outcome::Different);
    row("half of another sound", {0, 5, 6, 0, 0, 0}, Outcome::Different, -1, 2);
    row("wrong and cut", {0, 1, 5, 4, 0, 0}, Outcome::Different, -1, 1);
}

void TestReliability::outcomes() {
    QFETCH(QVector<float>, stretch);
    const HeardSound heard = testsupport::findSound(stretch, {0, 1, 2, 0, 3, 4});
    QTEST(heard.outcome, "outcome");
    QTEST(heard.start, "start");
    QTEST(heard.samplesMissing, "missing");
    QTEST(heard.isFollowedByMore, "isFollowedByMore");
}

void TestReliability::outcomesOfResampledSounds_data() {
    const auto row = columns<int, int, double, Outcome>("cutFrom", "cutLength", "level", "outcome");
    row("complete", 0, 0, 1, Outcome::Complete);
    row("as quiet as a wrong volume makes it", 0, 0, 0.97, Outcome::Different);
    row("a quantum missing", 4000, 614, 1, Outcome::Gaps);
    row("end cut off", 11000, 1000, 1, Outcome::Gaps);
    row("start cut off", 0, 1000, 1, Outcome::Gaps);
    row("a click", 5000, 10, 1, Outcome::Different);
    row("nothing", 0, 12000, 1, Outcome::Missing);
}

/// A sum of tones of 40000 Hz that a device of 48000 Hz receives 37.3 samples late.
void TestReliability::outcomesOfResampledSounds() {
    QFETCH(int, cutFrom);
    QFETCH(int, cutLength);
    QFETCH(double, level);
    constexpr double samplingRate = 40000;
    constexpr double deviceRate = 48000;
    constexpr double delaySamples = 37.3; // Samples of the device.
    constexpr int count = 10000;
    const auto at = [=](double seconds) {
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
        const double sample = i - delaySamples;
        const bool isCut = sample >= cutFrom && sample < cutFrom + cutLength;
        stretch[i] = isCut ? 0 : float(level * at(sample / deviceRate));
    }
    const HeardSound heard = findResampledSound(stretch, deviceRate, sound, samplingRate);
    QTEST(heard.outcome, "outcome");
    QCOMPARE(heard.isFollowedByMore, false);
    QCOMPARE(heard.samplesMissing > 0, heard.outcome != Outcome::Complete);
}

void TestReliability::wholeLinesAreRecognised_data() {
    const auto row = columns<QByteArray, bool>("file", "isWhole");
    const QByteArray first = "target.wav\t1\t640\r\n";
    const QByteArray second = "target.wav\t2\t10\r\n";
    row("header alone", header, true);
    row("one response", header + first, true);
    row("two responses", header + first + second, true);
    row("nothing", "", false);
    row("cut header", header.chopped(2), false);
    row("header without its carriage return", QByteArray(header).replace('\r', "") + first, false);
    row("no header", first + second, false);
    row("cut in the frequency", header + first + "target.wav\t2\t1", false);
    row("cut before the line feed", header + first.chopped(1), false);
    row("cut in the name", header + first + "tar", false);
    row("zeros after it", header + first + QByteArray(3, '\0'), false);
    row("begins with the second", header + second, false);
    row("empty line", header + "\r\n" + first, false);
    row("other target", header + "target2.wav\t1\t640\r\n", false);
    row("frequency below the minimum", header + "target.wav\t1\t9\r\n", false);
    row("no frequency", header + "target.wav\t1\t\r\n", false);
    row("a field too few", header + "target.wav\t1\r\n", false);
    row("a field too many", header + "target.wav\t1\t640\t1\r\n", false);
    row("line without its carriage return", header + "target.wav\t1\t640\n" + second, false);
    row("the same twice", header + first + first, false);
    row("one is missing", header + first + "target.wav\t3\t10\r\n", false);
    row("two lines in one", header + first + "target.wav\t2\ttarget.wav\t3\t10\r\n", false);
}

void TestReliability::wholeLinesAreRecognised() {
    QFETCH(QByteArray, file);
    QTEST(hasWholeLines(file), "isWhole");
}

void TestReliability::responsesAreFoundInFiles_data() {
    const auto row = columns<QByteArray, bool>("lines", "isHeld");
    // The response is the second, of 640 Hz.
    row("last line", "target.wav\t1\t10\r\ntarget.wav\t2\t640\r\n", true);
    row("line in between", "target.wav\t2\t640\r\ntarget.wav\t3\t10\r\n", true);
    row("nothing", "", false);
    row("other frequency", "target.wav\t2\t641\r\n", false);
    row("longer frequency", "target.wav\t2\t6400\r\n", false);
    row("other number", "target.wav\t1\t640\r\n", false);
    row("longer number", "target.wav\t22\t640\r\n", false);
    row("other target", "a target.wav\t2\t640\r\n", false);
    row("cut line", "target.wav\t2\t640\r", false);
}

void TestReliability::responsesAreFoundInFiles() {
    QFETCH(QByteArray, lines);
    QTEST(holds(header + lines, {2, "640"}), "isHeld");
}

void TestReliability::growthOfMemoryIsTheSlopeOfTheBestLine_data() {
    const auto row = columns<QVector<double>, int, double>("mebibytes", "firstIndex", "growth");
    row("none", {7, 7, 7, 7}, 0, 0);
    row("as a line", {1, 3, 5, 7, 9}, 0, 2);
    row("two", {1, 4}, 0, 3);
    row("shrinking", {9, 8, 7}, 0, -1);
    row("after the first ones", {100, 50, 1, 3, 5, 7}, 2, 2);
    // Around its middle: (-1.5 * 0 - 0.5 * 2 + 0.5 * 1 + 1.5 * 5) / (2.25 + 0.25 + 0.25 + 2.25).
    row("uneven", {0, 2, 1, 5}, 0, 1.4);
}

void TestReliability::growthOfMemoryIsTheSlopeOfTheBestLine() {
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

void TestReliability::medianAndMaximumOfValues_data() {
    const auto row = columns<QVector<double>, QString>("values", "text");
    row("one", {3}, "3.00 / 3.00");
    row("odd count", {9, 1, 2}, "2.00 / 9.00");
    row("even count", {4, 1, 2, 0.5}, "1.50 / 4.00");
}

void TestReliability::medianAndMaximumOfValues() {
    QFETCH(QVector<double>, values);
    QTEST(medianAndMaximum(values).text(), "text");
}

QTEST_APPLESS_MAIN(TestReliability)
#include "test_reliability.moc"
