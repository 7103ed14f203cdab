// The name and the text of a results file.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVector>

/// Returns subjectCode_sessionTypeNNN.txt, NNN the file number with at least three digits:
/// "SUB001_practice001.txt". A longer number is written whole.
QString proposedOutputFileName(const QString& subjectCode, const QString& sessionType,
                               int fileNumber);

/// Returns the first line of a results file, which names the fields.
QString resultsHeader();

/// Returns the lines of a results file for the requests of a sinusoid from `firstRequest` on, which
/// counts from 0: the target's file name, the number of the request counted from 1, and its
/// frequency in Hz with up to six significant digits. Fields are separated by a tab, lines end in
/// CR LF, and numbers have a decimal point in every locale.
QString resultsLines(const QString& targetFileName, const QVector<double>& frequenciesMatched,
                     int firstRequest = 0);

/// Returns the text of a results file: the header, then the lines of all requests.
QString resultsText(const QString& targetFileName, const QVector<double>& frequenciesMatched);
