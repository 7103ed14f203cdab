// The listener's requests: storing, generating, scheduling, logging and reporting.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>

#include <cmath>

namespace {

/// Sound and silence of these tests last 20 ms each: a sound that has not started after this time
/// will not start.
constexpr int longAfterTheSoundMs = 150;

} // namespace

void TestSessionResponses::aSinusoidIsMatchedGeneratedAndScheduled() {
    preparePractice();
    go();
    testsupport::InspectedMainWindow& window = fixture->window();
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    const int linesBefore = fixture->log.all().size();
    window.updateMainwindow(4, 640);
    QCOMPARE(fixture->log.all().mid(linesBefore), QStringList{QStringLiteral("response: 4")});
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
    preparePractice();
    go();
    testsupport::InspectedMainWindow& window = fixture->window();
    QVector<int> positions;
    connect(window.axisXTrend, &QtCharts::QValueAxis::rangeChanged, this,
            [&] { positions.append(window.sequencePosition); });
    window.updateMainwindow(4, 640);
    QVERIFY(!positions.isEmpty());
    QCOMPARE(positions, QVector<int>(positions.size(), 1));
    QCOMPARE(window.sequencePosition, 0);
}

void TestSessionResponses::theTargetIsScheduledAndNothingMatched() {
    preparePractice();
    go();
    testsupport::InspectedMainWindow& window = fixture->window();
    window.playSinusoidNext = true;
    window.data.records[0].frequencyMatched = 321;
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    const int linesBefore = fixture->log.all().size();
    window.updateMainwindow(2, 640);
    QCOMPARE(fixture->log.all().mid(linesBefore), QStringList{QStringLiteral("response: 2")});
    QVERIFY(!window.playSinusoidNext);
    QCOMPARE(window.data.frequencyCurrent, 500);
    QCOMPARE(window.data.records[0].frequencyMatched, 321.0);
    QVERIFY(window.trendFrequencies.isEmpty());
    QVERIFY(window.sinusoidSamples.isEmpty());
    QCOMPARE(window.sequencePosition, 0);
    QTRY_COMPARE(sounds.count(), 2);
    QCOMPARE(window.data.nResponses, 0);
    QCOMPARE(window.lineEditFrequencyMatched->text(), QStringLiteral("not started yet"));
}

void TestSessionResponses::theStartIsOnlyLogged() {
    preparePractice();
    go();
    const QStringList before = state();
    const int linesBefore = fixture->log.all().size();
    QSignalSpy sounds(&fixture->window(), &MainWindow::soundPlaying);
    fixture->window().updateMainwindow(0, 640);
    QCOMPARE(fixture->log.all().mid(linesBefore), QStringList{QStringLiteral("Test just started")});
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(state(), before);
}

void TestSessionResponses::anInvalidResponseIsReportedAndChangesNothing_data() {
    QTest::addColumn<int>("response");
    for (const int response : {-1, 1, 3, 5, 42})
        QTest::addRow("%d", response) << response;
}

void TestSessionResponses::anInvalidResponseIsReportedAndChangesNothing() {
    QFETCH(int, response);
    preparePractice();
    go();
    testsupport::InspectedMainWindow& window = fixture->window();
    window.soundsPlayed = 1;
    const QStringList before = state();
    const int linesBefore = fixture->log.all().size();
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    QVariantList facts;
    fixture->dialogs.expect(QStringLiteral("Warning"), [&](QWidget* dialog) {
        const auto* box = qobject_cast<QMessageBox*>(dialog);
        facts = {box->text(), int(box->standardButtons()), box->icon(),
                 box->parentWidget() == nullptr, window.soundsPlayed};
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
    window.updateMainwindow(response, 640);
    QCOMPARE(facts, QVariantList(
                        {"Invalid response", int(QMessageBox::Ok), QMessageBox::Warning, true, 0}));
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(state(), before);
    QCOMPARE(fixture->log.all().size(), linesBefore);
}

void TestSessionResponses::soundsPlayedIsResetByEveryResponse_data() {
    QTest::addColumn<int>("response");
    QTest::newRow("start") << 0;
    QTest::newRow("target") << 2;
    QTest::newRow("sinusoid") << 4;
}

void TestSessionResponses::soundsPlayedIsResetByEveryResponse() {
    QFETCH(int, response);
    preparePractice();
    go();
    fixture->window().soundsPlayed = 1;
    fixture->window().updateMainwindow(response, 640);
    QCOMPARE(fixture->window().soundsPlayed, 0);
}

void TestSessionResponses::theMatchIsAlwaysInTheFirstRecord() {
    preparePractice();
    testsupport::InspectedMainWindow& window = fixture->window();
    go();
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
    QCOMPARE(window.lineEditFrequencyMatched->text(), QStringLiteral("500"));
}

void TestSessionResponses::withoutARecordThereIsNoMatch() {
    testsupport::InspectedMainWindow& window = fixture->window();
    QVERIFY(window.data.records.isEmpty());
    window.updateMainwindow(4, 640);
    window.updateMainwindow(2, 0);
    window.updateFrequencyMatched();
    QVERIFY(window.data.records.isEmpty());
    QVERIFY(window.trendFrequencies.isEmpty());
    QCOMPARE(window.lineEditFrequencyMatched->text(), QStringLiteral("not started yet"));
    QCOMPARE(window.data.frequencyCurrent, 640);
}

void TestSessionResponses::requestAtALaterPositionIsAnswered() {
    preparePractice();
    go();
    testsupport::InspectedMainWindow& window = fixture->window();
    QSignalSpy sounds(&window, &MainWindow::soundPlaying);
    // After the end of the sequence nothing is presented, but the next request is answered again.
    window.sequencePosition = window.trialSequence.size();
    window.updateMainwindow(2, 0);
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QCOMPARE(window.sequencePosition, 0);
    window.updateMainwindow(2, 0);
    QTRY_COMPARE(sounds.count(), 2);
}
