// Collects what the program writes on the log.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LogLines.h"

#include <QtGlobal>

namespace testsupport {

namespace {

// A message handler is a plain function, so what it collects has to stand outside of any object.
QStringList& allLines() {
    static QStringList lines;
    return lines;
}

QStringList& warningLines() {
    static QStringList lines;
    return lines;
}

QtMessageHandler& earlierHandler() {
    static QtMessageHandler handler = nullptr;
    return handler;
}

void collect(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // Windows closed at once may be gone when the X server is still asked about them: by chance,
    // and nobody's fault.
    if (qstrcmp(context.category, "qt.qpa.xcb") == 0)
        return;
    allLines().append(message);
    if (type == QtWarningMsg || type == QtCriticalMsg)
        warningLines().append(message);
    if (type == QtFatalMsg && earlierHandler() != nullptr)
        earlierHandler()(type, context, message);
}

} // namespace

LogLines::LogLines() {
    allLines().clear();
    warningLines().clear();
    earlierHandler() = qInstallMessageHandler(collect);
}

LogLines::~LogLines() {
    qInstallMessageHandler(earlierHandler());
}

QStringList LogLines::all() const {
    return allLines();
}

QStringList LogLines::warnings() const {
    return warningLines();
}

} // namespace testsupport
