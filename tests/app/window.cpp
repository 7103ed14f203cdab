// What the main window's controls are when it opens.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/SessionDriver.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtCharts/QChartView>

using testsupport::find;
using testsupport::InspectedMainWindow;

void TestMainWindowStart::initTestCase() {
    window = std::make_unique<InspectedMainWindow>();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestMainWindowStart::cleanupTestCase() {
    window.reset();
}

void TestMainWindowStart::everyWidgetCarriesItsMembersName_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("className");
    const auto addRows = [](const char* className, const char* names) {
        for (const QByteArray& name : QByteArray(names).split(' '))
            QTest::newRow(name.constData()) << QString::fromLatin1(name) << QByteArray(className);
    };
    addRows("QLabel", "labelSoundFileInformation labelSamplingRate labelSoundDuration "
                      "labelSilentInterval labelSubjectCode labelFileNumber labelWavFilePath "
                      "labelWavFileName labelOutputFilePath labelOutputFileName "
                      "labelFrequencyMatched");
    addRows("QLineEdit", "lineEditSamplingRate lineEditSoundDuration lineEditSilentInterval "
                         "lineEditSubCode lineEditWavFilePath lineEditWavFileName "
                         "lineEditOutputFilePath lineEditOutputFileName lineEditFrequencyMatched");
    addRows("QSpinBox", "spinBoxFileNumber");
    addRows("QPushButton", "pushButtonPractice pushButtonExperiment pushButtonGo pushButtonQuit");
    addRows("QCheckBox", "checkBoxSaveData");
    addRows("QtCharts::QChartView", "chartViewWav chartViewFFT chartViewTrend");
    addRows("QWidget", "widgetCentral");
}

void TestMainWindowStart::everyWidgetCarriesItsMembersName() {
    QFETCH(QString, name);
    QFETCH(QByteArray, className);
    const auto named = window->findChildren<QWidget*>(name);
    QCOMPARE(named.size(), 1);
    QCOMPARE(QByteArray(named.first()->metaObject()->className()), className);
    QVERIFY(named.first()->isVisible());
}

void TestMainWindowStart::labelsHaveTheirTexts_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    const auto addRow = [](const char* name, const char* text) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(text);
    };
    addRow("labelSoundFileInformation", "Sound File Information");
    addRow("labelSamplingRate", "Sampling rate");
    addRow("labelSoundDuration", "Sound duration (ms)");
    addRow("labelSilentInterval", "Silent interval (ms)");
    addRow("labelSubjectCode", "Subject code");
    addRow("labelFileNumber", "File number");
    addRow("labelWavFilePath", "WAV filepath");
    addRow("labelWavFileName", "WAV filename");
    addRow("labelOutputFilePath", "Output filepath");
    addRow("labelOutputFileName", "Output filename");
    addRow("labelFrequencyMatched", "Frequency matched (Hz)");
}

void TestMainWindowStart::labelsHaveTheirTexts() {
    QFETCH(QString, name);
    const auto* label = window->findChild<QLabel*>(name);
    QVERIFY(label);
    QTEST(label->text(), "text");
}

void TestMainWindowStart::fieldsShowTheSettings_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isEnabled");
    const QString desktop = qEnvironmentVariable("HOME") + QStringLiteral("/Desktop");
    const auto addRow = [](const char* name, const QString& text, bool isEnabled) {
        QTest::newRow(name) << QString::fromLatin1(name) << text << isEnabled;
    };
    addRow("lineEditSamplingRate", "40000", false);
    addRow("lineEditSoundDuration", "250.00", false);
    addRow("lineEditSilentInterval", "500.00", false);
    addRow("lineEditSubCode", "SUB001", true);
    addRow("lineEditWavFilePath", desktop, false);
    addRow("lineEditWavFileName", "File001.wav", false);
    addRow("lineEditOutputFilePath", desktop, false);
    addRow("lineEditOutputFileName", "SUB001_practice001.txt", false);
    addRow("lineEditFrequencyMatched", "not started yet", false);
}

