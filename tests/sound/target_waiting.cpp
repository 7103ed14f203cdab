// Choosing and loading a target: the wait cursor, and clicks made meanwhile.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include "support/ProgramRun.h"

#include <QApplication>
#include <QCheckBox>
#include <QCursor>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QtCharts/QChartView>
#include <QtCharts/QValueAxis>

using testsupport::InspectedMainWindow;

namespace {

bool isWaiting() {
    const QCursor* cursor = QApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

/// Records at each painting of a widget whether the wait cursor is shown.
class PaintingWatch : public QObject {
public:
    explicit PaintingWatch(QWidget* widget) { widget->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            waitingAtPaint.append(isWaiting());
        return QObject::eventFilter(watched, event);
    }

    QVector<bool> waitingAtPaint;
};

/// Clicks on a widget by the X server, which stamps and queues the click like that of a mouse.
bool click(const QWidget& widget) {
    const QPoint place = widget.mapToGlobal(widget.rect().center());
    return testsupport::runProgram("xdotool", {"mousemove", QString::number(place.x()),
                                               QString::number(place.y()), "click", "1"})
               .status == 0;
}

} // namespace

void TestTargetWaiting::waitCursorIsShownWhileTheChartsAreDrawn() {
    const QString path = fixture->write("target.wav", unevenCodes(400));
    fixture->session();
    // Handles the first painting of the window.
    QTest::qWait(0);
    PaintingWatch wav(fixture->window().chartViewWav->viewport());
    PaintingWatch fft(fixture->window().chartViewFFT->viewport());
    bool isWaitingInTheDialog = true;
    fixture->dialogs.expect("Select a target sound file", [&](QWidget* dialog) {
        isWaitingInTheDialog = isWaiting();
        // Not selectFile(), which is sometimes called before the dialog has read its folder.
        testsupport::find<QLineEdit>(*dialog, "fileNameEdit")->setText(path);
        wav.waitingAtPaint.clear();
        fft.waitingAtPaint.clear();
        qobject_cast<QDialog*>(dialog)->accept();
    });
    fixture->window().on_pushButtonPractice_clicked();
    QVERIFY(!isWaitingInTheDialog);
    QVERIFY(isWaiting());
    QTRY_VERIFY(!isWaiting());
    for (const PaintingWatch* chart : {&wav, &fft}) {
        QVERIFY(!chart->waitingAtPaint.isEmpty());
        QVERIFY(!chart->waitingAtPaint.contains(false));
    }
}

void TestTargetWaiting::waitCursorEndsAfterEveryPreparation_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("loaded") << testsupport::wavWithSamples({}, unevenCodes(400));
    QTest::newRow("not a WAV file") << QByteArray(100, 'x');
    QTest::newRow("no samples") << testsupport::wavWithSamples({}, {});
    QTest::newRow("cancelled") << QByteArray();
}

void TestTargetWaiting::waitCursorEndsAfterEveryPreparation() {
    QFETCH(QByteArray, bytes);
    for (int preparation = 0; preparation < 2; ++preparation) {
        if (bytes.isEmpty())
            prepareCancelled();
        else
            fixture->prepare(fixture->write("target.wav", bytes));
        (void)fixture->takePrinted();
        QTRY_VERIFY(QApplication::overrideCursor() == nullptr);
    }
}

void TestTargetWaiting::clickOnGreyGoIsNotDeliveredLater() {
    InspectedMainWindow& window = fixture->window();
    fixture->session();
    bool isClicked = false;
    connect(window.axisYWav, &QtCharts::QValueAxis::rangeChanged, this, [&] {
        isClicked = isClicked || (!window.pushButtonGo->isEnabled() && click(*window.pushButtonGo));
    });
    fixture->prepare(fixture->write("target.wav", unevenCodes(400)));
    QVERIFY(isClicked);
    QVERIFY(window.pushButtonGo->isEnabled());

    // A later event in the queue shows that the click would have been delivered by now.
    auto* saveData = window.checkBoxSaveData;
    QVERIFY(click(*saveData));
    QTRY_VERIFY(!saveData->isChecked());
    QVERIFY(window.subjectWindow == nullptr);

    QVERIFY(click(*window.pushButtonGo));
    QTRY_VERIFY(window.subjectWindow != nullptr);
    fixture->dialogs.answerClosing(QMessageBox::Yes);
    window.subjectWindow->close();
    QTRY_VERIFY(window.isEnabled());
}
