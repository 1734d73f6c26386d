#pragma once

#include "history/store/Database.h"

namespace history {

/// Makes the tables in a database that is empty, or makes sure that the tables are the history's
/// own: throws `DamagedHistory` where others stand in their place, and `HistoryError` where the
/// database belongs to another program or to a later version of this one.
void prepareSchema(Database& database);

}  // namespace history
