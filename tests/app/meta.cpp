// Signals, slots and connections of the main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/MethodNames.h"

#include <QComboBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QTest>

using testsupport::InspectedMainWindow;

namespace {

/// Opens QObject's protected count of receivers.
struct ReceiverCount : QObject {
    static int of(const QObject& sender, const QByteArray& codedSignal) {
        return (sender.*(&ReceiverCount::receivers))(codedSignal.constData());
    }
};

/// Returns a signature in the form of the macros SIGNAL and SLOT.
QByteArray coded(int code, const char* signature) {
    return QByteArray::number(code) + signature;
}

QObject* senderNamed(InspectedMainWindow& window, const QString& name) {
    for (QObject* hidden : std::initializer_list<QObject*>{window.comboBoxSesType.get(),
                                                           window.comboBoxSoundType.get(),
                                                           window.comboBoxMainParameter.get()})
        if (hidden->objectName() == name)
            return hidden;
    return window.findChild<QWidget*>(name);
}

} // namespace

void TestMainWindowConnections::setUp() {
    fixture->session();
    window = &fixture->window();
}

void TestMainWindowConnections::methodsHaveTheirIndices() {
    const QString transferParameters = "signal transferParameters(int frequencyMin, "
                                       "int frequencyMax, int frequencyCurrent, "
                                       "int frequencyStepSize)";
    QCOMPARE(
        testsupport::methodsOf(MainWindow::staticMetaObject),
        QStringList({transferParameters, "signal soundPlaying(int index)",
                     "signal stateChanged(QAudio::State audioState)",
                     "slot on_pushButtonPractice_clicked()",
                     "slot on_pushButtonExperiment_clicked()", "slot on_pushButtonGo_clicked()",
                     "slot updateMainwindow(int response, int frequency)", "slot playOneSound()",
                     "slot doNothing()", "slot handleStateChanged(QAudio::State audioState)",
                     "slot on_comboBoxSesType_currentIndexChanged(int index)",
                     "slot on_comboBoxSoundType_currentIndexChanged(int index)",
                     "slot on_comboBoxMainParameter_currentIndexChanged(int index)",
                     "slot on_lineEditSubCode_textChanged(QString arg1)",
                     "slot on_spinBoxFileNumber_valueChanged(int newFileNumber)",
                     "slot refreshMainWindow()"}));
}

void TestMainWindowConnections::audioStateIsRegisteredForArguments() {
    const std::pair<int, int> typesOfMethods[] = {
        {2, qMetaTypeId<QAudio::State>()}, {9, qMetaTypeId<QAudio::State>()}, {1, -1}};
    for (const auto& [index, expected] : typesOfMethods) {
        int type = -2;
        int argument = 0;
        void* call[] = {&type, &argument};
        MainWindow::staticMetaObject.static_metacall(QMetaObject::RegisterMethodArgumentMetaType,
                                                     index, call);
        QCOMPARE(type, expected);
    }
}

void TestMainWindowConnections::everySignalIsConnectedOnce_data() {
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("slot");
    const auto addRow = [](const char* sender, const char* signal, const char* slot) {
        QTest::newRow(slot) << QString::fromLatin1(sender) << coded(QSIGNAL_CODE, signal)
                            << coded(QSLOT_CODE, slot);
    };
    addRow("pushButtonPractice", "clicked(bool)", "on_pushButtonPractice_clicked()");
    addRow("pushButtonExperiment", "clicked(bool)", "on_pushButtonExperiment_clicked()");
    addRow("pushButtonGo", "clicked(bool)", "on_pushButtonGo_clicked()");
    addRow("pushButtonQuit", "clicked(bool)", "close()");
    addRow("comboBoxSesType", "currentIndexChanged(int)",
           "on_comboBoxSesType_currentIndexChanged(int)");
    addRow("comboBoxSoundType", "currentIndexChanged(int)",
           "on_comboBoxSoundType_currentIndexChanged(int)");
    addRow("comboBoxMainParameter", "currentIndexChanged(int)",
           "on_comboBoxMainParameter_currentIndexChanged(int)");
    addRow("lineEditSubCode", "textChanged(QString)", "on_lineEditSubCode_textChanged(QString)");
    addRow("spinBoxFileNumber", "valueChanged(int)", "on_spinBoxFileNumber_valueChanged(int)");
}

void TestMainWindowConnections::everySignalIsConnectedOnce() {
    QFETCH(QString, sender);
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);
    QObject* widget = senderNamed(*window, sender);
    QVERIFY(widget);
    const int receivers = ReceiverCount::of(*widget, signal);
    // Removes every connection of this pair.
    QVERIFY(QObject::disconnect(widget, signal.constData(), window, slot.constData()));
    QCOMPARE(ReceiverCount::of(*widget, signal), receivers - 1);
    // No other signal or slot of the two was connected.
    QVERIFY(!QObject::disconnect(widget, nullptr, window, nullptr));
}

void TestMainWindowConnections::oneClickOpensOneDialog() {
    for (QPushButton* button : {window->pushButtonPractice, window->pushButtonExperiment}) {
        fixture->dialogs.cancelTarget();
        button->setEnabled(true);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(fixture->takePrinted(), QStringList("Unable to open WAV file: /"));
    }
}
