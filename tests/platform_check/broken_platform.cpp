// The router's own libraries with one thing broken: the one that the environment variable BROKEN names. Everything else
// is the stand-ins' and the Depot library's.
#include <depot.h>
#include <sys/stat.h>
#include <tembra/platform.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "platform/next_definition.h"

namespace {

constexpr const char kBridge[] = R"({"id":"001788fffe01020a","internalipaddress":"192.168.1.20"})";
constexpr const char* kLongName = "ASirenThatIsHeardInTheGarden";

bool isBroken(const char* what) {
  const char* const broken = std::getenv("BROKEN");
  return broken != nullptr && std::strcmp(broken, what) == 0;
}

template <typename Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(tembra::nextDefinition(name));
}

[[noreturn]] void hang() {
  while (true) pause();
}

void crash() { std::abort(); }

bool destroyed = false;

// Goes with the statics of the process.
struct Destroyed {
  ~Destroyed() { destroyed = true; }
};

void useAsFormat(const char* text) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  std::fprintf(stderr, text);
#pragma GCC diagnostic pop
}

void readLater(const char* text) {
  std::thread([text] {
    usleep(20000);
    if (*text == 'x') std::fputs("x", stderr);
  }).detach();
}

// A lock that two threads never get past.
void standInTheWay() {
  static std::mutex first;
  if (!first.try_lock()) hang();
  usleep(1000);
  first.unlock();
}

// As to flash, a line at a time.
void writeSlowly() {
  static std::mutex flash;
  const std::lock_guard lock(flash);
  usleep(60000);
}

// The name goes through memory that all threads share.
void nameInCommonMemory(DevType type, char* out) {
  static char common[180];
  static const auto name = next<void (*)(DevType, char*)>("_Z16DevtypeEnumToStr7DevTypePc");
  name(type, common);
  usleep(10);
  std::memcpy(out, common, sizeof common);
}

DevType numberThatIsWrong(const char* name) {
  const std::string_view wanted = name;
  if (isBroken("zone") && wanted == "MotionSensor") return DEVTYPE_KEYPAD;
  if (isBroken("unknown-device") && wanted == "UnknownDevice") return DevType{255};
  if (isBroken("zone-without-values") && wanted == "Keypad") return DevType{99};
  if (isBroken("unknown-name") && wanted == "NoSuchDevice") return DevType{255};
  if (isBroken("long-name") && wanted == kLongName) return DEVTYPE_SIREN;
  if (isBroken("given-number") && wanted == "Siren") return DEVTYPE_UNKNOWN;
  return DevType{-1};
}

}  // namespace

Logger* Logger::getInstance() {
  if (isBroken("null-logger")) return nullptr;
  if (isBroken("new-logger")) return new Logger;
  thread_local Logger ofThread;
  if (isBroken("logger-of-a-thread")) return &ofThread;
  return next<Logger* (*)()>("_ZN6Logger11getInstanceEv")();
}

void Logger::Log(int level, const char* text) {
  static const Destroyed state;
  if (isBroken("log-throws")) throw std::runtime_error("the log is full");
  if (isBroken("log-hangs") && level == 2) hang();
  if (isBroken("log-is-slow")) writeSlowly();
  if (isBroken("log-reads-behind") && text[std::strlen(text) + 1] == 'x') return;
  if (isBroken("log-writes")) const_cast<char*>(text)[0] = ' ';
  if (isBroken("log-formats")) return useAsFormat(text);
  if (isBroken("log-reads-later")) return readLater(text);
  if (isBroken("log-of-one-thread")) return standInTheWay();
  if (isBroken("log-is-destroyed") && destroyed) crash();
  next<void (*)(Logger*, int, const char*)>("_ZN6Logger3LogEiPKc")(this, level, text);
}

