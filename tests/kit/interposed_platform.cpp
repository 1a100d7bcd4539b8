// The router's own libraries, as the test program defines them: a Logger that is traced, and device-type names that
// come from the platform unless a test says otherwise.
#include <dlfcn.h>
#include <tembra/platform.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "kit/stage.h"
#include "kit/trace.h"

namespace kit {
namespace {

Stage* current = nullptr;

// Whether the test gave the type a name of its own; if so, it is written.
bool nameAsOrdered(DevType type, char* out) {
  Stage* stage = kit::stage();
  if (stage == nullptr) return false;
  const std::lock_guard<std::mutex> lock(stage->mutex);
  const auto found = stage->typeNames.find(type);
  if (found == stage->typeNames.end()) return false;
  std::memcpy(out, found->second.c_str(), found->second.size() + 1);
  return true;
}

// The number that the test gave the name, or `otherwise`.
DevType numberAsOrdered(const char* name, DevType otherwise) {
  Stage* stage = kit::stage();
  if (stage == nullptr || name == nullptr) return otherwise;
  const std::lock_guard<std::mutex> lock(stage->mutex);
  const auto found = stage->typeNumbers.find(name);
  return found == stage->typeNumbers.end() ? otherwise : static_cast<DevType>(found->second);
}

}  // namespace

Stage* stage() { return __atomic_load_n(&current, __ATOMIC_ACQUIRE); }
void setStage(Stage* stage) { __atomic_store_n(&current, stage, __ATOMIC_RELEASE); }

}  // namespace kit

Logger* Logger::getInstance() {
  static Logger logger;
  const kit::Stage* stage = kit::stage();
  if (stage != nullptr && stage->loggerThrows) throw std::runtime_error("no logger");
  return &logger;
}

void Logger::Log(int level, const char* text) {
  std::string line = "log ";
  line.append(std::to_string(level)).append(" ").append(text);
  kit::trace().add(line);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr) return;
  std::function<void(const std::string&)> hook;
  {
    const std::lock_guard<std::mutex> lock(stage->mutex);
    hook = stage->logHook;
  }
  if (hook) hook(text);
}

void DevtypeEnumToStr(DevType type, char* out) {
  if (kit::nameAsOrdered(type, out)) return;
  static auto* const platform =
      reinterpret_cast<void (*)(DevType, char*)>(dlsym(RTLD_NEXT, "_Z16DevtypeEnumToStr7DevTypePc"));
  platform(type, out);
}

DevType StrToDevType(const char* name) {
  static auto* const platform = reinterpret_cast<DevType (*)(const char*)>(dlsym(RTLD_NEXT, "_Z12StrToDevTypePKc"));
  return kit::numberAsOrdered(name, platform(name));
}
