// The name and the text of a results file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/ResultsFile.h"

#include <QTextStream>

QString proposedOutputFileName(const QString& subjectCode, const QString& sessionType,
                               int fileNumber) {
    constexpr int minimumDigits = 3;
    const QString number = QString::number(fileNumber).rightJustified(minimumDigits, u'0');
    return subjectCode + u'_' + sessionType + number + QStringLiteral(".txt");
}

QString resultsHeader() {
    return QStringLiteral("filename\tnTrials\tfrequency matched (Hz)\r\n");
}

QString resultsLines(const QString& targetFileName, const QVector<double>& frequenciesMatched,
                     int firstRequest) {
    QString text;
    QTextStream stream(&text);
    for (int request = firstRequest; request < frequenciesMatched.size(); ++request)
        stream << targetFileName << '\t' << request + 1 << '\t' << frequenciesMatched[request]
               << "\r\n";
    stream.flush();
    return text;
}

QString resultsText(const QString& targetFileName, const QVector<double>& frequenciesMatched) {
    return resultsHeader() + resultsLines(targetFileName, frequenciesMatched);
}
