#pragma once

// The tables of a practice on a server: laying them out, and what version they are.

#include <string>

#include "platform/recordstore/odbc/session.h"

namespace kova::store {

/// kDone when the database is of this program's layout; kOldVersion, kWrongVersion, or kNoDatabase when it holds none, or one
/// that a migration is not finished in, unless it is wanted.
Result CheckServerLayout(odbc::Session& session, bool wantsUnfinished);

/// Marks the database as one that a migration is not finished in, for whichever folder names it, or takes the mark away.
Result MarkServerUnfinished(odbc::Session& session, bool isUnfinished);

/// Lays out an empty practice, making the database when it is missing. The account needs the rights for it. kDuplicate,
/// and nothing is changed, when there is one already.
Result CreateServerDatabase(const ServerSettings& settings, std::string& problem);

/// Brings the tables of an older program to this one's layout; the records stay. Nothing is done to a layout that is
/// this one.
Result UpgradeServerDatabase(const ServerSettings& settings, std::string& problem);

}  // namespace kova::store
