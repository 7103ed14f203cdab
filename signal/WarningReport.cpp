// How the signal library reports calls with questionable arguments.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/WarningReport.h"

#include <QString>

#include <iostream>
#include <utility>

namespace {
// Constant-initialised, so that it can be replaced while other files are being initialised.
WarningReporter currentReporter = printWarning;
} // namespace

void printWarning(const QString& text) {
    std::cerr << text.toStdString() << std::endl;
}

void reportWarning(const QString& text) {
    currentReporter(text);
}

WarningReporter setWarningReporter(WarningReporter reporter) {
    return std::exchange(currentReporter, reporter);
}
