// A session whose sound fails, and how it has to end.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback_failures.h"

#include "support/WavBytes.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

FailureBench::FailureBench() {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the main window does not appear");
}

void FailureBench::prepareAndGo(int samples) {
    const QString path = folder.filePath("target.wav");
    QVERIFY(testsupport::writeBytes(path,
                                    testsupport::wavWithSamples({}, QVector<int>(samples, 12345))));
    session.prepare(testsupport::SessionDriver::Session::Practice, path);
    const double duration = text("lineEditSoundDuration").toDouble();
    testsupport::find<QLineEdit>(window, "lineEditSilentInterval")
        ->setText(QString::number(10 - duration, 'f', 2));
    QVERIFY(session.go() != nullptr);
    session.beReady();
}

void FailureBench::endAndVerify(const QVector<int>& frequencies) {
    const int fileNumber = testsupport::find<QSpinBox>(window, "spinBoxFileNumber")->value();
    const QString results = folder.filePath("results.txt");
    session.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    session.dialogs.saveAs(results);
    session.listener()->close();
    QVERIFY(!session.listener()->isVisible());

    QByteArray lines = "filename\tnTrials\tfrequency matched (Hz)\r\n";
    for (int i = 0; i < frequencies.size(); ++i)
        lines += "target.wav\t" + QByteArray::number(i + 1) + '\t' +
                 QByteArray::number(frequencies[i]) + "\r\n";
    QCOMPARE(testsupport::readBytes(results), lines);
    QVERIFY(window.audioOutput == nullptr);
    QVERIFY(window.audioBuffer == nullptr);
    QVERIFY(window.audioBytes == nullptr);
    QVERIFY(!soundsTold().contains(-1));
    QVERIFY(window.isEnabled());
    QVERIFY(testsupport::find<QPushButton>(window, "pushButtonPractice")->isEnabled());
    QVERIFY(testsupport::find<QPushButton>(window, "pushButtonExperiment")->isEnabled());
    QVERIFY(!testsupport::find<QPushButton>(window, "pushButtonGo")->isEnabled());
    QCOMPARE(testsupport::find<QSpinBox>(window, "spinBoxFileNumber")->value(), fileNumber + 1);
    QCOMPARE(session.dialogs.takeComplaints(), QStringList());
}

QVector<int> FailureBench::soundsTold() const {
    QVector<int> told;
    for (const QList<QVariant>& arguments : sounds)
        told.append(arguments.first().toInt());
    return told;
}

QString FailureBench::text(const char* lineEditName) {
    return testsupport::find<QLineEdit>(window, lineEditName)->text();
}
