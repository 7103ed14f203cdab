// The example analyses, on results files that the program wrote.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"
#include "support/Fixture.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>

class TestAnalysisOfSessions : public testsupport::FixtureTest {
    Q_OBJECT

private slots:
    void resultsOfTheProgramAreRead_data() { addLanguages(); }
    void resultsOfTheProgramAreRead();
};

void TestAnalysisOfSessions::resultsOfTheProgramAreRead() {
    QFETCH(QStringList, command);
    const QString target = fixture->writeTone("tone 440.wav");
    const QVector<QVector<int>> requests{{300, 441}, {438}, {}};
    QVector<AnalysedSession> sessions;
    for (const QVector<int>& frequencies : requests) {
        fixture->prepare(target);
        QVERIFY(fixture->start());
        QVERIFY(fixture->playTarget());
        AnalysedSession session{"SUB001", "practice", fixture->fileNumber(), "tone 440.wav", {}};
        for (const int frequency : frequencies) {
            QVERIFY(fixture->playSinusoid(frequency));
            session.frequencies.append(frequency);
        }
        QVERIFY(QFile::exists(fixture->finish()));
        sessions.append(session);
    }
    const AnalysisRun run = analyse(command, {"--target", "440", fixture->folder.path()});
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestAnalysisOfSessions>(argc, argv);
}

#include "analysis_sessions.moc"
