// What the library calls, between it and whoever does the work: the thread is outside the library meanwhile.
#include <depot.h>
#include <netdb.h>
#include <pthread.h>
#include <sys/socket.h>
#include <tembra/platform.h>
#include <unistd.h>

#include <cstdio>

#include "platform/next_definition.h"
#include "rig/outside.h"

// Declares `real`, the next definition of the symbol after the program's.
#define REAL(symbol, type) static auto* const real = reinterpret_cast<type>(tembra::nextDefinition(symbol))

// A function of the same name that is outside the library while the real one runs.
#define OUTSIDE(result, name, parameters, arguments)        \
  extern "C" result name parameters {                       \
    REAL(#name, decltype(&::name)); /* NOLINT: a pointer */ \
    const bench::Outside outside;                           \
    return real arguments;                                  \
  }
#define OUTSIDE_NOEXCEPT(result, name, parameters, arguments) \
  extern "C" result name parameters noexcept {                \
    REAL(#name, decltype(&::name)); /* NOLINT: a pointer */   \
    const bench::Outside outside;                             \
    return real arguments;                                    \
  }
// The same for a call of the Depot library, which without a database answers at once.
#define DEPOT_CALL(result, name, parameters, arguments, without) \
  extern "C" result name parameters {                            \
    REAL(#name, decltype(&::name)); /* NOLINT: a pointer */      \
    const bench::Outside outside;                                \
    if (bench::NoDatabase::isOn()) return without;               \
    return real arguments;                                       \
  }

OUTSIDE_NOEXCEPT(int, socket, (int family, int type, int protocol), (family, type, protocol))
OUTSIDE_NOEXCEPT(int, setsockopt, (int descriptor, int level, int option, const void* value, socklen_t length),
                 (descriptor, level, option, value, length))
OUTSIDE_NOEXCEPT(int, bind, (int descriptor, const sockaddr* address, socklen_t length), (descriptor, address, length))
OUTSIDE_NOEXCEPT(int, shutdown, (int descriptor, int how), (descriptor, how))
OUTSIDE(int, close, (int descriptor), (descriptor))
OUTSIDE(ssize_t, sendto,
        (int descriptor, const void* data, size_t size, int flags, const sockaddr* to, socklen_t length),
        (descriptor, data, size, flags, to, length))
OUTSIDE(ssize_t, pread, (int descriptor, void* data, size_t size, off_t offset), (descriptor, data, size, offset))
// A compiler that hardens calls the checked form.
extern "C" ssize_t preadChecked(int descriptor, void* data, size_t size, off_t offset,
                                size_t room) __asm__("__pread_chk");
ssize_t preadChecked(int descriptor, void* data, size_t size, off_t offset, size_t /*room*/) {
  return pread(descriptor, data, size, offset);
}
OUTSIDE(hostent*, gethostbyname, (const char* name), (name))
OUTSIDE(servent*, getservbyname, (const char* name, const char* protocol), (name, protocol))
OUTSIDE(FILE*, popen, (const char* command, const char* mode), (command, mode))
OUTSIDE(char*, fgets, (char* text, int size, FILE* file), (text, size, file))
OUTSIDE(int, pclose, (FILE * file), (file))
OUTSIDE_NOEXCEPT(int, pthread_create,
                 (pthread_t * thread, const pthread_attr_t* attributes, void* (*function)(void*), void* argument),
                 (thread, attributes, function, argument))
OUTSIDE(int, pthread_cond_timedwait, (pthread_cond_t * condition, pthread_mutex_t* mutex, const timespec* until),
        (condition, mutex, until))

// Only the library's thread receives by this call.
extern "C" ssize_t recvfrom(int descriptor, void* buffer, size_t size, int flags, sockaddr* from, socklen_t* length) {
  REAL("recvfrom", decltype(&::recvfrom));
  ssize_t received = 0;
  {
    const bench::Outside outside;
    bench::first_wait::note();
    received = real(descriptor, buffer, size, flags, from, length);
  }
  bench::enterForGood();
  return received;
}

namespace {

constexpr int kNoDescriptor = -1;
char noDatabase;
DEPOT* const kNoDatabase = reinterpret_cast<DEPOT*>(&noDatabase);

}  // namespace

DEPOT_CALL(DEPOT*, dpopen, (const char* name, int mode, int buckets), (name, mode, buckets), kNoDatabase)
DEPOT_CALL(int, dpclose, (DEPOT * depot), (depot), 1)
DEPOT_CALL(int, dpfdesc, (DEPOT * depot), (depot), kNoDescriptor)
DEPOT_CALL(int, dpfsiz, (DEPOT * depot), (depot), 0)
DEPOT_CALL(int, dpiterinit, (DEPOT * depot), (depot), 1)
DEPOT_CALL(char*, dpiternext, (DEPOT * depot, int* size), (depot, size), nullptr)
DEPOT_CALL(char*, dpget, (DEPOT * depot, const char* key, int keySize, int start, int most, int* size),
           (depot, key, keySize, start, most, size), nullptr)

// ---- the router's libraries -----------------------------------------------------------------------------------------

void Logger::Log(int level, const char* text) {
  REAL("_ZN6Logger3LogEiPKc", void (*)(Logger*, int, const char*));
  const bench::Outside outside;
  real(this, level, text);
}

void DevtypeEnumToStr(DevType type, char* out) {
  REAL("_Z16DevtypeEnumToStr7DevTypePc", decltype(&DevtypeEnumToStr));
  const bench::Outside outside;
  real(type, out);
}

DevType StrToDevType(const char* name) {
  REAL("_Z12StrToDevTypePKc", decltype(&StrToDevType));
  const bench::Outside outside;
  return real(name);
}

JsonToken* parse_json2(const char* text, int length) {
  REAL("_Z11parse_json2PKci", decltype(&parse_json2));
  const bench::Outside outside;
  return real(text, length);
}

JsonToken* find_json_token(JsonToken* tokens, const char* path) {
  REAL("_Z15find_json_tokenP9JsonTokenPKc", decltype(&find_json_token));
  const bench::Outside outside;
  return real(tokens, path);
}
