// The name proposed for a results file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Returns subjectCode_sessionTypeNNN.txt, NNN the file number with at least three digits:
/// "SUB001_practice001.txt". A longer number is written whole.
QString proposedOutputFileName(const QString& subjectCode, const QString& sessionType,
                               int fileNumber);
