// The example analyses, on results files that the program wrote.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"
#include "sessions/end_to_end_room.h"

#include <QFile>
#include <QtTest>

class TestAnalysisOfSessions : public RoomTest {
    Q_OBJECT

private slots:
    void whatTheProgramWroteIsRead_data() { addLanguages(); }
    void whatTheProgramWroteIsRead();
};

void TestAnalysisOfSessions::whatTheProgramWroteIsRead() {
    QFETCH(QStringList, command);
    const Target target = room->tone("tone 440.wav");
    const QVector<QVector<int>> requests{{300, 441}, {438}, {}};
    QVector<AnalysedSession> sessions;
    for (const QVector<int>& frequencies : requests) {
        room->prepare(SessionRoom::Session::Practice, target);
        QVERIFY(room->start());
        QVERIFY(room->playTarget());
        AnalysedSession session{"SUB001", "practice", room->fileNumber(), "tone 440.wav", {}};
        for (const int frequency : frequencies) {
            QVERIFY(room->playSinusoid(frequency));
            session.frequencies.append(frequency);
        }
        QVERIFY(QFile::exists(room->finish()));
        sessions.append(session);
    }
    const AnalysisRun run = analyse(command, {"--target", "440", room->folder.path()});
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
}

QTEST_MAIN(TestAnalysisOfSessions)
#include "analysis_sessions.moc"
