// The results file: its name in the main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>

#include <functional>

namespace {
using Input = std::function<void(testsupport::InspectedMainWindow&)>;
} // namespace

Q_DECLARE_METATYPE(Input)

void TestResultsNaming::eachInputRenamesTheFile_data() {
    QTest::addColumn<Input>("input");
    QTest::addColumn<QVariantList>("settings");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* name, const QVariantList& settings, const char* expected,
                        const Input& input) {
        QTest::newRow(name) << input << settings << QString(expected);
    };
    const char* const unchanged = "SUB001_practice001.txt";
    row("session type", {1, 0, 0, "SUB001", 1}, "SUB001_experiment001.txt",
        [](auto& window) { window.comboBoxSesType->setCurrentIndex(1); });
    row("sound type", {0, 1, 0, "SUB001", 1}, unchanged,
        [](auto& window) { window.comboBoxSoundType->setCurrentIndex(1); });
    row("main parameter", {0, 0, 1, "SUB001", 1}, unchanged,
        [](auto& window) { window.comboBoxMainParameter->setCurrentIndex(1); });
    row("subject code typed", {0, 0, 0, "S7", 1}, "S7_practice001.txt", [](auto& window) {
        window.lineEditSubCode->selectAll();
        QTest::keyClicks(window.lineEditSubCode, "S7");
    });
    row("subject code emptied", {0, 0, 0, "", 1}, "_practice001.txt",
        [](auto& window) { window.lineEditSubCode->clear(); });
    row("file number typed", {0, 0, 0, "SUB001", 12}, "SUB001_practice012.txt", [](auto& window) {
        window.spinBoxFileNumber->selectAll();
        QTest::keyClicks(window.spinBoxFileNumber, "12");
    });
    row("file number stepped", {0, 0, 0, "SUB001", 2}, "SUB001_practice002.txt",
        [](auto& window) { QTest::keyClick(window.spinBoxFileNumber, Qt::Key_Up); });
    row("largest file number", {0, 0, 0, "SUB001", 2147483646}, "SUB001_practice2147483646.txt",
        [](auto& window) { window.spinBoxFileNumber->setValue(2147483646); });
}

void TestResultsNaming::eachInputRenamesTheFile() {
    QFETCH(Input, input);
    QFETCH(QVariantList, settings);
    QFETCH(QString, name);
    auto& window = fixture->window();
    const Data& data = window.data;
    // A value that must be replaced in the field and in the setting.
    window.lineEditOutputFileName->setText("stale.txt");
    window.data.outputFileName = "stale.txt";
    input(window);
    QCOMPARE(QVariantList({data.sessionTypeIndex, data.soundTypeIndex, data.mainParameterIndex,
                           data.subjectCode, data.fileNumber}),
             settings);
    QCOMPARE(data.outputFileName, name);
    QCOMPARE(window.lineEditOutputFileName->text(), name);
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
    auto& window = fixture->window();
    window.checkBoxSaveData->setChecked(false);
    window.spinBoxFileNumber->setValue(number);
    window.getParameters();
    window.refreshMainWindow();
    QCOMPARE(window.data.fileNumber, number + 1);
    QCOMPARE(window.spinBoxFileNumber->value(), number + 1);
    QTEST(window.lineEditOutputFileName->text(), "nextName");
}

void TestResultsNaming::numberAfterTheMaximumStillFits() {
    auto& window = fixture->window();
    window.checkBoxSaveData->setChecked(false);
    window.spinBoxFileNumber->setValue(2147483646);
    window.getParameters();
    window.refreshMainWindow();
    QCOMPARE(window.data.fileNumber, 2147483647);
    QCOMPARE(window.spinBoxFileNumber->value(), 2147483646);
    // Again, without reading the field in between.
    window.finishIt();
    QCOMPARE(window.data.fileNumber, 2147483647);
}
