// What the tests of the example analyses share.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"

#include "support/ProgramRun.h"
#include "support/TestTable.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

const QString folderOfAnalyses = QStringLiteral(PELLION_ANALYSIS);

QStringList commandOf(const char* interpreter, const char* script) {
    return {QString::fromUtf8(interpreter), folderOfAnalyses + u'/' + QLatin1String(script)};
}

QStringList meanAndDeviation(const QVector<double>& values) {
    const QString none = QStringLiteral("NA");
    if (values.isEmpty())
        return {none, none};
    double sum = 0;
    for (const double value : values)
        sum += value;
    const double mean = sum / values.size();
    double squares = 0;
    for (const double value : values)
        squares += (value - mean) * (value - mean);
    return {QString::number(mean, 'f', 2),
            values.size() < 2 ? none
                              : QString::number(std::sqrt(squares / (values.size() - 1)), 'f', 2)};
}

QVector<double> inCents(QVector<double> hertz, double targetHertz) {
    for (double& value : hertz)
        value = 1200 * std::log(value / targetHertz) / std::log(2.0);
    return hertz;
}

QStringList statisticsOf(const QVector<double>& hertz, double targetHertz) {
    return meanAndDeviation(hertz) + meanAndDeviation(inCents(hertz, targetHertz));
}

QString line(const QStringList& fields) {
    return fields.join(u'\t') + u'\n';
}

/// The last request, or none.
QVector<double> matchOf(const AnalysedSession& session) {
    return session.frequencies.mid(std::max(session.frequencies.size() - 1, 0));
}

} // namespace

const QStringList& python() {
    static const QStringList command = commandOf(PELLION_PYTHON, "matches.py");
    return command;
}

const QStringList& statisticsLanguage() {
    static const QStringList command = commandOf(PELLION_RSCRIPT, "matches.R");
    return command;
}

bool isThere(const QStringList& command) {
    return !command[0].isEmpty();
}

void addLanguages() {
    forLanguages(testsupport::columns<QStringList>("command"));
}

AnalysisRun analyse(const QStringList& command, const QString& target, const QStringList& paths,
                    const QString& picture) {
    QStringList arguments = command.mid(1) + QStringList{"--target", target};
    if (!picture.isEmpty())
        arguments << "--picture" << picture;
    const testsupport::ProgramRun run = testsupport::runProgram(command[0], arguments + paths);
    return {run.status, QString::fromUtf8(run.output), QString::fromUtf8(run.errors)};
}

QString expectedTables(const QVector<AnalysedSession>& sessions, double targetHertz) {
    QString tables =
        line({"subject", "session", "number", "target", "requests", "match_hz", "match_cents",
              "requests_mean_hz", "requests_sd_hz", "requests_mean_cents", "requests_sd_cents"});
    for (const AnalysedSession& session : sessions) {
        const QVector<double> match = matchOf(session);
        tables += line(QStringList{session.subject, session.type, QString::number(session.number),
                                   match.isEmpty() ? "NA" : session.target,
                                   QString::number(session.frequencies.size()),
                                   meanAndDeviation(match)[0],
                                   meanAndDeviation(inCents(match, targetHertz))[0]} +
                       statisticsOf(session.frequencies, targetHertz));
    }
    tables += u'\n' + line({"subject", "session", "matches", "match_mean_hz", "match_sd_hz",
                            "match_mean_cents", "match_sd_cents"});
    QVector<double> matches;
    for (int i = 0; i < sessions.size(); ++i) {
        matches += matchOf(sessions[i]);
        const bool isLastOfGroup = i + 1 == sessions.size() ||
                                   sessions[i + 1].subject != sessions[i].subject ||
                                   sessions[i + 1].type != sessions[i].type;
        if (!isLastOfGroup)
            continue;
        tables += line(
            QStringList{sessions[i].subject, sessions[i].type, QString::number(matches.size())} +
            statisticsOf(matches, targetHertz));
        matches.clear();
    }
    return tables;
}
