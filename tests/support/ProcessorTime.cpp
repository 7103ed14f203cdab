// The processor time of processes.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ProcessorTime.h"
#include "support/FileBytes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <unistd.h>

namespace testsupport {

qint64 processorTimeMs(qint64 processId) {
    const QByteArray status = readBytes(QStringLiteral("/proc/%1/stat").arg(processId));
    // The program's name is in parentheses and may hold any character. After it, user and system
    // time are the twelfth and thirteenth field (proc(5)).
    constexpr int userTime = 11;
    const QList<QByteArray> fields = status.mid(status.lastIndexOf(')') + 2).split(' ');
    if (fields.size() <= userTime + 1)
        return -1;
    const qint64 ticks = fields[userTime].toLongLong() + fields[userTime + 1].toLongLong();
    return ticks * 1000 / ::sysconf(_SC_CLK_TCK);
}

double processorShareWhileWaiting(int milliseconds) {
    const qint64 before = processorTimeMs(QCoreApplication::applicationPid());
    QElapsedTimer clock;
    clock.start();
    QTest::qWait(milliseconds);
    return double(processorTimeMs(QCoreApplication::applicationPid()) - before) /
           double(clock.elapsed());
}

} // namespace testsupport
