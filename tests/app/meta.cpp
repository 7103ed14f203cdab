// Signals, slots and connections of the main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_app.h"

#include "support/SessionDriver.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QSpinBox>

using testsupport::DialogDriver;
using testsupport::find;
using testsupport::InspectedMainWindow;

namespace {

/// QObject keeps the count of receivers to those who derive from it.
struct ReceiverCount : QObject {
    static int of(const QObject& sender, const QByteArray& codedSignal) {
        return (sender.*(&ReceiverCount::receivers))(codedSignal.constData());
    }
};

/// As the macros SIGNAL and SLOT write them.
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

void TestMainWindowConnections::init() {
    window = std::make_unique<InspectedMainWindow>();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestMainWindowConnections::cleanup() {
    window.reset();
}

void TestMainWindowConnections::methodsHaveTheirIndices_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("methodType");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QList<QByteArray>>("parameterNames");
    // Names are compared where there are any in the list.
    int index = 0;
    const auto addRow = [&index](int type, const char* signature,
                                 const QList<QByteArray>& parameterNames = {}) {
        QTest::newRow(signature) << index++ << type << QByteArray(signature) << parameterNames;
    };
    addRow(QMetaMethod::Signal, "transferParameters(int,int,int,int)",
           {"frequencyMin", "frequencyMax", "frequencyCurrent", "frequencyStepSize"});
    addRow(QMetaMethod::Signal, "soundPlaying(int)", {"index"});
    addRow(QMetaMethod::Signal, "stateChanged(QAudio::State)", {"audioState"});
    addRow(QMetaMethod::Slot, "on_pushButtonPractice_clicked()");
    addRow(QMetaMethod::Slot, "on_pushButtonExperiment_clicked()");
    addRow(QMetaMethod::Slot, "on_pushButtonGo_clicked()");
    addRow(QMetaMethod::Slot, "updateMainwindow(int,int)", {"response", "frequency"});
    addRow(QMetaMethod::Slot, "playOneSound()");
    addRow(QMetaMethod::Slot, "doNothing()");
    addRow(QMetaMethod::Slot, "handleStateChanged(QAudio::State)");
    addRow(QMetaMethod::Slot, "on_comboBoxSesType_currentIndexChanged(int)");
    addRow(QMetaMethod::Slot, "on_comboBoxSoundType_currentIndexChanged(int)");
    addRow(QMetaMethod::Slot, "on_comboBoxMainParameter_currentIndexChanged(int)");
    addRow(QMetaMethod::Slot, "on_lineEditSubCode_textChanged(QString)", {"arg1"});
    addRow(QMetaMethod::Slot, "on_spinBoxFileNumber_valueChanged(int)", {"newFileNumber"});
    addRow(QMetaMethod::Slot, "refreshMainWindow()");
}

void TestMainWindowConnections::methodsHaveTheirIndices() {
    QFETCH(int, index);
    QFETCH(QList<QByteArray>, parameterNames);
    const QMetaObject& metaObject = MainWindow::staticMetaObject;
    const QMetaMethod method = metaObject.method(metaObject.methodOffset() + index);
    QTEST(method.methodSignature(), "signature");
    QTEST(int(method.methodType()), "methodType");
    QCOMPARE(method.returnType(), int(QMetaType::Void));
    if (!parameterNames.isEmpty())
        QCOMPARE(method.parameterNames(), parameterNames);
}

void TestMainWindowConnections::audioStateIsRegisteredForArguments_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isAudioState");
    QTest::newRow("stateChanged") << 2 << true;
    QTest::newRow("handleStateChanged") << 9 << true;
    QTest::newRow("soundPlaying") << 1 << false;
}

void TestMainWindowConnections::audioStateIsRegisteredForArguments() {
    QFETCH(int, index);
    QFETCH(bool, isAudioState);
    int type = -2;
    int argument = 0;
    void* call[] = {&type, &argument};
    MainWindow::staticMetaObject.static_metacall(QMetaObject::RegisterMethodArgumentMetaType, index,
                                                 call);
    QCOMPARE(type, isAudioState ? qMetaTypeId<QAudio::State>() : -1);
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
    // Takes away every connection of this pair.
    QVERIFY(QObject::disconnect(widget, signal.constData(), window.get(), slot.constData()));
    QCOMPARE(ReceiverCount::of(*widget, signal), receivers - 1);
    // And no other signal or slot of the two was joined.
    QVERIFY(!QObject::disconnect(widget, nullptr, window.get(), nullptr));
}

void TestMainWindowConnections::oneClickOpensOneDialog_data() {
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("Practice") << QByteArray("pushButtonPractice");
    QTest::newRow("Experiment") << QByteArray("pushButtonExperiment");
}

void TestMainWindowConnections::oneClickOpensOneDialog() {
    QFETCH(QByteArray, button);
    DialogDriver dialogs;
    dialogs.cancelTarget();
    find<QPushButton>(*window, button.constData())->setEnabled(true);
    testsupport::click(*window, button.constData());
    QCOMPARE(dialogs.seen().size(), 1);
    QCOMPARE(dialogs.takeComplaints(), QStringList());
}

void TestMainWindowConnections::everyInputRenamesTheOutputFile() {
    const auto* name = find<QLineEdit>(*window, "lineEditOutputFileName");
    QSignalSpy renamed(name, &QLineEdit::textChanged);

    window->comboBoxSesType->setCurrentIndex(1);
    QCOMPARE(window->data.sessionTypeIndex, 1);
    QCOMPARE(name->text(), QStringLiteral("SUB001_experiment001.txt"));

    auto* code = find<QLineEdit>(*window, "lineEditSubCode");
    code->setFocus();
    code->selectAll();
    QTest::keyClicks(code, QStringLiteral("S7"));
    QCOMPARE(window->data.subjectCode, QStringLiteral("S7"));
    QCOMPARE(name->text(), QStringLiteral("S7_experiment001.txt"));

    find<QSpinBox>(*window, "spinBoxFileNumber")->setValue(12);
    QCOMPARE(window->data.fileNumber, 12);
    QCOMPARE(name->text(), QStringLiteral("S7_experiment012.txt"));
    QCOMPARE(window->data.outputFileName, name->text());
    // The session, the selection overtyped by "S", then "7", the number.
    QCOMPARE(renamed.count(), 4);

    find<QLineEdit>(*window, "lineEditOutputFileName")->setText(QStringLiteral("other"));
    window->comboBoxSoundType->setCurrentIndex(1);
    QCOMPARE(window->data.soundTypeIndex, 1);
    QCOMPARE(name->text(), QStringLiteral("S7_experiment012.txt"));
    find<QLineEdit>(*window, "lineEditOutputFileName")->setText(QStringLiteral("other"));
    window->comboBoxMainParameter->setCurrentIndex(1);
    QCOMPARE(window->data.mainParameterIndex, 1);
    QCOMPARE(name->text(), QStringLiteral("S7_experiment012.txt"));
}

void TestMainWindowConnections::doNothingDoesNothing() {
    QSignalSpy transferred(window.get(), &MainWindow::transferParameters);
    QSignalSpy playing(window.get(), &MainWindow::soundPlaying);
    const auto before = window->grab().toImage();
    QVERIFY(QMetaObject::invokeMethod(window.get(), "doNothing"));
    QCOMPARE(transferred.count() + playing.count(), 0);
    QCOMPARE(window->grab().toImage(), before);
    QVERIFY(window->isEnabled());
}
