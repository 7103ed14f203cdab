// The journals that earlier sessions have left.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/KeptJournals.h"

#include "session/JournalLock.h"
#include "session/ResponseJournal.h"
#include "session/ResultsFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <tuple>

namespace {

/// Parses the name of a journal: the proposed name of the results file, the session's start, and a
/// number if several sessions have started within one second. A shortened name may have lost digits
/// of its file number.
void readName(const QString& name, KeptJournal& journal) {
    static const QRegularExpression pattern(
        QStringLiteral(
            "^((.*)_(practice|experiment)(\\d{3,})|.*)-(\\d{8}-\\d{6})(?:-\\d+)?\\.txt$"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(name);
    journal.start = QDateTime::fromString(match.captured(5), QStringLiteral("yyyyMMdd-HHmmss"));
    if (match.capturedLength(1) >= maximumResultsNameLength)
        return;
    journal.subject = match.captured(2);
    journal.sessionType = match.captured(3);
    journal.number = match.captured(4);
}

/// Finds the whole lines. After a failed write or a loss of power, a journal may end in a part of a
/// line, in line feeds or in zeros.
void readResponses(const QByteArray& bytes, KeptJournal& journal) {
    // Matched from the right: the name of a target may contain anything.
    static const QRegularExpression pattern(
        QStringLiteral("^(.*)\\t(\\d+)\\t(\\d+(?:\\.\\d+)?(?:e\\+\\d+)?)$"));
    const QByteArray header = resultsHeader().toLatin1();
    int end = 0;
    if (bytes.startsWith(header)) {
        end = header.size();
        for (int next = bytes.indexOf("\r\n", end); next >= 0; next = bytes.indexOf("\r\n", end)) {
            const QRegularExpressionMatch line =
                pattern.match(QString::fromLocal8Bit(bytes.mid(end, next - end)));
            if (!line.hasMatch() || line.captured(2).toInt() != journal.responses + 1)
                break;
            journal.target = line.captured(1);
            ++journal.responses;
            end = next + 2;
        }
        journal.results = bytes.left(end);
    }
    journal.bytesLeftOut = int(std::count_if(bytes.cbegin() + end, bytes.cend(), [](char byte) {
        return byte != '\r' && byte != '\n';
    }));
}

} // namespace

KeptJournal readJournal(const QString& path, const QByteArray& bytes) {
    KeptJournal journal;
    journal.path = path;
    readName(QFileInfo(path).fileName(), journal);
    readResponses(bytes, journal);
    return journal;
}

QString leftAloneText(const KeptJournals& kept) {
    return QStringLiteral("journals left alone, because a running session holds them or they "
                          "cannot be read: %1")
        .arg(kept.leftAlone);
}

KeptJournals keptJournals(const QString& folder) {
    KeptJournals kept;
    for (const QFileInfo& file :
         QDir(folder).entryInfoList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name)) {
        const JournalLock lock(file.filePath());
        if (const auto bytes = lock.contents())
            kept.journals.append(readJournal(file.filePath(), *bytes));
        else
            ++kept.leftAlone;
    }
    // Of sessions that started within one second, the later ones have an additional number in their
    // names.
    std::sort(kept.journals.begin(), kept.journals.end(),
              [](const KeptJournal& journal, const KeptJournal& other) {
                  return std::make_tuple(journal.start, journal.path.size(), journal.path) <
                         std::make_tuple(other.start, other.path.size(), other.path);
              });
    return kept;
}
