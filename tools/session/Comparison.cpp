// Today's sound, compared with that of a good day.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/Comparison.h"

#include <QJsonValue>
#include <QVariant>

#include <algorithm>

namespace {

QString valueText(const QJsonValue& value) {
    if (value.isBool())
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    const QString text = value.toVariant().toString();
    return text.isEmpty() ? QStringLiteral("none") : text;
}

} // namespace

QVector<SessionFinding> differences(const SoundState& goodDay, const SoundState& today) {
    QVector<SessionFinding> findings;
    const QJsonObject valuesThen = lastingValues(goodDay);
    const QJsonObject valuesNow = lastingValues(today);
    for (auto then = valuesThen.begin(); then != valuesThen.end(); ++then) {
        const QJsonValue now = valuesNow.value(then.key());
        if (now != then.value())
            findings.append({"changed",
                             QStringLiteral("%1: %2, on the good day %3")
                                 .arg(then.key(), valueText(now), valueText(then.value())),
                             "Change it back, or keep today's state by --save."});
    }
    return findings;
}

ComparedFindings compareSound(const SoundState& today, const std::optional<SavedState>& goodDay) {
    ComparedFindings compared;
    QVector<SessionFinding> known;
    if (goodDay)
        known = soundFindings(goodDay->sound);
    for (const SessionFinding& finding : soundFindings(today)) {
        const bool isKnown = std::any_of(known.cbegin(), known.cend(), [&](const auto& other) {
            return other.subject == finding.subject && other.problem == finding.problem;
        });
        (isKnown ? compared.notes : compared.findings).append(finding);
    }
    if (goodDay && today.problem.isEmpty())
        compared.findings += differences(goodDay->sound, today);
    return compared;
}
