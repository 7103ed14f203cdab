// Today's sound, compared with a saved state.
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

QVector<SessionFinding> differences(const SoundState& saved, const SoundState& today) {
    QVector<SessionFinding> findings;
    const QJsonObject valuesThen = lastingValues(saved);
    const QJsonObject valuesNow = lastingValues(today);
    for (auto then = valuesThen.begin(); then != valuesThen.end(); ++then) {
        const QJsonValue now = valuesNow.value(then.key());
        if (now != then.value())
            findings.append({"changed",
                             QStringLiteral("%1: %2, saved: %3")
                                 .arg(then.key(), valueText(now), valueText(then.value())),
                             "Change it back, or keep today's state by --save."});
    }
    return findings;
}

ComparedFindings compareSound(const SoundState& today, const std::optional<SavedState>& saved) {
    ComparedFindings compared;
    QVector<SessionFinding> known;
    if (saved)
        known = soundFindings(saved->sound);
    for (const SessionFinding& finding : soundFindings(today)) {
        const bool isKnown = std::any_of(known.cbegin(), known.cend(), [&](const auto& other) {
            return other.subject == finding.subject && other.problem == finding.problem;
        });
        (isKnown ? compared.notes : compared.findings).append(finding);
    }
    if (saved && today.problem.isEmpty())
        compared.findings += differences(saved->sound, today);
    return compared;
}
