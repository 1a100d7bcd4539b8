// The search trees of a Depot file. A search that comes to a record a second time never ends.
#ifndef TEMBRA_DATABASE_SEARCH_TREES_H
#define TEMBRA_DATABASE_SEARCH_TREES_H

#include "database/depot_file.h"

namespace tembra {

/// Whether every search ends. True also of links that lead nowhere, where a search ends, too, and of a file that cannot
/// be looked at for want of memory.
bool searchesEnd(DepotFile& file, const DepotHeader& header);

}  // namespace tembra

#endif
