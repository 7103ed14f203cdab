// How much of the waveform is drawn.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

struct Data;

/// Recomputes nPointsToPlot from plotDuration and samplingRate. A sound of fewer samples shortens
/// the stretch, and plotDuration keeps the shorter value for the sounds that follow.
void limitPlotToSound(Data& data);
