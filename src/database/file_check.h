// Damage that must not reach the Depot library, because it crashes on it or never returns. Any other damage it notices
// by itself.
#ifndef TEMBRA_DATABASE_FILE_CHECK_H
#define TEMBRA_DATABASE_FILE_CHECK_H

namespace tembra {

/// Whether every walk and every search of a file that the Depot library has opened comes to an end. Reads by the
/// library's own descriptor: closing another one of the same file would drop its lock.
bool isSafeToRead(int descriptor);

/// Whether the repair of a file that is not open comes to an end, with a file that is not much larger.
bool isSafeToRepair(const char* path);

}  // namespace tembra

#endif
