#include "support/device_type_name.h"

#include "support/text.h"
#include "support/text_writer.h"

namespace tembra {

int formatNumberedName(char (&out)[kNumberedNameSize], const char* word, int id) {
  TextWriter name(out, sizeof out);
  name << std::string_view(word, textLength(word, kDeviceNameSize - 1)) << " #" << id;
  return static_cast<int>(name.length());
}

void setNumberedName(char (&field)[kDeviceNameSize], const char* word, int id) {
  char name[kNumberedNameSize];
  formatNumberedName(name, word, id);
  copyText(field, name);
}

}  // namespace tembra
