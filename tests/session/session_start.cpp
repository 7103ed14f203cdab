// "Go": the listener's window, its connections and the frequencies that it is sent.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SessionDriver.h"
#include "test_session.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

using testsupport::find;

namespace {

/// The slots of an object that senders of one class are connected to, in the order of connection,
/// as the toolkit lists them on the log.
QStringList connectedSlots(const SessionBench& bench, const QObject& receiver,
                           const QString& senderClass) {
    const int linesBefore = bench.log.all().size();
    receiver.dumpObjectInfo();
    const QRegularExpression entry(QStringLiteral("<-- %1::\\S* +(\\w+)\\(").arg(senderClass));
    QStringList names;
    for (const QString& line : bench.log.all().mid(linesBefore)) {
        const QRegularExpressionMatch match = entry.match(line);
        // The newest connection is listed first.
        if (match.hasMatch())
            names.prepend(match.captured(1));
    }
    return names;
}

int spinBoxValue(SubjectWindow& listener) {
    return find<QSpinBox>(listener, "spinBoxFrequency")->value();
}

} // namespace

void TestSessionStart::theMainWindowIsDisabledAndTheListenersShown() {
    bench->preparePractice();
    QVERIFY(bench->window.isEnabled());
    const SubjectWindow* listener = bench->go();
    QVERIFY(!bench->window.isEnabled());
    QVERIFY(listener != nullptr && listener->isVisible() && listener->isWindow());
    QCOMPARE(listener->parentWidget(), &bench->window);
    QVERIFY(listener->isEnabled());
}

void TestSessionStart::theControlsAreReadAgain() {
    bench->preparePractice();
    find<QLineEdit>(bench->window, "lineEditSilentInterval")->setText(QStringLiteral("33.00"));
    find<QLineEdit>(bench->window, "lineEditOutputFilePath")->setText(QStringLiteral("/results"));
    bench->go();
    QCOMPARE(bench->window.data.silentInterval, 0.033);
    QCOMPARE(bench->window.data.outputFilePath, QStringLiteral("/results"));
}

void TestSessionStart::theDurationTextDecidesHowMuchIsPlayed_data() {
    QTest::addColumn<quint32>("samplingRate");
    QTest::addColumn<int>("fileSamples");
    QTest::addColumn<int>("samplesPlayed");
    QTest::newRow("the settings' rate") << 40000U << 800 << 800;
    QTest::newRow("half a second at 44.1 kHz") << 44100U << 22050 << 20000;
    QTest::newRow("half a second at 8 kHz") << 8000U << 4000 << 20000;
    // 0.043 x 40000 is a trifle below 1720 in doubles.
    QTest::newRow("a last sample lost") << 40000U << 1720 << 1719;
}

void TestSessionStart::theDurationTextDecidesHowMuchIsPlayed() {
    QFETCH(quint32, samplingRate);
    QFETCH(int, fileSamples);
    bench->dialogs.chooseTarget(
        bench->target(QStringLiteral("target.wav"), fileSamples, samplingRate));
    bench->window.on_pushButtonPractice_clicked();
    QCOMPARE(bench->window.data.nSamples, fileSamples);
    bench->go();
    QTEST(bench->window.data.nSamples, "samplesPlayed");
}

void TestSessionStart::theFourConnectionsAreMadeOnceAndInOrder() {
    bench->preparePractice();
    ObservedMainWindow& window = bench->window;
    window.connectedSignals.clear();
    SubjectWindow* listener = bench->go();
    QCOMPARE(
        connectedSlots(*bench, window, QStringLiteral("SubjectWindow")),
        (QStringList{QStringLiteral("updateMainwindow"), QStringLiteral("refreshMainWindow")}));
    QCOMPARE(
        connectedSlots(*bench, *listener, QStringLiteral("MainWindow")),
        (QStringList{QStringLiteral("receiveParameters"), QStringLiteral("updateSubjectWindow")}));
    const QRegularExpression own(QStringLiteral("^(transferParameters|soundPlaying)"));
    QCOMPARE(window.connectedSignals.filter(own),
             (QStringList{QStringLiteral("transferParameters(int,int,int,int)"),
                          QStringLiteral("soundPlaying(int)")}));
    QCOMPARE(window.receivers(SIGNAL(transferParameters(int, int, int, int))), 1);
    QCOMPARE(window.receivers(SIGNAL(soundPlaying(int))), 1);
}

void TestSessionStart::eachConnectionWorks() {
    bench->preparePractice();
    ObservedMainWindow& window = bench->window;
    find<QLineEdit>(window, "lineEditOutputFilePath")->setText(bench->folder.path());
    SubjectWindow* listener = bench->go();
    emit listener->subjectResponded(4, 640);
    QCOMPARE(window.trendFrequencies, QVector<double>{640});
    emit window.transferParameters(20, 900, 440, 5);
    QCOMPARE(spinBoxValue(*listener), 440);
    emit window.soundPlaying(1);
    QVERIFY(!listener->isEnabled());
    emit window.soundPlaying(-1);
    QVERIFY(listener->isEnabled());
    bench->dialogs.saveAsProposed();
    emit listener->subjectWindowClosed();
    QCOMPARE(window.data.fileNumber, 2);
}

void TestSessionStart::theFrequenciesAreSentOnceToTheShownWindow() {
    ObservedMainWindow& window = bench->window;
    window.data.frequencyMin = 20;
    window.data.frequencyMax = 900;
    window.data.frequencyStart = 440;
    window.data.frequencyStepSize = 5;
    bench->preparePractice();
    const QSignalSpy sent(&window, &MainWindow::transferParameters);
    bool wasShown = false;
    connect(&window, &MainWindow::transferParameters, this,
            [&] { wasShown = window.subjectWindow->isVisible(); });
    SubjectWindow* listener = bench->go();
    QCOMPARE(sent.count(), 1);
    QCOMPARE(sent.at(0), (QVariantList{20, 900, 440, 5}));
    QVERIFY(wasShown);
    const auto* spinBox = find<QSpinBox>(*listener, "spinBoxFrequency");
    QCOMPARE(spinBox->minimum(), 20);
    QCOMPARE(spinBox->maximum(), 900);
    QCOMPARE(spinBox->value(), 440);
    QCOMPARE(spinBox->singleStep(), 5);
}

void TestSessionStart::anEarlierWindowStaysHiddenAndConnected() {
    ObservedMainWindow& window = bench->window;
    bench->preparePractice();
    find<QLineEdit>(window, "lineEditOutputFilePath")->setText(bench->folder.path());
    SubjectWindow* earlier = bench->go();
    bench->dialogs.click(QStringLiteral("Confirmation MessageBox"), QMessageBox::Yes);
    bench->dialogs.saveAsProposed();
    QVERIFY(earlier->close());

    window.data.frequencyStart = 440;
    bench->preparePractice();
    const SubjectWindow* later = bench->go();
    QVERIFY(later != earlier);
    QCOMPARE(window.findChildren<SubjectWindow*>(),
             (QList<SubjectWindow*>{earlier, bench->window.subjectWindow}));
    QVERIFY(!earlier->isVisible() && later->isVisible());
    QTRY_VERIFY(earlier->windowHandle() == nullptr);
    // From the main window to the earlier one, and back.
    QCOMPARE(spinBoxValue(*earlier), 440);
    QCOMPARE(window.receivers(SIGNAL(soundPlaying(int))), 2);
    emit earlier->subjectResponded(4, 640);
    QCOMPARE(window.trendFrequencies, QVector<double>{640});
}
