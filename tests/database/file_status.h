// What fstat, stat and lstat tell in this program.
#ifndef TEMBRA_TESTS_DATABASE_FILE_STATUS_H
#define TEMBRA_TESTS_DATABASE_FILE_STATUS_H

namespace status {

/// Whose calls fail for a file of a time after January 2038, as on a system with 32-bit times.
enum class Narrow { kNobody, kTheLibrary, kEverybody };
extern Narrow narrow;

/// Gives a file, or a link itself, to another user. Where the system does not let the test do so, the calls only say
/// it.
void giveAway(const char* path);

/// The same after so many questions of the library about the file, as if somebody put another one in its place then.
void giveAwayAfter(const char* path, int questions);

}  // namespace status

#endif
