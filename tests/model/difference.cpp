#include "difference.h"

#include <algorithm>

#include "kit/visible_text.h"

namespace oracle {
namespace {

std::string byteText(const unsigned char* bytes, std::size_t size, std::size_t at) {
  if (at >= size) return "no byte";
  return std::to_string(bytes[at]);
}

std::string firstByteThatDiffers(const unsigned char* library, std::size_t librarySize, const unsigned char* model,
                                 std::size_t modelSize) {
  std::size_t at = 0;
  while (at < librarySize && at < modelSize && library[at] == model[at]) ++at;
  return "byte " + std::to_string(at) + " is " + byteText(library, librarySize, at) + ", by the model " +
         byteText(model, modelSize, at);
}

std::optional<std::string> difference(const Effect& library, const Effect& model) {
  const std::string line = kit::visible(model.line);
  const std::string state = kit::visible(model.state);
  if (library.line != line) return "the library says  " + library.line + "\n  the model says    " + line;
  if (library.bytes != model.bytes) {
    return "in \"" + library.line + "\" " +
           firstByteThatDiffers(library.bytes.data(), library.bytes.size(), model.bytes.data(), model.bytes.size());
  }
  if (library.state != state) {
    return "at \"" + library.line + "\"\n  the library is in " + library.state + "\n  the model is in   " + state;
  }
  return {};
}

}  // namespace

std::optional<std::string> difference(const std::vector<Effect>& library, const std::vector<Effect>& model) {
  const Effect none{"nothing", {}, {}};
  for (std::size_t i = 0; i < std::max(library.size(), model.size()); ++i) {
    const auto found = difference(i < library.size() ? library[i] : none, i < model.size() ? model[i] : none);
    if (found) return "effect " + std::to_string(i + 1) + ": " + *found;
  }
  return {};
}

std::optional<std::string> difference(const std::vector<Field>& library, const std::vector<Field>& model) {
  for (std::size_t i = 0; i < library.size(); ++i) {
    const Field& field = library[i];
    if (std::equal(field.bytes, field.bytes + field.size, model[i].bytes)) continue;
    return std::string("field ") + field.name + ": " +
           firstByteThatDiffers(field.bytes, field.size, model[i].bytes, model[i].size);
  }
  return {};
}

}  // namespace oracle
