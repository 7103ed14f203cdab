// How the signal library reports what a caller should not have asked for.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "signal/WarningReport.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QThread>

#include <iostream>

namespace {

bool canShowBoxes() {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    return application != nullptr && application->thread() == QThread::currentThread();
}

} // namespace

void reportWarning(const QString& text) {
    if (canShowBoxes())
        QMessageBox::warning(nullptr, QStringLiteral("Warning"), text, QMessageBox::Ok);
    else
        std::cerr << text.toStdString() << std::endl;
}
