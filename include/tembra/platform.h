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

/// A token of a JSON text: a string's text without its quotes (escapes as they stand), or any other value's text.
struct JsonToken {
  const char* ptr;  ///< into the text that was parsed
  int len;
};

/// Splits the JSON object at the beginning of a text of `length` bytes into tokens; what follows the object is
/// ignored. @return an array to be released with free(), or null when there is no object.
TEMBRA_API JsonToken* parse_json2(const char* text, int length);

/// The value of the member named `path` of the outermost object. @return null when there is none.
TEMBRA_API JsonToken* find_json_token(JsonToken* tokens, const char* path);

#endif
