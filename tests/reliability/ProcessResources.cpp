// What a program holds of the system's memory, files and threads.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/ProcessResources.h"

#include "support/FileBytes.h"

#include <QByteArrayList>
#include <QDir>

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
    // The folder that is being read is one of them each time.
    resources.descriptors = entriesOf("/proc/self/fd");
    resources.threads = entriesOf("/proc/self/task");
    return resources;
}
