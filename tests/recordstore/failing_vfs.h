#pragma once

// The storage under SQLite, made to fail at a chosen step: a full disk, a dying drive. Becomes SQLite's
// default.

#include <sqlite3.h>

namespace kova::testing {

/// Registers it; once in a process.
void InstallFailingVfs();

/// From now on the `step`th write, truncation or flush (from 1) and all later ones fail with `code`,
/// SQLITE_FULL say. 0: nothing fails.
void FailFromStep(int step, int code);

/// How many such steps there were since FailFromStep.
int StepsTaken();

}  // namespace kova::testing
