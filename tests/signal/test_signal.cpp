// The signal library's warnings in a program with widgets.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/OstrelClasses.h"
#include "signal/RandomGenerator.h"
#include "support/DialogDriver.h"
#include "support/SignalCalls.h"
#include "support/StreamCapture.h"
#include "support/TestMain.h"
#include "support/TestTable.h"

#include <QApplication>
#include <QPushButton>
#include <QThread>

#include <cmath>
#include <iostream>
#include <memory>

using testsupport::RampInPlace;
using testsupport::SignalCall;
using testsupport::StreamCapture;

namespace {

QString warningTitle() {
    return QStringLiteral("Warning");
}

/// A message box's visible properties and its modality.
QStringList described(const QMessageBox& box) {
    QStringList lines{box.windowTitle(), box.text(), box.informativeText(), box.detailedText()};
    for (const QAbstractButton* button : box.buttons())
        lines.append(button->text().remove(u'&'));
    lines.append(box.parent() == nullptr ? "no parent" : "a parent");
    lines.append(box.windowModality() == Qt::ApplicationModal ? "modal" : "not modal");
    lines.append(box.icon() == QMessageBox::Warning ? "warning sign" : "another sign");
    return lines;
}

void clickOk(QWidget* dialog) {
    QTest::mouseClick(qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::Ok), Qt::LeftButton);
}

} // namespace

/// The boxes of the library in a program with widgets.
class TestSignalBoxes : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void warningShowsOneBox_data();
    void warningShowsOneBox();
    void validCallShowsNoBox_data();
    void validCallShowsNoBox();
    void rampIsAppliedAfterTheBoxCloses_data();
    void rampIsAppliedAfterTheBoxCloses();
    void rampIsAppliedAfterTheBoxIsClosedByItsFrame();
    void integerIsDrawnAfterTheBoxCloses();
    void integersAreSeededAfterTheBoxCloses();
    void warningOutsideTheGuiThreadIsPrinted();

private:
    std::unique_ptr<testsupport::DialogDriver> dialogs;
};

void TestSignalBoxes::init() {
    dialogs = std::make_unique<testsupport::DialogDriver>();
}

void TestSignalBoxes::cleanup() {
    const QStringList complaints = dialogs->takeComplaints();
    dialogs.reset();
    QCOMPARE(complaints.join(u'\n'), QString());
}

void TestSignalBoxes::warningShowsOneBox_data() {
    testsupport::addCallsThatWarn();
}

void TestSignalBoxes::warningShowsOneBox() {
    QFETCH(SignalCall, call);
    QFETCH(QString, text);
    QStringList box;
    dialogs->expect(warningTitle(), [&box](QWidget* dialog) {
        box = described(*qobject_cast<QMessageBox*>(dialog));
        clickOk(dialog);
    });
    const StreamCapture standardError(std::cerr);
    call();
    QCOMPARE(box, (QStringList{warningTitle(), text, QString(), QString(), "OK", "no parent",
                               "modal", "warning sign"}));
    QCOMPARE(dialogs->seen().size(), 1);
    QCOMPARE(standardError.text(), std::string());
}

void TestSignalBoxes::validCallShowsNoBox_data() {
    testsupport::addCallsThatDoNotWarn();
}

void TestSignalBoxes::validCallShowsNoBox() {
    QFETCH(SignalCall, call);
    call();
    QCOMPARE(dialogs->seen(), QStringList());
}

void TestSignalBoxes::rampIsAppliedAfterTheBoxCloses_data() {
    const auto row = testsupport::columns<RampInPlace, double>("ramp", "middle");
    const double gain = (1 - std::cos(0.5 * 3.141592653589793)) * 0.5;
    row("cosRamp", cosRamp, 8 * gain * gain);
    row("cos2Ramp", cos2Ramp, 8 * gain * gain * gain * gain);
    row("linearRamp", linearRamp, 2);
}

void TestSignalBoxes::rampIsAppliedAfterTheBoxCloses() {
    QFETCH(RampInPlace, ramp);
    QFETCH(double, middle);
    QVector<double> signal{8, 8, 8};
    QVector<double> meanwhile;
    dialogs->expect(warningTitle(), [&](QWidget* dialog) {
        meanwhile = signal;
        clickOk(dialog);
    });
    ramp(&signal, 2);
    QCOMPARE(meanwhile, (QVector<double>{8, 8, 8}));
    QVERIFY(signal[0] == 0);
    QVERIFY(signal[1] == middle);
    QVERIFY(signal[2] == 0);
}

void TestSignalBoxes::rampIsAppliedAfterTheBoxIsClosedByItsFrame() {
    dialogs->expect(warningTitle(), [](QWidget* dialog) { dialog->close(); });
    QCOMPARE(linearRamp({8, 8, 8}, 2), (QVector<double>{0, 2, 0}));
}

void TestSignalBoxes::integerIsDrawnAfterTheBoxCloses() {
    const uint seed = 4711;
    seedRandomNumbers(seed);
    const int first = nextRandomNumber();
    nextRandomNumber();
    dialogs->expect(warningTitle(), [](QWidget* dialog) {
        seedRandomNumbers(seed);
        clickOk(dialog);
    });
    QCOMPARE(randomInteger(100, 0), 100 + first % -99);
}

void TestSignalBoxes::integersAreSeededAfterTheBoxCloses() {
    // This seed is not the time's: numbers that followed it would differ.
    int next = 0;
    const uint second = testsupport::inOneSecond([&] {
        dialogs->expect(warningTitle(), [](QWidget* dialog) {
            clickOk(dialog);
            seedRandomNumbers(4711);
        });
        QCOMPARE(randomIntegers(2, 7, 2), (QVector<int>{2, 2}));
        next = nextRandomNumber();
    });
    seedRandomNumbers(second);
    nextRandomNumber();
    nextRandomNumber();
    QCOMPARE(next, nextRandomNumber());
}

void TestSignalBoxes::warningOutsideTheGuiThreadIsPrinted() {
    const StreamCapture standardError(std::cerr);
    QVector<double> ramped;
    const std::unique_ptr<QThread> thread(QThread::create([&ramped] {
        ramped = linearRamp({8, 8, 8}, 2);
    }));
    thread->start();
    // A box would be shown and answered in this thread.
    QTRY_VERIFY(thread->isFinished());
    QCOMPARE(standardError.text(), std::string("Vector size must be at least twice of nPoints\n"));
    QCOMPARE(ramped, (QVector<double>{0, 2, 0}));
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return testsupport::runAll<TestSignalBoxes>(argc, argv);
}

#include "test_signal.moc"
