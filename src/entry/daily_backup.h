#pragma once

#include "entry/session.h"

namespace kova::entry {

/// Called where a dialog opens: starts the practice's backup of the day in a program of its own where it is due, and
/// tells the user, once a day, of one that failed. Costs two small files where the settings name a backup folder.
void MindDailyBackup(const Session& session);

}  // namespace kova::entry
