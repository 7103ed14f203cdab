// What results files and journals hold, for tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectedResults.h"

namespace testsupport {

QByteArray expectedResults(const QString& targetName, const QStringList& frequencies) {
    QString lines = QStringLiteral("filename\tnTrials\tfrequency matched (Hz)\r\n");
    int request = 0;
    for (const QString& frequency : frequencies)
        lines +=
            QStringLiteral("%1\t%2\t%3\r\n").arg(targetName, QString::number(++request), frequency);
    return lines.toLocal8Bit();
}

QByteArray expectedResults(const QString& targetName, const QVector<int>& frequencies) {
    QStringList texts;
    for (const int frequency : frequencies)
        texts.append(QString::number(frequency));
    return expectedResults(targetName, texts);
}

} // namespace testsupport
