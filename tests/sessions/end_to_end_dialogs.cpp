// Sessions whose dialogs are cancelled, whose results cannot be written, and session 100.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "subject/SubjectWindow.h"
#include "support/FileBytes.h"
#include "support/StreamCapture.h"
#include "test_end_to_end.h"

#include <QCheckBox>
#include <QDir>
#include <QSpinBox>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QLineSeries>

#include <iostream>

using testsupport::find;

namespace {

constexpr auto practice = SessionRoom::Session::Practice;

QString warning() {
    return QStringLiteral("Warning");
}

/// A session with one match, up to "Done".
bool matchOnce(SessionRoom& room, int frequency) {
    return room.start() && room.playTarget() && room.playSinusoid(frequency);
}

/// "Done", confirmed; what answers the dialog for the results is laid ready by the caller.
void pressDone(SessionRoom& room) {
    testsupport::click(*room.driver.listener(), "pushButtonDone");
}

void confirmClosing(SessionRoom& room) {
    room.driver.dialogs.click(QStringLiteral("Confirmation MessageBox"), QMessageBox::Yes);
}

/// Types a number into the file number's field as a person does.
void typeFileNumber(SessionRoom& room, const QString& number) {
    auto* spinBox = find<QSpinBox>(room.window, "spinBoxFileNumber");
    spinBox->setFocus();
    spinBox->selectAll();
    QTest::keyClicks(spinBox, number);
    QTest::keyClick(spinBox, Qt::Key_Tab);
}

QStringList shownOf(SessionRoom& room) {
    QStringList shown;
    for (const char* field : {"lineEditWavFilePath", "lineEditWavFileName", "lineEditSoundDuration",
                              "lineEditFrequencyMatched"})
        shown.append(room.textOf(field));
    for (const char* view : {"chartViewWav", "chartViewFFT", "chartViewTrend"}) {
        const auto* chart = find<QtCharts::QChartView>(room.window, view)->chart();
        const auto* series = qobject_cast<QtCharts::QLineSeries*>(chart->series().first());
        for (const QPointF& point : series->pointsVector())
            shown.append(QStringLiteral("%1 %2").arg(point.x()).arg(point.y()));
    }
    return shown;
}

} // namespace

void TestSessionDialogs::aCancelledTargetKeepsWhatIsShown() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(matchOnce(*room, 640));
    room->finish();
    const QStringList before = shownOf(*room);
    for (const char* button : {"pushButtonExperiment", "pushButtonPractice"}) {
        const testsupport::StreamCapture errors(std::cerr);
        room->driver.dialogs.cancelTarget();
        testsupport::click(room->window, button);
        QVERIFY(QString::fromStdString(errors.text()).startsWith("Unable to open WAV file: "));
        QCOMPARE(shownOf(*room), before);
        QVERIFY(!room->isEnabled("pushButtonGo"));
    }
    // A target chosen afterwards makes a session as ever.
    room->prepare(practice, room->target);
    QVERIFY(matchOnce(*room, 523));
    QCOMPARE(testsupport::readBytes(room->finish()), resultsOf("tone.wav", {523}));
    QCOMPARE(room->differenceHeard(), QString());
}

void TestSessionDialogs::aCancelledSaveIsReportedAndTheNumberAdvances() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(matchOnce(*room, 640));
    confirmClosing(*room);
    room->driver.dialogs.cancelSaving();
    room->expectWarning(QStringLiteral("QFSFileEngine::open: No file name specified"));
    room->driver.dialogs.click(warning(), QMessageBox::Ok,
                               QStringLiteral("could not open file for writing \r\n"));
    pressDone(*room);
    QCOMPARE(room->fileNumber(), 2);
    QVERIFY(room->window.isEnabled());
    QCOMPARE(QDir(room->folder.path()).entryList(QDir::Files), QStringList("tone.wav"));
}

void TestSessionDialogs::aMissingFolderIsReportedAndNothingWritten() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(matchOnce(*room, 640));
    const QString results = room->pathOf(QStringLiteral("missing/results.txt"));
    confirmClosing(*room);
    room->driver.dialogs.saveAs(results);
    room->driver.dialogs.click(warning(), QMessageBox::Ok,
                               QStringLiteral("could not open file for writing \r\n") + results +
                                   QStringLiteral("results.txt"));
    pressDone(*room);
    // A folder now stands where the file should be: the program's own way.
    QVERIFY(QFileInfo(results).isDir());
    QVERIFY(QDir(results).isEmpty());
    QCOMPARE(room->fileNumber(), 2);
    QVERIFY(room->window.isEnabled());
}

void TestSessionDialogs::anExistingFileIsReplacedWithoutAQuestion() {
    const QString results = room->pathOf(QStringLiteral("SUB001_practice001.txt"));
    QVERIFY(testsupport::writeBytes(results, QByteArray(1000, 'x')));
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(matchOnce(*room, 640));
    QCOMPARE(room->finish(), results);
    QCOMPARE(testsupport::readBytes(results), resultsOf("tone.wav", {640}));
}

void TestSessionDialogs::nothingIsAskedWhenNothingIsToBeSaved() {
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QTest::mouseClick(find<QCheckBox>(room->window, "checkBoxSaveData"), Qt::LeftButton, {},
                      QPoint(8, find<QCheckBox>(room->window, "checkBoxSaveData")->height() / 2));
    QVERIFY(matchOnce(*room, 640));
    room->driver.finishWithoutSaving();
    QCOMPARE(QDir(room->folder.path()).entryList(QDir::Files), QStringList("tone.wav"));
    QCOMPARE(room->fileNumber(), 2);
    QVERIFY(room->window.isEnabled());
}

void TestSessionDialogs::theNextSaveStartsInTheFolderShown() {
    QVERIFY(QDir(room->folder.path()).mkdir(QStringLiteral("elsewhere")));
    room->prepare(practice, room->tone(QStringLiteral("tone.wav")));
    QVERIFY(matchOnce(*room, 640));
    room->driver.finish(room->pathOf(QStringLiteral("elsewhere/first.txt")));
    QCOMPARE(room->textOf("lineEditOutputFilePath"), room->folder.path());

    room->prepare(practice, room->target);
    QVERIFY(matchOnce(*room, 523));
    QCOMPARE(testsupport::readBytes(room->finish()), resultsOf("tone.wav", {523}));
    QCOMPARE(room->driver.dialogs.seen().last(),
             room->pathOf(QStringLiteral("SUB001_practice002.txt")));
}

void TestSessionDialogs::session100FollowsSession99() {
    typeFileNumber(*room, QStringLiteral("99"));
    const Target target = room->tone(QStringLiteral("tone.wav"));
    QStringList names;
    for (const int frequency : {640, 523, 700}) {
        room->prepare(practice, target);
        QVERIFY(matchOnce(*room, frequency));
        names.append(QFileInfo(room->finish()).fileName());
    }
    QCOMPARE(names, (QStringList{"SUB001_practice099.txt", "SUB001_practice100.txt",
                                 "SUB001_practice101.txt"}));
    QCOMPARE(testsupport::readBytes(room->pathOf(names[0])), resultsOf("tone.wav", {640}));
    QCOMPARE(testsupport::readBytes(room->pathOf(names[1])), resultsOf("tone.wav", {523}));

    typeFileNumber(*room, QStringLiteral("100"));
    QCOMPARE(room->textOf("lineEditOutputFileName"), QStringLiteral("SUB001_practice100.txt"));
    QCOMPARE(room->fileNumber(), 100);
}
