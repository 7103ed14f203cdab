// The main window: its widgets, their texts and their connections.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "window/BusyMouse.h"
#include "window/Widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <limits>

namespace {

QLabel* label(const char* memberName, const char* text) {
    return named<QLabel>(memberName, QLatin1String(text));
}

QLineEdit* lineEdit(const char* memberName, const char* text) {
    return named<QLineEdit>(memberName, QLatin1String(text));
}

QPushButton* pushButton(const char* memberName, const char* text) {
    return named<QPushButton>(memberName, QLatin1String(text));
}

} // namespace

void MainWindow::createWidgets() {
    labelSessionType.reset(label("labelSessionType", "Session type"));
    labelSoundType.reset(label("labelSoundType", "Sound type"));
    labelMainParameter.reset(label("labelMainParameter", "Main parameter"));
    labelSoundFileInformation = label("labelSoundFileInformation", "Sound File Information");
    labelSamplingRate = label("labelSamplingRate", "Sampling rate");
    labelSoundDuration = label("labelSoundDuration", "Sound duration (ms)");
    labelSilentInterval = label("labelSilentInterval", "Silent interval (ms)");
    labelSubjectCode = label("labelSubjectCode", "Subject code");
    labelFileNumber = label("labelFileNumber", "File number");
    labelWavFilePath = label("labelWavFilePath", "WAV filepath");
    labelWavFileName = label("labelWavFileName", "WAV filename");
    labelOutputFilePath = label("labelOutputFilePath", "Output filepath");
    labelOutputFileName = label("labelOutputFileName", "Output filename");
    labelFrequencyMatched = label("labelFrequencyMatched", "Frequency matched (Hz)");

    comboBoxSesType.reset(named<QComboBox>("comboBoxSesType"));
    comboBoxSoundType.reset(named<QComboBox>("comboBoxSoundType"));
    comboBoxMainParameter.reset(named<QComboBox>("comboBoxMainParameter"));

    lineEditSamplingRate = lineEdit("lineEditSamplingRate", "40000");
    lineEditSoundDuration = lineEdit("lineEditSoundDuration", "250.00");
    lineEditSilentInterval = lineEdit("lineEditSilentInterval", "1000.00");
    lineEditSubCode = lineEdit("lineEditSubCode", "SUB001");
    spinBoxFileNumber = named<QSpinBox>("spinBoxFileNumber");
    // Leaves room for the next number. With Qt's 99, session 100 would replace session 99's file.
    spinBoxFileNumber->setMaximum(std::numeric_limits<int>::max() - 1);
    lineEditWavFilePath = lineEdit("lineEditWavFilePath", ".");
    lineEditWavFileName = lineEdit("lineEditWavFileName", "File001.wav");
    lineEditOutputFilePath = lineEdit("lineEditOutputFilePath", ".");
    lineEditOutputFileName = lineEdit("lineEditOutputFileName", "SUB001.dat");
    lineEditFrequencyMatched = lineEdit("lineEditFrequencyMatched", "");

    pushButtonPractice = pushButton("pushButtonPractice", "Practice");
    pushButtonExperiment = pushButton("pushButtonExperiment", "Experiment");
    pushButtonGo = pushButton("pushButtonGo", "Go");
    staleClicksOnGo = new StaleClicks(pushButtonGo);
    pushButtonQuit = pushButton("pushButtonQuit", "Quit");
    checkBoxSaveData = named<QCheckBox>("checkBoxSaveData", QStringLiteral("Save data to file"));
}

void MainWindow::connectWidgets() {
    connect(pushButtonPractice, SIGNAL(clicked(bool)), this, SLOT(on_pushButtonPractice_clicked()));
    connect(pushButtonExperiment, SIGNAL(clicked(bool)), this,
            SLOT(on_pushButtonExperiment_clicked()));
    connect(pushButtonGo, SIGNAL(clicked(bool)), this, SLOT(on_pushButtonGo_clicked()));
    connect(pushButtonQuit, SIGNAL(clicked(bool)), this, SLOT(close()));
    connect(comboBoxSesType.get(), SIGNAL(currentIndexChanged(int)), this,
            SLOT(on_comboBoxSesType_currentIndexChanged(int)));
    connect(comboBoxSoundType.get(), SIGNAL(currentIndexChanged(int)), this,
            SLOT(on_comboBoxSoundType_currentIndexChanged(int)));
    connect(comboBoxMainParameter.get(), SIGNAL(currentIndexChanged(int)), this,
            SLOT(on_comboBoxMainParameter_currentIndexChanged(int)));
    connect(lineEditSubCode, SIGNAL(textChanged(QString)), this,
            SLOT(on_lineEditSubCode_textChanged(QString)));
    connect(spinBoxFileNumber, SIGNAL(valueChanged(int)), this,
            SLOT(on_spinBoxFileNumber_valueChanged(int)));
}
