// The memory, files and threads that a process holds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/ProcessResources.h"

#include "support/FileBytes.h"

#include <QByteArrayList>
#include <QDir>
#include <QTest>

#include <malloc.h>

namespace {

int entriesOf(const char* folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

ProcessResources ownResources() {
    ProcessResources resources;
    constexpr double kibibytesInMebibyte = 1024;
    // Each line has a name, a number and a unit (proc(5)).
    for (const QByteArray& line : testsupport::readBytes("/proc/self/smaps_rollup").split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        const double mebibytes = words.value(1).toDouble() / kibibytesInMebibyte;
        if (words[0] == "Rss:")
            resources.residentMiB = mebibytes;
        else if (words[0] == "Private_Dirty:")
            resources.privateMiB = mebibytes;
    }
    const struct mallinfo2 heap = mallinfo2();
    resources.allocatedMiB =
        double(heap.uordblks + heap.hblkhd) / kibibytesInMebibyte / kibibytesInMebibyte;
    // The descriptor of the folder being read is among them.
    resources.descriptors = entriesOf("/proc/self/fd");
    resources.threads = entriesOf("/proc/self/task");
    return resources;
}

void handleDeferredEvents() {
    constexpr int durationMs = 200;
    QTest::qWait(durationMs);
}

ProcessResources resourcesAtRest() {
    handleDeferredEvents();
    malloc_trim(0);
    return ownResources();
}

double growthOfMemory(const QVector<ProcessResources>& held, int firstIndex) {
    double products = 0;
    double squares = 0;
    const double middle = (firstIndex + held.size() - 1) / 2.0;
    for (int i = firstIndex; i < held.size(); ++i) {
        products += (i - middle) * held[i].residentMiB;
        squares += (i - middle) * (i - middle);
    }
    return products / squares;
}