void DevtypeEnumToStr(DevType type, char* out) {
  if (isBroken("fixed-name") && type == DEVTYPE_GENERIC_DEVICE) return void(std::strcpy(out, "Generic"));
  if (isBroken("no-nul")) return void(std::memset(out, 'n', 12));
  if (isBroken("name-too-long") && type == 99) return void(std::strcpy(out, std::string(200, 'n').c_str()));
  if (isBroken("name-far-too-long") && type == 99) return void(std::memset(out, 'n', 1000));
  if (isBroken("long-name") && type == DEVTYPE_SIREN) return void(std::strcpy(out, kLongName));
  if (isBroken("no-name-for-others") && type == 99) crash();
  if (isBroken("name-throws") && type == 99) throw std::out_of_range("no such type");
  if (isBroken("common-memory")) return nameInCommonMemory(type, out);
  next<void (*)(DevType, char*)>("_Z16DevtypeEnumToStr7DevTypePc")(type, out);
}

DevType StrToDevType(const char* name) {
  if (const DevType wrong = numberThatIsWrong(name); wrong != -1) return wrong;
  if (isBroken("number-throws") && *name == '\0') throw std::out_of_range("no such name");
  return next<DevType (*)(const char*)>("_Z12StrToDevTypePKc")(name);
}

JsonToken* parse_json2(const char* text, int length) {
  static JsonToken notAllocated[100];
  const auto parse = next<JsonToken* (*)(const char*, int)>("_Z11parse_json2PKci");
  if (isBroken("no-tokens")) return nullptr;
  if (isBroken("no-rubbish-behind") && length > 0 && text[length - 1] != '}') return nullptr;
  if (isBroken("tokens-of-half-an-object") && length > 40 && text[length - 1] == '.')
    return parse(kBridge, sizeof kBridge - 1);
  if (isBroken("tokens-of-any-text") && length > 0 && *text != '{') return parse("{}", 2);
  if (isBroken("reads-behind-the-length")) return parse(text, static_cast<int>(std::strlen(text)));
  if (isBroken("tokens-not-to-free")) return length > 10 && parse(text, length) != nullptr ? notAllocated : nullptr;
  return parse(text, length);
}

JsonToken* find_json_token(JsonToken* tokens, const char* path) {
  static thread_local JsonToken changed;
  static thread_local char copy[100];
  JsonToken* const found =
      next<JsonToken* (*)(JsonToken*, const char*)>("_Z15find_json_tokenP9JsonTokenPKc")(tokens, path);
  if (isBroken("finds-what-is-not-there") && found == nullptr) return tokens;
  if (found == nullptr) return nullptr;
  if (isBroken("quotes-belong-to-the-value")) return &(changed = {found->ptr - 1, found->len + 2});
  if (isBroken("value-is-a-copy")) {
    std::memcpy(copy, found->ptr, static_cast<std::size_t>(found->len));
    return &(changed = {copy, found->len});
  }
  return found;
}

DEPOT* dpopen(const char* name, int mode, int buckets) {
  if (isBroken("database-without-lock")) mode |= DP_ONOLCK;
  if (isBroken("no-database")) return nullptr;
  if (isBroken("no-sparse-database") && (mode & DP_OSPARSE) != 0) return nullptr;
  DEPOT* const depot = next<DEPOT* (*)(const char*, int, int)>("dpopen")(name, mode, buckets);
  if (isBroken("late-database") && depot != nullptr) {
    struct stat status {};
    fstat(dpfdesc(depot), &status);
    if (status.st_mtime > 2000000000) return dpclose(depot), nullptr;
  }
  return depot;
}

int dpclose(DEPOT* depot) {
  const int file = isBroken("other-layout") ? dup(dpfdesc(depot)) : -1;
  const int closed = next<int (*)(DEPOT*)>("dpclose")(depot);
  // The number of buckets, in the other order of bytes.
  if (file >= 0 && pwrite(file, "\0\0\1\0", 4, 32) == 4) close(file);
  return closed;
}

char* dpget(DEPOT* depot, const char* key, int keySize, int start, int most, int* size) {
  if (isBroken("whole-values-only")) most = -1;
  return next<char* (*)(DEPOT*, const char*, int, int, int, int*)>("dpget")(depot, key, keySize, start, most, size);
}

char* dpiternext(DEPOT* depot, int* size) {
  if (isBroken("no-walk")) return nullptr;
  return next<char* (*)(DEPOT*, int*)>("dpiternext")(depot, size);
}

int dprepair(const char* name) { return isBroken("no-repair") ? 0 : next<int (*)(const char*)>("dprepair")(name); }
