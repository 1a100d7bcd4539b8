// The router's own libraries that the association service calls. The declarations are ours, the definitions are not:
// they come from the router's libraries, from the stand-ins in platform/, or from the program itself.
#ifndef TEMBRA_PLATFORM_H
#define TEMBRA_PLATFORM_H

#include <tembra/export.h>
#include <tembra/vocabulary.h>

/// The system's log. One instance a process; any thread may call it. The library may hold its own lock during a call.
class TEMBRA_API Logger {
 public:
  /// The one logger, never null.
  static Logger* getInstance();

  /// Writes one line. `level`: 0 progress, 1 warning, 2 error, 3 detail. `text` is NUL-terminated, not kept.
  void Log(int level, const char* text);
};

/// Writes the NUL-terminated name of `type` into `out`, which holds at least 180 bytes.
TEMBRA_API void DevtypeEnumToStr(DevType type, char* out);

/// The number of a device-type name; 0 when the name is not known.
TEMBRA_API DevType StrToDevType(const char* name);

#endif
