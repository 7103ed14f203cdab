// The command that converts a file with problems to a target.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/Fix.h"

#include <QFileInfo>

#include <algorithm>

namespace {

/// Quotes a file's name for the shell, so that it is one word and not taken for an option.
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
