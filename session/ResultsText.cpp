// What a results file holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/ResultsText.h"

#include <QTextStream>

QString resultsText(const QString& targetFileName, const QVector<double>& frequenciesMatched) {
    QString text;
    QTextStream stream(&text);
    stream << "filename\tnTrials\tfrequency matched (Hz)\r\n";
    int request = 0;
    for (const double frequency : frequenciesMatched)
        stream << targetFileName << '\t' << ++request << '\t' << frequency << "\r\n";
    return text;
}
