// "Go": the listener's window, its connections and the frequencies that it is sent.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SessionDriver.h"
#include "test_session.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

using testsupport::find;

namespace {

/// The slots of an object that senders of one class are connected to, in the order of connection,
/// as Qt lists them on the log.
QStringList connectedSlots(const testsupport::LogLines& log, const QObject& receiver,
                           const QString& senderClass) {
    const int linesBefore = log.all().size();
    receiver.dumpObjectInfo();
    const QRegularExpression entry(QStringLiteral("<-- %1::\\S* +(\\w+)\\(").arg(senderClass));
    QStringList names;
    for (const QString& line : log.all().mid(linesBefore)) {
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

void TestSessionStart::theMainWindowIsDisabledAndTheSubjectWindowShown() {
    preparePractice();
    QVERIFY(fixture->window().isEnabled());
    const SubjectWindow* listener = go();
    QVERIFY(!fixture->window().isEnabled());
    QVERIFY(listener != nullptr && listener->isVisible() && listener->isWindow());
    QCOMPARE(listener->parentWidget(), &fixture->window());
    QVERIFY(listener->isEnabled());
}

void TestSessionStart::theControlsAreReadAgain() {
    preparePractice();
    fixture->window().lineEditSilentInterval->setText(QStringLiteral("33.00"));
    fixture->window().lineEditOutputFilePath->setText(QStringLiteral("/results"));
    go();
    QCOMPARE(fixture->window().data.silentInterval, 0.033);
    QCOMPARE(fixture->window().data.outputFilePath, QStringLiteral("/results"));
}

void TestSessionStart::theFourConnectionsAreMadeOnceAndInOrder() {
    preparePractice();
    testsupport::InspectedMainWindow& window = fixture->window();
    window.connectedSignals.clear();
    const int before = window.receivers(SIGNAL(soundPlaying(int)));
    SubjectWindow* listener = go();
    QCOMPARE(
        connectedSlots(fixture->log, window, QStringLiteral("SubjectWindow")),
        (QStringList{QStringLiteral("updateMainwindow"), QStringLiteral("refreshMainWindow")}));
    QCOMPARE(
        connectedSlots(fixture->log, *listener, QStringLiteral("MainWindow")),
        (QStringList{QStringLiteral("receiveParameters"), QStringLiteral("updateSubjectWindow")}));
    const QRegularExpression own(QStringLiteral("^(transferParameters|soundPlaying)"));
    QCOMPARE(window.connectedSignals.filter(own),
             (QStringList{QStringLiteral("transferParameters(int,int,int,int)"),
                          QStringLiteral("soundPlaying(int)")}));
    QCOMPARE(window.receivers(SIGNAL(transferParameters(int, int, int, int))), 1);
    QCOMPARE(window.receivers(SIGNAL(soundPlaying(int))) - before, 1);
}

void TestSessionStart::eachConnectionWorks() {
    preparePractice();
    testsupport::InspectedMainWindow& window = fixture->window();
    SubjectWindow* listener = go();
    emit listener->subjectResponded(4, 640);
    QCOMPARE(window.trendFrequencies, QVector<double>{640});
    emit window.transferParameters(20, 900, 440, 5);
    QCOMPARE(spinBoxValue(*listener), 440);
    emit window.soundPlaying(1);
    QVERIFY(!listener->isEnabled());
    emit window.soundPlaying(-1);
    QVERIFY(listener->isEnabled());
    fixture->dialogs.saveAsProposed();
    emit listener->subjectWindowClosed();
    QCOMPARE(window.data.fileNumber, 2);
}

void TestSessionStart::theFrequenciesAreSentOnceToTheShownWindow() {
    testsupport::InspectedMainWindow& window = fixture->window();
    window.data.frequencyMin = 20;
    window.data.frequencyMax = 900;
    window.data.frequencyStart = 440;
    window.data.frequencyStepSize = 5;
    preparePractice();
    const QSignalSpy sent(&window, &MainWindow::transferParameters);
    bool wasShown = false;
    connect(&window, &MainWindow::transferParameters, this,
            [&] { wasShown = window.subjectWindow->isVisible(); });
    SubjectWindow* listener = go();
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
    testsupport::InspectedMainWindow& window = fixture->window();
    preparePractice();
    SubjectWindow* earlier = go();
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    fixture->dialogs.saveAsProposed();
    QVERIFY(earlier->close());

    window.data.frequencyStart = 440;
    preparePractice();
    const int receivers = window.receivers(SIGNAL(soundPlaying(int)));
    const SubjectWindow* later = go();
    QVERIFY(later != earlier);
    QCOMPARE(window.findChildren<SubjectWindow*>(),
             (QList<SubjectWindow*>{earlier, fixture->window().subjectWindow}));
    QVERIFY(!earlier->isVisible() && later->isVisible());
    QTRY_VERIFY(earlier->windowHandle() == nullptr);
    // From the main window to the earlier one, and back.
    QCOMPARE(spinBoxValue(*earlier), 440);
    QCOMPARE(window.receivers(SIGNAL(soundPlaying(int))), receivers + 1);
    emit earlier->subjectResponded(4, 640);
    QCOMPARE(window.trendFrequencies, QVector<double>{640});
}
