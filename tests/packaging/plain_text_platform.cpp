// A router's StrToDevType that takes char*, which is another function to the linker.
#include <tembra/vocabulary.h>

#include <cstring>

DevType StrToDevType(char* name) { return static_cast<DevType>(std::strcmp(name, "MotionSensor") == 0 ? 77 : 0); }
