// The most memory that a process of its own holds at once: the whole process, from its start to its end.

#pragma once

#include "medians.h"

/// Measures the library with the large project open and every container read once, and libxml2 with the same file read.
/// To be called before this process takes much memory itself.
void MeasurePeaks(Figures& figures);

/// The other side: does the work of the child that MeasurePeaks starts. False when the arguments are not its own.
bool RunAsChild(int argumentCount, char** arguments);
