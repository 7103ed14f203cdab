// The listener's requests: what is stored, generated, scheduled, logged and reported.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SessionDriver.h"
#include "test_session.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <QtTest>

#include <cmath>

using testsupport::find;

namespace {

/// The sound of these tests lasts 20 ms, and so does the silence: when nothing has started after
/// this time, nothing will.
constexpr int longAfterTheSoundMs = 150;

QString matchShown(MainWindow& window) {
    return find<QLineEdit>(window, "lineEditFrequencyMatched")->text();
}

/// What a warning box was seen to be.
struct SeenWarning {
    QString text;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool hasParent = true;
    int soundsPlayedMeanwhile = -1;
};

/// Answers the next warning box and notes what it is.
void answerWarning(SessionBench& bench, SeenWarning& seen) {
    bench.dialogs.expect(QStringLiteral("Warning"), [&](QWidget* dialog) {
        const auto* box = qobject_cast<QMessageBox*>(dialog);
        seen = {box->text(), box->standardButtons(), box->icon(), box->parentWidget() != nullptr,
                bench.window.soundsPlayed};
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
}

} // namespace

void TestSessionResponses::aSinusoidIsMatchedGeneratedAndScheduled() {
    bench->preparePractice();
    bench->go();
    ObservedMainWindow& window = bench->window;
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    const int linesBefore = bench->logged().size();
    window.updateMainwindow(4, 640);
    QCOMPARE(bench->logged().mid(linesBefore), QStringList{QStringLiteral("response: 4")});
    QVERIFY(window.playSinusoidNext);
    QCOMPARE(window.data.frequencyCurrent, 640);
    QCOMPARE(window.data.records[0].frequencyMatched, 640.0);
    QCOMPARE(window.sinusoidSamples.size(), 800);
    for (int i = 0; i < 800; ++i)
        QVERIFY(std::abs(window.sinusoidSamples[i] - std::sin(2 * M_PI * 640 * i / 40000)) < 1e-12);
    QCOMPARE(window.trendTrials, QVector<double>{0});
    QCOMPARE(window.trendFrequencies, QVector<double>{640});
    QCOMPARE(window.seriesTrend->at(0), QPointF(0, 640));
    QCOMPARE(window.sequencePosition, 0);
    QVERIFY(sounds.isEmpty());
    QTRY_COMPARE(sounds.count(), 2);
    QCOMPARE(sounds.at(0).at(0).toInt(), 1);
    QCOMPARE(sounds.at(1).at(0).toInt(), -1);
    QCOMPARE(window.data.nResponses, 1);
}

void TestSessionResponses::aSinusoidCountsAsATrialWhileTheTrendIsUpdated() {
    bench->preparePractice();
    bench->go();
    ObservedMainWindow& window = bench->window;
    QVector<int> positions;
    connect(window.axisXTrend, &QtCharts::QValueAxis::rangeChanged, this,
            [&] { positions.append(window.sequencePosition); });
    window.updateMainwindow(4, 640);
    QVERIFY(!positions.isEmpty());
    QCOMPARE(positions, QVector<int>(positions.size(), 1));
    QCOMPARE(window.sequencePosition, 0);
}

void TestSessionResponses::theTargetIsScheduledAndNothingMatched() {
    bench->preparePractice();
    bench->go();
    ObservedMainWindow& window = bench->window;
    window.playSinusoidNext = true;
    window.data.records[0].frequencyMatched = 321;
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    const int linesBefore = bench->logged().size();
    window.updateMainwindow(2, 640);
    QCOMPARE(bench->logged().mid(linesBefore), QStringList{QStringLiteral("response: 2")});
    QVERIFY(!window.playSinusoidNext);
    QCOMPARE(window.data.frequencyCurrent, 500);
    QCOMPARE(window.data.records[0].frequencyMatched, 321.0);
    QVERIFY(window.trendFrequencies.isEmpty());
    QVERIFY(window.sinusoidSamples.isEmpty());
    QCOMPARE(window.sequencePosition, 0);
    QTRY_COMPARE(sounds.count(), 2);
    QCOMPARE(window.data.nResponses, 0);
    QCOMPARE(matchShown(window), QStringLiteral("not started yet"));
}

void TestSessionResponses::theStartIsOnlyLogged() {
    bench->preparePractice();
    bench->go();
    const QStringList before = bench->state();
    const int linesBefore = bench->logged().size();
    QSignalSpy sounds(&bench->window, &MainWindow::soundPlaying);
    bench->window.updateMainwindow(0, 640);
    QCOMPARE(bench->logged().mid(linesBefore), QStringList{QStringLiteral("Test just started")});
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(bench->state(), before);
}

void TestSessionResponses::anInvalidResponseIsReportedAndChangesNothing_data() {
    QTest::addColumn<int>("response");
    for (const int response : {-1, 1, 3, 5, 42})
        QTest::addRow("%d", response) << response;
}

void TestSessionResponses::anInvalidResponseIsReportedAndChangesNothing() {
    QFETCH(int, response);
    bench->preparePractice();
    bench->go();
    ObservedMainWindow& window = bench->window;
    window.soundsPlayed = 1;
    const QStringList before = bench->state();
    const int linesBefore = bench->logged().size();
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    SeenWarning seen;
    answerWarning(*bench, seen);
    window.updateMainwindow(response, 640);
    QCOMPARE(seen.text, QStringLiteral("Invalid response"));
    QCOMPARE(seen.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(seen.icon, QMessageBox::Warning);
    QVERIFY(!seen.hasParent);
    QCOMPARE(seen.soundsPlayedMeanwhile, 0);
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(bench->state(), before);
    QCOMPARE(bench->logged().size(), linesBefore);
}

void TestSessionResponses::soundsPlayedIsResetByEveryResponse_data() {
    QTest::addColumn<int>("response");
    QTest::newRow("start") << 0;
    QTest::newRow("target") << 2;
    QTest::newRow("sinusoid") << 4;
}

void TestSessionResponses::soundsPlayedIsResetByEveryResponse() {
    QFETCH(int, response);
    bench->preparePractice();
    bench->go();
    bench->window.soundsPlayed = 1;
    bench->window.updateMainwindow(response, 640);
    QCOMPARE(bench->window.soundsPlayed, 0);
}

void TestSessionResponses::thePauseIsSoundAndSilence_data() {
    QTest::addColumn<int>("response");
    QTest::addColumn<QString>("silence");
    QTest::addColumn<int>("pauseMs");
    QTest::newRow("target") << 2 << "100.00" << 120;
    QTest::newRow("sinusoid") << 4 << "100.00" << 120;
    QTest::newRow("no silence") << 2 << "0.00" << 20;
}

void TestSessionResponses::thePauseIsSoundAndSilence() {
    QFETCH(int, response);
    QFETCH(QString, silence);
    QFETCH(int, pauseMs);
    bench->preparePractice();
    find<QLineEdit>(bench->window, "lineEditSilentInterval")->setText(silence);
    bench->go();
    QSignalSpy sounds(&bench->window, &MainWindow::soundPlaying);
    QElapsedTimer clock;
    qint64 elapsed = 0;
    connect(&bench->window, &MainWindow::soundPlaying, this, [&](int index) {
        if (index == 1)
            elapsed = clock.elapsed();
    });
    clock.start();
    bench->window.updateMainwindow(response, 640);
    QTRY_COMPARE(sounds.count(), 2);
    QVERIFY2(elapsed >= pauseMs, qPrintable(QString::number(elapsed)));
}

void TestSessionResponses::theMatchIsAlwaysInTheFirstRecord() {
    bench->preparePractice();
    ObservedMainWindow& window = bench->window;
    bench->go();
    window.data.records.resize(3);
    window.nFiles = 3;
    window.trialSequence = {2, 0, 1};
    window.currentFileIndex = 2;
    window.updateMainwindow(4, 640);
    window.updateMainwindow(4, 500);
    QCOMPARE(window.data.records[0].frequencyMatched, 500.0);
    QCOMPARE(window.data.records[1].frequencyMatched, 0.0);
    QCOMPARE(window.data.records[2].frequencyMatched, 0.0);
    QCOMPARE(window.trendFrequencies, (QVector<double>{640, 500}));
    window.updateFrequencyMatched();
    QCOMPARE(matchShown(window), QStringLiteral("500"));
}

void TestSessionResponses::noRecordNoMatch() {
    ObservedMainWindow& window = bench->window;
    QVERIFY(window.data.records.isEmpty());
    window.updateMainwindow(4, 640);
    window.updateMainwindow(2, 0);
    window.updateFrequencyMatched();
    QVERIFY(window.data.records.isEmpty());
    QVERIFY(window.trendFrequencies.isEmpty());
    QCOMPARE(matchShown(window), QStringLiteral("not started yet"));
    QCOMPARE(window.data.frequencyCurrent, 640);
}

void TestSessionResponses::noTrialsNoPresentation_data() {
    QTest::addColumn<int>("response");
    QTest::newRow("target") << 2;
    QTest::newRow("sinusoid") << 4;
}

void TestSessionResponses::noTrialsNoPresentation() {
    QFETCH(int, response);
    bench->window.nRepetitionsPractice = 0;
    bench->preparePractice();
    QVERIFY(bench->window.trialSequence.isEmpty());
    QVERIFY(find<QPushButton>(bench->window, "pushButtonGo")->isEnabled());
    bench->go();
    QSignalSpy sounds(&bench->window, &MainWindow::soundPlaying);
    bench->window.updateMainwindow(response, 640);
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(bench->window.trendFrequencies.size(), response == 4 ? 1 : 0);
    QCOMPARE(bench->window.sequencePosition, 0);
}

void TestSessionResponses::aLaterPositionIsAnsweredToo() {
    bench->preparePractice();
    bench->go();
    ObservedMainWindow& window = bench->window;
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    // Behind the sequence nothing is presented, but the next request is answered again.
    window.sequencePosition = window.trialSequence.size();
    window.updateMainwindow(2, 0);
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(window.sequencePosition, 0);
    window.updateMainwindow(2, 0);
    QTRY_COMPARE(sounds.count(), 2);
}

void TestSessionResponses::theFieldShowsSixDigits_data() {
    QTest::addColumn<double>("frequency");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 640.0 << "640";
    QTest::newRow("round") << 1000.0 << "1000";
    QTest::newRow("fraction") << 523.25 << "523.25";
    QTest::newRow("periodic") << 1.0 / 3 << "0.333333";
    QTest::newRow("seven digits") << 1234567.0 << "1.23457e+06";
    QTest::newRow("none") << 0.0 << "0";
}

void TestSessionResponses::theFieldShowsSixDigits() {
    QFETCH(double, frequency);
    bench->window.data.records.resize(2);
    bench->window.data.records[0].frequencyMatched = frequency;
    bench->window.data.records[1].frequencyMatched = 99;
    bench->window.updateFrequencyMatched();
    QTEST(matchShown(bench->window), "text");
}

void TestSessionResponses::theFieldChangesWhenTheSoundStarts() {
    bench->preparePractice();
    bench->go();
    QSignalSpy sounds(&bench->window, &MainWindow::soundPlaying);
    QString shownAtStart;
    connect(&bench->window, &MainWindow::soundPlaying, this, [&](int index) {
        if (index == 1)
            shownAtStart = matchShown(bench->window);
    });
    bench->window.updateMainwindow(4, 640);
    QCOMPARE(matchShown(bench->window), QStringLiteral("not started yet"));
    QTRY_COMPARE(sounds.count(), 2);
    QCOMPARE(shownAtStart, QStringLiteral("640"));
}
