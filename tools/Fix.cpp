// The command that makes a target of a file that is none yet.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/Fix.h"

#include <QFileInfo>

#include <algorithm>

namespace {

/// Returns a file's name as one word of a shell's command line, which no program takes for an
/// option.
QString nameWord(const QString& fileName) {
    QString name = fileName.startsWith(u'-') ? QStringLiteral("./") + fileName : fileName;
    const bool isPlain = std::all_of(name.cbegin(), name.cend(), [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("/._-+").contains(character);
    });
    return isPlain ? name : u'\'' + name.replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

QString fixedName(const QString& fileName) {
    const QFileInfo file(fileName);
    const QString folder = fileName.left(fileName.size() - file.fileName().size());
    return folder + file.completeBaseName() + QStringLiteral("-fixed.wav");
}

} // namespace

QString fixCommand(const QString& fileName) {
    return QStringLiteral("pellion-target convert ") + nameWord(fileName) + u' ' +
           nameWord(fixedName(fileName));
}
