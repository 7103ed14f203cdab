// Shows the warnings of the signal library in boxes, in every program that links this file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/WarningBox.h"
#include "signal/WarningReport.h"

#include <QApplication>
#include <QThread>

namespace {

/// Prints the text where no box can be shown: without a QApplication or outside its thread.
void showOrPrint(const QString& text) {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application != nullptr && application->thread() == QThread::currentThread())
        showWarning(nullptr, text);
    else
        printWarning(text);
}

[[maybe_unused]] const WarningReporter earlier = setWarningReporter(showOrPrint);

} // namespace
