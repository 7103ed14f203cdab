// Expected tables and runs, for the tests of the example analyses.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"

#include "session/ResultsFile.h"
#include "support/FileBytes.h"
#include "support/ProgramRun.h"
#include "support/TestTable.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

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

double inCents(double hertz, double targetHertz) {
    return 1200 * std::log(hertz / targetHertz) / std::log(2.0);
}

/// A field with a separator or a quote is quoted.
QString line(QStringList fields) {
    for (QString& field : fields)
        if (field.contains(QRegularExpression(QStringLiteral("[\t;\"]"))))
            field = u'"' + field.replace(u'"', QStringLiteral("\"\"")) + u'"';
    return fields.join(u'\t') + u'\n';
}

/// The values that an analysis computes from one session.
struct Computed {
    double targetHertz = 0;
    QVector<double> cents; ///< Of the requests.
    int octaveShift = 0;
    QVector<double> match; ///< Hz; empty without a request, as are the next two.
    QVector<double> matchCents;
    QVector<double> residual; ///< Cents.
    QString approachedFrom = QStringLiteral("NA");
};

Computed compute(const AnalysedSession& session, double targetHertz) {
    Computed computed;
    computed.targetHertz = session.targetHertz > 0 ? session.targetHertz : targetHertz;
    for (const double hertz : session.frequencies)
        computed.cents << inCents(hertz, computed.targetHertz);
    if (session.frequencies.isEmpty())
        return computed;
    const double match = session.frequencies.last();
    computed.match << match;
    computed.matchCents << computed.cents.last();
    for (const int octave : {-3, -2, -1, 1, 2, 3})
        if (std::abs(inCents(match, std::ldexp(computed.targetHertz, octave))) <= 100)
            computed.octaveShift = octave;
    computed.residual << inCents(match, std::ldexp(computed.targetHertz, computed.octaveShift));
    for (const double hertz : session.frequencies)
        if (hertz != match)
            computed.approachedFrom = hertz > match ? "above" : "below";
    return computed;
}

QStringList matchFields(const Computed& computed) {
    if (computed.match.isEmpty())
        return {"NA", "NA", "NA", "NA", "NA"};
    const double match = computed.match[0];
    return {QString::number(computed.targetHertz, 'g', 15), QString::number(computed.octaveShift),
            QString::number(computed.residual[0], 'f', 2), computed.approachedFrom,
            QString::number(inCents(match + 0.5, match - 0.5), 'f', 2)};
}

QString sessionLine(const AnalysedSession& session, const Computed& computed) {
    return line(QStringList{session.subject, session.type, QString::number(session.number),
                            computed.match.isEmpty() ? "NA" : session.target,
                            QString::number(session.frequencies.size()),
                            meanAndDeviation(computed.match)[0],
                            meanAndDeviation(computed.matchCents)[0]} +
                meanAndDeviation(session.frequencies) + meanAndDeviation(computed.cents) +
                matchFields(computed) + QStringList{session.fileName()});
}

/// The line of sessions of one subject and type.
QString groupLine(const AnalysedSession& session, const QVector<Computed>& group) {
    QSet<double> targets;
    QVector<double> matches;
    QVector<double> cents;
    QVector<double> residuals;
    int octaveErrors = 0;
    for (const Computed& computed : group) {
        if (!computed.match.isEmpty())
            targets << computed.targetHertz;
        matches += computed.match;
        cents += computed.matchCents;
        residuals += computed.residual;
        octaveErrors += computed.octaveShift != 0 ? 1 : 0;
    }
    const QString count = QString::number(matches.size());
    if (targets.size() > 1)
        matches.clear();
    return line(QStringList{session.subject, session.type, count} + meanAndDeviation(matches) +
                meanAndDeviation(cents) + QStringList{QString::number(octaveErrors)} +
                meanAndDeviation(residuals));
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

QString scriptName(const QStringList& command) {
    return QFileInfo(command[1]).fileName();
}

bool isThere(const QStringList& command) {
    return !command[0].isEmpty();
}

void addLanguages() {
    forLanguages(testsupport::columns<QStringList>("command"));
}

bool writeSessions(const QTemporaryDir& folder, const QVector<AnalysedSession>& sessions) {
    bool isWritten = true;
    for (const AnalysedSession& session : sessions) {
        const QByteArray text = resultsText(session.target, session.frequencies).toUtf8();
        isWritten &= testsupport::writeBytes(folder.filePath(session.fileName()),
                                             session.file.isEmpty() ? text : text + "\r\n\n");
    }
    return isWritten;
}

QString AnalysedSession::fileName() const {
    return file.isEmpty() ? proposedOutputFileName(subject, type, number) : file;
}

AnalysisRun analyse(const QStringList& command, const QStringList& arguments,
                    const QString& folder) {
    const testsupport::ProgramRun run =
        testsupport::runProgram(command[0], command.mid(1) + arguments, folder);
    return {run.status, QString::fromUtf8(run.output), QString::fromUtf8(run.errors)};
}

QString expectedTables(const QVector<AnalysedSession>& sessions, double targetHertz) {
    QString ofSessions = line(
        {"subject", "session", "number", "target", "requests", "match_hz", "match_cents",
         "requests_mean_hz", "requests_sd_hz", "requests_mean_cents", "requests_sd_cents",
         "target_hz", "octave_shift", "residual_cents", "approached_from", "grid_cents", "file"});
    QString ofMatches =
        line({"subject", "session", "matches", "match_mean_hz", "match_sd_hz", "match_mean_cents",
              "match_sd_cents", "octave_errors", "residual_mean_cents", "residual_sd_cents"});
    QVector<Computed> group;
    for (int i = 0; i < sessions.size(); ++i) {
        group << compute(sessions[i], targetHertz);
        ofSessions += sessionLine(sessions[i], group.last());
        const bool isLastOfGroup = i + 1 == sessions.size() ||
                                   sessions[i + 1].subject != sessions[i].subject ||
                                   sessions[i + 1].type != sessions[i].type;
        if (!isLastOfGroup)
            continue;
        ofMatches += groupLine(sessions[i], group);
        group.clear();
    }
    return ofSessions + u'\n' + ofMatches;
}
