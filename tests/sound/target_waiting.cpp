// Choosing and loading a target: the wait cursor.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QLineEdit>
#include <QtCharts/QChartView>
#include <QtTest>

using testsupport::InspectedMainWindow;

namespace {

bool isWaiting() {
    const QCursor* cursor = QApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

/// Notes for each time that a widget is painted whether the wait cursor is shown.
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

} // namespace

void TestTargetWaiting::cursorStillWaitsWhenTheChartsAreDrawn() {
    const QString path = fixture->write("target.wav", unevenCodes(400));
    fixture->session();
    // What showing the window for the first time paints.
    QTest::qWait(0);
    PaintingWatch wav(fixture->window().chartViewWav->viewport());
    PaintingWatch fft(fixture->window().chartViewFFT->viewport());
    bool isWaitingInTheDialog = true;
    fixture->dialogs.expect("Select a target sound file", [&](QWidget* dialog) {
        isWaitingInTheDialog = isWaiting();
        // Not selectFile(), which now and then comes before the dialog has read its folder.
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

void TestTargetWaiting::cursorComesBackAfterEveryPreparation_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("loaded") << testsupport::wavWithSamples({}, unevenCodes(400));
    QTest::newRow("not a WAV file") << QByteArray(100, 'x');
    QTest::newRow("no samples") << testsupport::wavWithSamples({}, {});
    QTest::newRow("cancelled") << QByteArray();
}

void TestTargetWaiting::cursorComesBackAfterEveryPreparation() {
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
