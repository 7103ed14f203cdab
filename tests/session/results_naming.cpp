// The results file: its name in the main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

#include <functional>

namespace {
using Input = std::function<void(ResultsWindow&)>;

/// What neither field nor setting may keep.
QString staleName() {
    return QStringLiteral("stale.txt");
}

void makeNameStale(ResultsWindow& window) {
    window.lineEditOutputFileName->setText(staleName());
    window.data.outputFileName = staleName();
}
} // namespace

Q_DECLARE_METATYPE(Input)

void TestResultsNaming::nameAtTheStart() {
    const ResultsWindow window;
    QCOMPARE(window.data.outputFileName, QStringLiteral("SUB001_practice001.txt"));
    QCOMPARE(window.lineEditOutputFileName->text(), QStringLiteral("SUB001_practice001.txt"));
}

void TestResultsNaming::eachInputRenamesTheFile_data() {
    QTest::addColumn<Input>("input");
    QTest::addColumn<QString>("name");
    QTest::newRow("session type") << Input([](auto& window) {
        window.comboBoxSesType->setCurrentIndex(1);
    }) << "SUB001_experiment001.txt";
    QTest::newRow("sound type") << Input([](auto& window) {
        window.comboBoxSoundType->setCurrentIndex(1);
    }) << "SUB001_practice001.txt";
    QTest::newRow("main parameter")
        << Input([](auto& window) { window.comboBoxMainParameter->setCurrentIndex(1); })
        << "SUB001_practice001.txt";
    QTest::newRow("subject code typed") << Input([](auto& window) {
        window.lineEditSubCode->selectAll();
        QTest::keyClicks(window.lineEditSubCode, "S7");
    }) << "S7_practice001.txt";
    QTest::newRow("subject code emptied")
        << Input([](auto& window) { window.lineEditSubCode->clear(); }) << "_practice001.txt";
    QTest::newRow("file number typed") << Input([](auto& window) {
        window.spinBoxFileNumber->selectAll();
        QTest::keyClicks(window.spinBoxFileNumber, "12");
    }) << "SUB001_practice012.txt";
    QTest::newRow("file number stepped")
        << Input([](auto& window) { QTest::keyClick(window.spinBoxFileNumber, Qt::Key_Up); })
        << "SUB001_practice002.txt";
    QTest::newRow("file number 1000")
        << Input([](auto& window) { window.spinBoxFileNumber->setValue(1000); })
        << "SUB001_practice1000.txt";
}

void TestResultsNaming::eachInputRenamesTheFile() {
    QFETCH(Input, input);
    QFETCH(QString, name);
    ResultsWindow window;
    makeNameStale(window);
    input(window);
    QCOMPARE(window.lineEditOutputFileName->text(), name);
    QCOMPARE(window.data.outputFileName, name);
}

void TestResultsNaming::eachSlotStoresItsValueAndRenamesTheFile_data() {
    QTest::addColumn<Input>("call");
    QTest::addColumn<QVariantList>("settings");
    QTest::addColumn<QString>("name");
    QTest::newRow("session type") << Input([](auto& window) {
        window.on_comboBoxSesType_currentIndexChanged(1);
    }) << QVariantList{1, 0, 0, "SUB001", 1}
                                  << "SUB001_experiment001.txt";
    QTest::newRow("sound type") << Input([](auto& window) {
        window.on_comboBoxSoundType_currentIndexChanged(1);
    }) << QVariantList{0, 1, 0, "SUB001", 1}
                                << "SUB001_practice001.txt";
    QTest::newRow("main parameter")
        << Input([](auto& window) { window.on_comboBoxMainParameter_currentIndexChanged(1); })
        << QVariantList{0, 0, 1, "SUB001", 1} << "SUB001_practice001.txt";
    QTest::newRow("subject code") << Input([](auto& window) {
        window.on_lineEditSubCode_textChanged("S7");
    }) << QVariantList{0, 0, 0, "S7", 1}
                                  << "S7_practice001.txt";
    QTest::newRow("file number") << Input([](auto& window) {
        window.on_spinBoxFileNumber_valueChanged(12);
    }) << QVariantList{0, 0, 0, "SUB001", 12}
                                 << "SUB001_practice012.txt";
}

void TestResultsNaming::eachSlotStoresItsValueAndRenamesTheFile() {
    QFETCH(Input, call);
    QFETCH(QVariantList, settings);
    QFETCH(QString, name);
    ResultsWindow window;
    makeNameStale(window);
    call(window);
    const Data& data = window.data;
    QCOMPARE(QVariantList({data.sessionTypeIndex, data.soundTypeIndex, data.mainParameterIndex,
                           data.subjectCode, data.fileNumber}),
             settings);
    QCOMPARE(data.outputFileName, name);
    QCOMPARE(window.lineEditOutputFileName->text(), name);
}

void TestResultsNaming::nameFollowsSessionTypeNumberAndCodeTogether() {
    const ResultsWindow window;
    window.lineEditSubCode->setText("S7");
    window.comboBoxSesType->setCurrentIndex(1);
    window.spinBoxFileNumber->setValue(12);
    QCOMPARE(window.lineEditOutputFileName->text(), QStringLiteral("S7_experiment012.txt"));
    window.comboBoxSesType->setCurrentIndex(0);
    QCOMPARE(window.lineEditOutputFileName->text(), QStringLiteral("S7_practice012.txt"));
}

void TestResultsNaming::fileNumberGoesFrom1To2147483646() {
    const ResultsWindow window;
    QCOMPARE(window.spinBoxFileNumber->minimum(), 1);
    QCOMPARE(window.spinBoxFileNumber->maximum(), 2147483646);
    window.spinBoxFileNumber->setValue(0);
    QCOMPARE(window.spinBoxFileNumber->value(), 1);
}

void TestResultsNaming::numberAfterASession_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("nextName");
    QTest::newRow("1") << 1 << "SUB001_practice002.txt";
    QTest::newRow("9") << 9 << "SUB001_practice010.txt";
    QTest::newRow("98") << 98 << "SUB001_practice099.txt";
    QTest::newRow("99") << 99 << "SUB001_practice100.txt";
    QTest::newRow("999") << 999 << "SUB001_practice1000.txt";
    QTest::newRow("2147483645") << 2147483645 << "SUB001_practice2147483646.txt";
}

void TestResultsNaming::numberAfterASession() {
    QFETCH(int, number);
    ResultsWindow window;
    window.checkBoxSaveData->setChecked(false);
    window.spinBoxFileNumber->setValue(number);
    window.getParameters();
    window.refreshMainWindow();
    QCOMPARE(window.data.fileNumber, number + 1);
    QCOMPARE(window.spinBoxFileNumber->value(), number + 1);
    QTEST(window.lineEditOutputFileName->text(), "nextName");
}

void TestResultsNaming::numberAfterTheLastOneStillFits() {
    ResultsWindow window;
    window.checkBoxSaveData->setChecked(false);
    window.spinBoxFileNumber->setValue(2147483646);
    window.getParameters();
    window.refreshMainWindow();
    QCOMPARE(window.data.fileNumber, 2147483647);
    QCOMPARE(window.spinBoxFileNumber->value(), 2147483646);
    // Once more without reading the field in between.
    window.finishIt();
    QCOMPARE(window.data.fileNumber, 2147483647);
}
