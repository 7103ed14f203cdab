// Collects what the program writes on the log.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LogLines.h"

#include <QMutex>
#include <QtGlobal>

#include <algorithm>

namespace testsupport {

namespace {

// A message handler is a plain function, so the collected lines cannot belong to an object.
QStringList& allLines() {
    static QStringList lines;
    return lines;
}

QStringList& warningLines() {
    static QStringList lines;
    return lines;
}

// The sound server's client warns from a separate thread.
QMutex& mutex() {
    static QMutex theMutex;
    return theMutex;
}

QtMessageHandler& earlierHandler() {
    static QtMessageHandler handler = nullptr;
    return handler;
}

void collect(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // A window that is closed at once may be gone when the X server is asked about it: a harmless
    // race.
    if (qstrcmp(context.category, "qt.qpa.xcb") == 0)
        return;
    const QMutexLocker lock(&mutex());
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
    const QMutexLocker lock(&mutex());
    return allLines();
}

QStringList LogLines::warnings() const {
    const QMutexLocker lock(&mutex());
    return warningLines();
}

QStringList LogLines::takeComplaints() {
    QStringList complaints;
    for (const QString& warning : warnings())
        if (!expectedWarnings.removeOne(warning) &&
            std::none_of(allowedBeginnings.cbegin(), allowedBeginnings.cend(),
                         [&](const QString& begin) { return warning.startsWith(begin); }))
            complaints.append(QStringLiteral("on the log: ") + warning);
    for (const QString& warning : qAsConst(expectedWarnings))
        complaints.append(QStringLiteral("the log lacks: ") + warning);
    expectedWarnings.clear();
    const QMutexLocker lock(&mutex());
    warningLines().clear();
    return complaints;
}

} // namespace testsupport
