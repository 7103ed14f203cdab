// The window of pellion-session recover --window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/RecoveryWindow.h"

#include "session/ResponseJournal.h"
#include "session/ResultsFile.h"
#include "support/DialogDriver.h"
#include "support/FileBytes.h"
#include "support/ManagedWindows.h"

#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProcessEnvironment>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

class TestRecoveryWindow : public QObject {
    Q_OBJECT

private slots:
    void runningSessionIsMentioned();
    void journalsAreShownAndSaved();
    void whatCannotBeSavedIsSaid();
    void folderIsChosen();
    void nothingToRecoverIsSaid();
    void everythingHasANameForScreenReaders();
    void programOpensTheWindowAndEndsWithIt();
};

namespace {

template <typename Widget> Widget* widget(const RecoveryWindow& window, const char* name) {
    return window.findChild<Widget*>(QLatin1String(name));
}

bool leaveJournal(const QTemporaryDir& folder, const QString& name) {
    return testsupport::writeBytes(folder.filePath(name + "-20260309-080559.txt"),
                                   resultsText("t.wav", {440, 441}).toUtf8());
}

void save(const RecoveryWindow& window) {
    QTest::mouseClick(widget<QPushButton>(window, "pushButtonSave"), Qt::LeftButton);
}

} // namespace

void TestRecoveryWindow::programOpensTheWindowAndEndsWithIt() {
    const QTemporaryDir home;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", home.path());
    program.setProcessEnvironment(environment);
    QTRY_VERIFY(testsupport::managedWindows().isEmpty());
    program.start(QStringLiteral(PELLION_SESSION), {"recover", "--window"});
    QTRY_COMPARE_WITH_TIMEOUT(testsupport::managedWindows().size(), 1, 20000);
    const testsupport::ManagedWindow window = testsupport::managedWindows().constFirst();
    QCOMPARE(window.title, QStringLiteral("Recover Pellion responses"));
    QVERIFY(testsupport::closeManagedWindow(window.id));
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(program.readAllStandardError(), QByteArray());
}

void TestRecoveryWindow::runningSessionIsMentioned() {
    const QTemporaryDir journals;
    const QTemporaryDir folder;
    ResponseJournal journal(journals.path());
    journal.begin("SUB001_practice001.txt", QDateTime::currentDateTime());
    journal.record("t.wav", {500});
    const RecoveryWindow window(journals.path(), folder.path());
    QCOMPARE(widget<QLabel>(window, "labelMessage")->text(),
             QString("Please note: journals left alone, because a running session holds them or "
                     "they cannot be read: 1."));
    QVERIFY(!widget<QPushButton>(window, "pushButtonSave")->isEnabled());
}

void TestRecoveryWindow::journalsAreShownAndSaved() {
    const QTemporaryDir journals;
    const QTemporaryDir folder;
    QVERIFY(leaveJournal(journals, "SUB001_practice007"));
    RecoveryWindow window(journals.path(), folder.path());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto* table = widget<QTableWidget>(window, "tableJournals");
    QCOMPARE(table->rowCount(), 1);
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column)
        texts << table->item(0, column)->text();
    QCOMPARE(texts,
             QStringList({"SUB001", "practice", "007", "2026-03-09 08:05:59", "t.wav", "2"}));
    save(window);
    const QString copy = folder.filePath("SUB001_practice007.txt");
    QCOMPARE(widget<QLabel>(window, "labelMessage")->text(), copy + ": saved");
    QCOMPARE(testsupport::readBytes(copy), resultsText("t.wav", {440, 441}).toUtf8());
    QCOMPARE(table->rowCount(), 0);
    QVERIFY(!widget<QPushButton>(window, "pushButtonSave")->isEnabled());
    QTest::mouseClick(widget<QPushButton>(window, "pushButtonClose"), Qt::LeftButton);
    QVERIFY(!window.isVisible());
}

void TestRecoveryWindow::whatCannotBeSavedIsSaid() {
    const QTemporaryDir journals;
    const QTemporaryDir folder;
    QVERIFY(leaveJournal(journals, "a name of one's own"));
    RecoveryWindow window(journals.path(), folder.filePath("missing"));
    window.show();
    save(window);
    const auto* message = widget<QLabel>(window, "labelMessage");
    QCOMPARE(message->text(), "There is no folder \"" + folder.filePath("missing") + "\".");
    widget<QLineEdit>(window, "lineEditFolder")->setText(folder.path());
    save(window);
    QVERIFY2(message->text().contains(" is kept: its name does not hold session type"),
             qPrintable(message->text()));
    QCOMPARE(widget<QTableWidget>(window, "tableJournals")->rowCount(), 1);
}

void TestRecoveryWindow::folderIsChosen() {
    const QTemporaryDir folder;
    const QTemporaryDir chosen;
    testsupport::DialogDriver dialogs;
    const RecoveryWindow window(folder.path(), folder.path());
    auto* const button = widget<QPushButton>(window, "pushButtonFolder");
    auto* const field = widget<QLineEdit>(window, "lineEditFolder");
    dialogs.expect("Save in folder",
                   [](QWidget* widget) { qobject_cast<QDialog*>(widget)->reject(); });
    button->click();
    QCOMPARE(field->text(), folder.path());
    dialogs.expect("Save in folder", [&](QWidget* widget) {
        widget->findChild<QLineEdit*>("fileNameEdit")->setText(chosen.path());
        qobject_cast<QDialog*>(widget)->accept();
    });
    button->click();
    QCOMPARE(field->text(), chosen.path());
    QCOMPARE(dialogs.takeComplaints(), QStringList());
}

void TestRecoveryWindow::nothingToRecoverIsSaid() {
    const QTemporaryDir folder;
    RecoveryWindow window(folder.filePath("missing"), folder.path());
    QCOMPARE(widget<QLabel>(window, "labelMessage")->text(),
             QString("There are no responses to recover."));
    QVERIFY(!widget<QPushButton>(window, "pushButtonSave")->isEnabled());
}

void TestRecoveryWindow::everythingHasANameForScreenReaders() {
    const QTemporaryDir folder;
    const RecoveryWindow window(folder.path(), folder.path());
    for (const char* name : {"labelMessage", "tableJournals", "lineEditFolder", "pushButtonFolder",
                             "pushButtonSave", "pushButtonClose"})
        QVERIFY2(!widget<QWidget>(window, name)->accessibleName().isEmpty(), name);
}

QTEST_MAIN(TestRecoveryWindow)
#include "session_tool_window.moc"