void TestMainWindowStart::fieldsShowTheSettings() {
    QFETCH(QString, name);
    const auto* field = window->findChild<QLineEdit*>(name);
    QVERIFY(field);
    QTEST(field->text(), "text");
    QTEST(field->isEnabled(), "isEnabled");
    QVERIFY(!field->isReadOnly());
}

void TestMainWindowStart::buttonsAreAsTheyShouldBe_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("Practice") << "pushButtonPractice"
                              << "Practice" << true;
    QTest::newRow("Experiment") << "pushButtonExperiment"
                                << "Experiment" << false;
    QTest::newRow("Go") << "pushButtonGo"
                        << "Go" << false;
    QTest::newRow("Quit") << "pushButtonQuit"
                          << "Quit" << true;
}

void TestMainWindowStart::buttonsAreAsTheyShouldBe() {
    QFETCH(QString, name);
    const auto* button = window->findChild<QPushButton*>(name);
    QVERIFY(button);
    QTEST(button->text(), "text");
    QTEST(button->isEnabled(), "isEnabled");
    QCOMPARE(button->minimumHeight(), 60);
    QVERIFY(button->height() >= 60);
}

void TestMainWindowStart::onlyPracticeAndQuitAreEnabledButtons() {
    QStringList enabled;
    for (const auto* button : window->findChildren<QPushButton*>())
        if (button->isEnabled())
            enabled.append(button->text());
    enabled.sort();
    QCOMPARE(enabled, (QStringList{"Practice", "Quit"}));
}

void TestMainWindowStart::saveDataBoxIsCheckedAndEnabled() {
    const auto* box = find<QCheckBox>(*window, "checkBoxSaveData");
    QCOMPARE(box->text(), QStringLiteral("Save data to file"));
    QVERIFY(box->isChecked());
    QVERIFY(box->isEnabled());
}

void TestMainWindowStart::hiddenSelectionsAreFilledAndOutOfTheWindow_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("session") << "comboBoxSesType" << QStringList{"practice", "experiment"};
    QTest::newRow("sound") << "comboBoxSoundType" << QStringList{".wav files", "reserved"};
    QTest::newRow("parameter") << "comboBoxMainParameter" << QStringList{"sound files", "reserved"};
}

void TestMainWindowStart::hiddenSelectionsAreFilledAndOutOfTheWindow() {
    QFETCH(QString, name);
    const QComboBox* selection = nullptr;
    for (const QComboBox* candidate :
         {window->comboBoxSesType.get(), window->comboBoxSoundType.get(),
          window->comboBoxMainParameter.get()})
        if (candidate->objectName() == name)
            selection = candidate;
    QVERIFY(selection);
    QStringList entries;
    for (int i = 0; i < selection->count(); ++i)
        entries.append(selection->itemText(i));
    QTEST(entries, "entries");
    QCOMPARE(selection->currentIndex(), 0);
    QVERIFY(!selection->parent());
    QVERIFY(!selection->isVisible());
    QVERIFY(window->findChildren<QComboBox*>().isEmpty());
}

void TestMainWindowStart::hiddenLabelsAreOutOfTheWindow() {
    QStringList texts;
    QStringList names;
    for (const QLabel* label : {window->labelSessionType.get(), window->labelSoundType.get(),
                                window->labelMainParameter.get()}) {
        texts.append(label->text());
        names.append(label->objectName());
        QVERIFY(!label->parent());
        QVERIFY(!label->isVisible());
    }
    QCOMPARE(texts, (QStringList{"Session type", "Sound type", "Main parameter"}));
    QCOMPARE(names, (QStringList{"labelSessionType", "labelSoundType", "labelMainParameter"}));
}

void TestMainWindowStart::fileNumberRunsFromOneToTheLastButOneInt() {
    const auto* fileNumber = find<QSpinBox>(*window, "spinBoxFileNumber");
    QCOMPARE(fileNumber->value(), 1);
    QCOMPARE(fileNumber->minimum(), 1);
    QCOMPARE(fileNumber->maximum(), 2147483646);
    QCOMPARE(fileNumber->singleStep(), 1);
    QVERIFY(fileNumber->isEnabled());
}
