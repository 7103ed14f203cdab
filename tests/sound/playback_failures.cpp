// A session whose sound fails, and how it has to end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "session/ResponseJournal.h"
#include "support/CloseButton.h"
#include "support/FileBytes.h"
#include "support/ProcessorTime.h"
#include "support/WavBytes.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

namespace {

QByteArray resultsWith(const QVector<int>& frequencies) {
    QByteArray lines = "filename\tnTrials\tfrequency matched (Hz)\r\n";
    for (int i = 0; i < frequencies.size(); ++i)
        lines += "target.wav\t" + QByteArray::number(i + 1) + '\t' +
                 QByteArray::number(frequencies[i]) + "\r\n";
    return lines;
}

/// What the journals of all sessions hold.
QList<QByteArray> journals() {
    return testsupport::contentsOf(journalFolder());
}

} // namespace

testsupport::SoundServer& server() {
    static testsupport::SoundServer theServer;
    return theServer;
}

FailureBench::FailureBench() {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the main window does not appear");
}

bool FailureBench::prepareAndGo(int samples) {
    const QString path = folder.filePath("target.wav");
    if (!testsupport::writeSteadyTarget(path, samples))
        return false;
    session.prepare(testsupport::SessionDriver::Session::Practice, path);
    constexpr double pauseMs = 10;
    session.setPause(pauseMs);
    if (session.go() == nullptr)
        return false;
    session.beReady();
    return true;
}

void FailureBench::request(int frequency) {
    sounds.clear();
    emit session.listener()->subjectResponded(4, frequency);
    QTRY_VERIFY(!sounds.isEmpty());
    QCOMPARE(soundsTold().first(), 1);
}

void FailureBench::verifyJournal(const QVector<int>& frequencies) const {
    QCOMPARE(journals(), QList<QByteArray>{resultsWith(frequencies)});
}

void FailureBench::endAndVerify(const QVector<int>& frequencies) {
    const int fileNumber = testsupport::find<QSpinBox>(window, "spinBoxFileNumber")->value();
    const QString results = folder.filePath("results.txt");
    session.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    session.dialogs.saveAs(results);
    QVERIFY(testsupport::pressCloseButton(*session.listener()));
    QTRY_VERIFY(window.isEnabled());
    QVERIFY(!session.listener()->isVisible());
    QCOMPARE(testsupport::readBytes(results), resultsWith(frequencies));
    QCOMPARE(journals(), QList<QByteArray>());
    QVERIFY(window.audioOutput == nullptr);
    QVERIFY(window.audioBuffer == nullptr);
    QVERIFY(window.audioBytes == nullptr);
    QVERIFY(!soundsTold().contains(-1));
    QVERIFY(testsupport::find<QPushButton>(window, "pushButtonPractice")->isEnabled());
    QVERIFY(testsupport::find<QPushButton>(window, "pushButtonExperiment")->isEnabled());
    QVERIFY(!testsupport::find<QPushButton>(window, "pushButtonGo")->isEnabled());
    QCOMPARE(testsupport::find<QSpinBox>(window, "spinBoxFileNumber")->value(), fileNumber + 1);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
}

bool FailureBench::isAtRest() const {
    constexpr int watchedMs = 500;
    constexpr double atRest = 0.25;
    const double share = testsupport::processorShareWhileWaiting(watchedMs);
    if (share >= atRest)
        qWarning("the program takes %g of a processor", share);
    return share < atRest;
}

QVector<int> FailureBench::soundsTold() const {
    return testsupport::soundsTold(sounds);
}

QString FailureBench::text(const char* lineEditName) {
    return testsupport::find<QLineEdit>(window, lineEditName)->text();
}
