// Shows the warnings of the signal library in boxes, in every program that links the windows.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/Warnings.h"
#include "signal/WarningReport.h"

#include <QApplication>
#include <QThread>

namespace {

/// Where no box can be shown, in a program without a QApplication or outside its thread, the text
/// is printed.
void showOrPrint(const QString& text) {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application != nullptr && application->thread() == QThread::currentThread())
        showWarning(nullptr, text);
    else
        printWarning(text);
}

[[maybe_unused]] const WarningReporter earlier = setWarningReporter(showOrPrint);

} // namespace
