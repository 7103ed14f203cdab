// Whether the fixture fails tests for everything unexpected.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Fixture.h"

#include "support/TestMain.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QThread>

/// Each of these tests fails only because of what the fixture finds. They run in their own process.
class CarelessTest : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void leavesNothing() { fixture->session(); }

    void warns() { qWarning("stray"); }

    void warnsFromAnotherThread() {
        std::unique_ptr<QThread> thread(QThread::create([] { qWarning("stray"); }));
        thread->start();
        QVERIFY(thread->wait());
    }

    void warnsWhileTheWindowGoes() {
        connect(fixture->window().spinBoxFileNumber, &QObject::destroyed,
                [] { qWarning("stray"); });
    }

    void lacksAWarning() { fixture->log.expect("expected"); }

    void misspellsAConnection() {
        connect(fixture->window().pushButtonGo, SIGNAL(clicked()), this, SLOT(missing()));
    }

    void connectsTwice() {
        auto& window = fixture->window();
        connect(window.pushButtonPractice, SIGNAL(clicked()), &window,
                SLOT(on_pushButtonPractice_clicked()));
        fixture->dialogs.cancelTarget();
        window.pushButtonPractice->click();
    }

    void opensADialog() { QMessageBox::warning(nullptr, "stray", "text"); }

    void leavesADialogOpen() {
        (new QMessageBox(QMessageBox::NoIcon, "stray", "text", QMessageBox::Ok, &fixture->window()))
            ->open();
    }

    void leavesAWindowOpen() {
        other.setWindowTitle("stray");
        other.show();
    }

    void lacksADialog() { fixture->dialogs.cancelTarget(); }

    void prints() { std::cerr << "stray\n"; }

    void failsAndWarns() {
        qWarning("stray");
        QFAIL("failed by itself");
    }

private:
    QWidget other;
};

class TestFixture : public QObject {
    Q_OBJECT

private slots:
    void leftoversFailTheTest_data() {
        QTest::addColumn<QString>("complaint");
        QTest::addColumn<int>("failures");
        const auto row = [](const char* test, const char* complaint, int failures = 1) {
            QTest::newRow(test) << QString(complaint) << failures;
        };
        row("leavesNothing", "PASS   : CarelessTest::leavesNothing()", 0);
        row("warns", "\"on the log: stray\"");
        row("warnsFromAnotherThread", "\"on the log: stray\"");
        row("warnsWhileTheWindowGoes", "\"on the log: stray\"");
        row("lacksAWarning", "\"the log lacks: expected\"");
        row("misspellsAConnection", "on the log: QObject::connect: No such slot");
        row("connectsTwice", R"(unexpected dialog \"Select a target sound file\": )");
        row("opensADialog", R"(unexpected dialog \"stray\": text)");
        row("leavesADialogOpen", "\"dialog still open: stray\"");
        row("leavesAWindowOpen", "\"still open: stray\"");
        row("lacksADialog", R"(no dialog \"Select a target sound file\" came)");
        row("prints", "\"printed: stray\"");
        row("failsAndWarns", "\"on the log: stray\"", 2);
    }

    void leftoversFailTheTest() {
        QFETCH(QString, complaint);
        QFETCH(int, failures);
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(),
                      {"careless", QString(QTest::currentDataTag())});
        QVERIFY(process.waitForFinished());
        const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
        QVERIFY2(output.contains(complaint), qPrintable(output));
        QCOMPARE(process.exitCode(), failures);
    }
};

int main(int argc, char** argv) {
    if (argc == 3 && qstrcmp(argv[1], "careless") == 0) {
        const QApplication application(argc, argv);
        CarelessTest test;
        return QTest::qExec(&test, {argv[0], argv[2]});
    }
    return testsupport::runWithWindows<TestFixture>(argc, argv);
}

#include "test_fixture.moc"
