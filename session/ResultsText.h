// What a results file holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVector>

/// Returns the text of a results file: a header line, then one line per request of a sinusoid with
/// the target's file name, the number of the request counted from 1, and its frequency in Hz with
/// up to six significant digits. Fields are separated by a tab, lines end in CR LF; the decimal
/// point is a point in every locale.
QString resultsText(const QString& targetFileName, const QVector<double>& frequenciesMatched);
