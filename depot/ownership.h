// Whose the file in the database's place is. In a folder such as /tmp any user may put a file or a link there.
#ifndef TEMBRA_DEPOT_OWNERSHIP_H
#define TEMBRA_DEPOT_OWNERSHIP_H

namespace tembra::depot {

/// Whether the name is a symbolic link that belongs to neither root nor this user. Such a link may lead to a file that
/// its owner must not write.
bool isForeignLink(const char* path);

/// Whether the file, or a link to it, belongs to neither root nor this user, or group or others may write it. Its owner
/// may change it while it is open, whatever its lock says. A file that cannot be asked counts as one of others; a name
/// that is free does not.
bool isOthers(const char* path);
bool isOthers(int descriptor);

}  // namespace tembra::depot

#endif
