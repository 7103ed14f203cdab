// The end of a session: saving, the next file number, and nothing that sounds afterwards.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FileBytes.h"
#include "support/SessionDriver.h"
#include "test_session.h"

#include <QAudioOutput>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

#include <limits>

using testsupport::find;

namespace {

constexpr int longAfterTheSoundMs = 150;

/// A session that has been started and that will save into the bench's folder.
SubjectWindow* startSaving(SessionBench& bench) {
    bench.preparePractice();
    find<QLineEdit>(bench.window, "lineEditOutputFilePath")->setText(bench.folder.path());
    return bench.go();
}

void setSaving(SessionBench& bench, bool isSaving) {
    find<QCheckBox>(bench.window, "checkBoxSaveData")->setChecked(isSaving);
}

QSpinBox* fileNumber(SessionBench& bench) {
    return find<QSpinBox>(bench.window, "spinBoxFileNumber");
}

bool isEnabled(SessionBench& bench, const char* buttonName) {
    return find<QPushButton>(bench.window, buttonName)->isEnabled();
}

} // namespace

void TestSessionEnd::theFileNumberAdvances_data() {
    QTest::addColumn<bool>("isSaving");
    QTest::newRow("saved") << true;
    QTest::newRow("not saved") << false;
}

void TestSessionEnd::theFileNumberAdvances() {
    QFETCH(bool, isSaving);
    setSaving(*bench, isSaving);
    SubjectWindow* listener = startSaving(*bench);
    if (isSaving)
        bench->dialogs.saveAsProposed();
    emit listener->subjectWindowClosed();
    QCOMPARE(bench->window.data.fileNumber, 2);
    QCOMPARE(fileNumber(*bench)->value(), 2);
    QCOMPARE(bench->window.data.outputFileName, QStringLiteral("SUB001_practice002.txt"));
    const QString results = bench->folder.filePath(QStringLiteral("SUB001_practice001.txt"));
    QCOMPARE(QFile::exists(results), isSaving);
}

void TestSessionEnd::theMainWindowIsFreedWithoutGo() {
    setSaving(*bench, false);
    SubjectWindow* listener = startSaving(*bench);
    find<QPushButton>(bench->window, "pushButtonPractice")->setEnabled(false);
    emit listener->subjectWindowClosed();
    QVERIFY(bench->window.isEnabled());
    QVERIFY(isEnabled(*bench, "pushButtonPractice"));
    QVERIFY(isEnabled(*bench, "pushButtonExperiment"));
    QVERIFY(!isEnabled(*bench, "pushButtonGo"));
}

void TestSessionEnd::finishItSavesAndAdvancesOnly() {
    startSaving(*bench);
    const auto buttons = [this] {
        return bench->state().filter(QRegularExpression("^push|^wind"));
    };
    const QStringList before = buttons();
    bench->dialogs.saveAsProposed();
    bench->window.finishIt();
    QCOMPARE(fileNumber(*bench)->value(), 2);
    QVERIFY(QFile::exists(bench->folder.filePath(QStringLiteral("SUB001_practice001.txt"))));
    QVERIFY(!bench->window.isEnabled());
    QCOMPARE(buttons(), before);

    bench->window.data.saveDataToFile = false;
    bench->window.finishIt();
    QCOMPARE(fileNumber(*bench)->value(), 3);
}

void TestSessionEnd::resultsAreSavedBeforeTheNumberAdvances() {
    SubjectWindow* listener = startSaving(*bench);
    emit listener->subjectResponded(4, 640);
    emit listener->subjectResponded(4, 523);
    const QString results = bench->folder.filePath(QStringLiteral("mine.txt"));
    bench->dialogs.saveAs(results);
    bool wasSavedBefore = false;
    connect(fileNumber(*bench), QOverload<int>::of(&QSpinBox::valueChanged), this,
            [&] { wasSavedBefore = QFile::exists(results); });
    emit listener->subjectWindowClosed();
    QVERIFY(wasSavedBefore);
    QCOMPARE(testsupport::readBytes(results),
             QByteArray("filename\tnTrials\tfrequency matched (Hz)\r\n"
                        "target.wav\t1\t640\r\n"
                        "target.wav\t2\t523\r\n"));
    QVERIFY(bench->dialogs.seen().last().endsWith(QStringLiteral("/SUB001_practice001.txt")));
}

