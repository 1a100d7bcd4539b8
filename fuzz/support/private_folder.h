// The folder that holds the device database of a fuzzing process, in memory where that is possible.
#ifndef TEMBRA_FUZZ_SUPPORT_PRIVATE_FOLDER_H
#define TEMBRA_FUZZ_SUPPORT_PRIVATE_FOLDER_H

namespace fuzz {

/// Short enough for the library's field, hence relative.
inline constexpr char kDatabaseName[] = "ddb";

/// The fuzzer itself works with relative paths, so the process is in the folder only while the library is at work.
struct PrivateFolder {
  static void enter();
  static void leave();
};

}  // namespace fuzz

#endif
