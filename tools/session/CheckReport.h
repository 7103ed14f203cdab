// The report of "pellion-session check".
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/session/Comparison.h"
#include "tools/session/ComputerState.h"

struct CheckReport {
    ComputerState state;
    QVector<SessionFinding> findings;
    QVector<SessionFinding> notes; ///< Problems that the saved state has as well.
};

/// Finds what is wrong with a state, compared with a saved one if there is one.
CheckReport checkReport(const ComputerState& state, const std::optional<SavedState>& saved);

/// Returns the report as lines of text, or as one JSON object.
QString reportText(const CheckReport& report);
QString reportJson(const CheckReport& report);
