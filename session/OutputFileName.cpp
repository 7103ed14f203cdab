// The name proposed for a results file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/OutputFileName.h"

QString proposedOutputFileName(const QString& subjectCode, const QString& sessionType,
                               int fileNumber) {
    constexpr int leastDigits = 3;
    const QString number = QString::number(fileNumber).rightJustified(leastDigits, u'0');
    return subjectCode + u'_' + sessionType + number + QStringLiteral(".txt");
}