void TestSessionEnd::session99IsFollowedBySession100() {
    setSaving(*bench, false);
    fileNumber(*bench)->setValue(99);
    SubjectWindow* listener = startSaving(*bench);
    emit listener->subjectWindowClosed();
    QCOMPARE(fileNumber(*bench)->value(), 100);
    QCOMPARE(bench->window.data.outputFileName, QStringLiteral("SUB001_practice100.txt"));
}

void TestSessionEnd::theLargestFileNumberStillHasANext() {
    setSaving(*bench, false);
    constexpr int largest = std::numeric_limits<int>::max() - 1;
    QCOMPARE(fileNumber(*bench)->maximum(), largest);
    fileNumber(*bench)->setValue(largest);
    SubjectWindow* listener = startSaving(*bench);
    emit listener->subjectWindowClosed();
    QCOMPARE(bench->window.data.fileNumber, largest + 1);
    QCOMPARE(fileNumber(*bench)->value(), largest);
    // Even without reading the field again the number cannot overflow.
    bench->window.finishIt();
    QCOMPARE(bench->window.data.fileNumber, largest + 1);
    // The next session reads the field.
    startSaving(*bench);
    QCOMPARE(bench->window.data.fileNumber, largest);
}

void TestSessionEnd::aPendingPresentationIsCancelled_data() {
    QTest::addColumn<int>("response");
    QTest::newRow("target") << 2;
    QTest::newRow("sinusoid") << 4;
}

void TestSessionEnd::aPendingPresentationIsCancelled() {
    QFETCH(int, response);
    setSaving(*bench, false);
    SubjectWindow* listener = startSaving(*bench);
    QSignalSpy sounds(&bench->window, &MainWindow::soundPlaying);
    emit listener->subjectResponded(response, 640);
    emit listener->subjectWindowClosed();
    QVERIFY(!sounds.wait(longAfterTheSoundMs));
    QVERIFY(bench->window.audioOutput == nullptr);
    // The next session plays as ever.
    listener = startSaving(*bench);
    emit listener->subjectResponded(response, 640);
    QTRY_COMPARE(sounds.count(), 2);
}

void TestSessionEnd::aPlayingSoundIsReleasedSilently() {
    setSaving(*bench, false);
    bench->dialogs.chooseTarget(bench->target(QStringLiteral("second.wav"), 20000));
    bench->window.on_pushButtonPractice_clicked();
    SubjectWindow* listener = bench->go();
    QSignalSpy sounds(&bench->window, &MainWindow::soundPlaying);
    bench->window.playOneSound();
    QTRY_COMPARE(bench->window.audioOutput->state(), QAudio::ActiveState);
    QCOMPARE(sounds.takeFirst().at(0).toInt(), 1);
    emit listener->subjectWindowClosed();
    QVERIFY(bench->window.audioOutput == nullptr);
    QVERIFY(bench->window.audioBuffer == nullptr && bench->window.audioBytes == nullptr);
    QVERIFY(bench->window.findChildren<QAudioOutput*>().size() <= 1);
    QTRY_VERIFY(bench->window.findChildren<QAudioOutput*>().isEmpty());
    // Longer than the sound would have lasted.
    QVERIFY(!sounds.wait(700));
}

void TestSessionEnd::theMainWindowStaysOpenDuringASession() {
    setSaving(*bench, false);
    bench->window.show();
    SubjectWindow* listener = startSaving(*bench);
    QVERIFY(!bench->window.close());
    QVERIFY(bench->window.isVisible());
    emit listener->subjectWindowClosed();
    QVERIFY(bench->window.close());
    QVERIFY(!bench->window.isVisible());
}

void TestSessionEnd::disableAllComponentsDisablesTheWindow() {
    bench->window.disableAllComponents();
    QVERIFY(!bench->window.isEnabled());
    for (const auto* button : bench->window.findChildren<QPushButton*>())
        QVERIFY(!button->isEnabled());
}

void TestSessionEnd::doNothingDoesNothing() {
    bench->preparePractice();
    const QStringList before = bench->state();
    const int linesBefore = bench->logged().size();
    bench->window.doNothing();
    QCOMPARE(bench->state(), before);
    QCOMPARE(bench->logged().size(), linesBefore);
}
