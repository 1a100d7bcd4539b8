// Files, pipes and descriptors: what the library does with them through the C library.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "kit/faults.h"
#include "kit/library_sockets.h"
#include "kit/real_libc.h"
#include "kit/stage.h"

using kit::Call;
using kit::LibraryCall;

namespace {

bool isWatched(const void* site) { return kit::stage() != nullptr && kit::isInLibrary(site); }

bool strikes(Call call, const void* site) { return isWatched(site) && kit::faults().strike(call, site); }

}  // namespace

extern "C" int fcntl(int descriptor, int command, ...) {
  KIT_REAL(fcntl);
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);  // an int is passed the same way
  va_end(arguments);
  if (strikes(Call::kChangeDescriptor, __builtin_return_address(0))) return -1;
  const int result = real(descriptor, command, argument);
  const bool isCopy = command == F_DUPFD_CLOEXEC && result >= 0 && isWatched(__builtin_return_address(0));
  if (isCopy && kit::librarySockets().owns(descriptor)) kit::librarySockets().opened(result);
  return result;
}

extern "C" char* fgets(char* text, int size, FILE* file) {
  KIT_REAL(fgets);
  if (strikes(Call::kReadLine, __builtin_return_address(0))) return nullptr;
  const LibraryCall inside(isWatched(__builtin_return_address(0)));
  return real(text, size, file);
}

extern "C" int pclose(FILE* file) {
  KIT_REAL(pclose);
  const int status = real(file);
  return strikes(Call::kEndCommand, __builtin_return_address(0)) ? -1 : status;
}

extern "C" int faccessat(int folder, const char* name, int rights, int flags) noexcept {
  KIT_REAL(faccessat);
  return strikes(Call::kAskForAccess, __builtin_return_address(0)) ? -1 : real(folder, name, rights, flags);
}

extern "C" int remove(const char* name) noexcept {
  KIT_REAL(remove);
  return strikes(Call::kDeleteFile, __builtin_return_address(0)) ? -1 : real(name);
}

extern "C" int open(const char* name, int flags, ...) {
  KIT_REAL(open);
  va_list arguments;
  va_start(arguments, flags);
  const auto mode = va_arg(arguments, mode_t);  // of no meaning unless a file may be created
  va_end(arguments);
  return strikes(Call::kOpenDescriptor, __builtin_return_address(0)) ? -1 : real(name, flags, mode);
}

extern "C" int fstat(int descriptor, struct stat* status) noexcept {
  KIT_REAL(fstat);
  return strikes(Call::kAskForStatus, __builtin_return_address(0)) ? -1 : real(descriptor, status);
}

extern "C" int fstatvfs(int descriptor, struct statvfs* status) noexcept {
  KIT_REAL(fstatvfs);
  return strikes(Call::kAskForRoom, __builtin_return_address(0)) ? -1 : real(descriptor, status);
}

// A compiler that hardens calls the checked form of these. On 32 bits a file's size of 64 bits has calls of its own.
#ifdef __LP64__
#define KIT_CHECKED_PREAD "__pread_chk"
#else
#define KIT_CHECKED_PREAD "__pread64_chk"
#endif
extern "C" {
ssize_t preadChecked(int descriptor, void* buffer, size_t size, off_t offset, size_t room) __asm__(KIT_CHECKED_PREAD);
int printfChecked(int flag, const char* format, ...) __asm__("__printf_chk");
int fprintfChecked(FILE* file, int flag, const char* format, ...) __asm__("__fprintf_chk");
}

extern "C" ssize_t pread(int descriptor, void* buffer, size_t size, off_t offset) {
  KIT_REAL(pread);
  return strikes(Call::kReadAt, __builtin_return_address(0)) ? -1 : real(descriptor, buffer, size, offset);
}

ssize_t preadChecked(int descriptor, void* buffer, size_t size, off_t offset, size_t /*room*/) {
  KIT_REAL(pread);
  return strikes(Call::kReadAt, __builtin_return_address(0)) ? -1 : real(descriptor, buffer, size, offset);
}

extern "C" int stat(const char* name, struct stat* status) noexcept {
  KIT_REAL(stat);
  return strikes(Call::kAskForFile, __builtin_return_address(0)) ? -1 : real(name, status);
}

extern "C" int lstat(const char* name, struct stat* status) noexcept {
  KIT_REAL(lstat);
  return strikes(Call::kAskForLink, __builtin_return_address(0)) ? -1 : real(name, status);
}

extern "C" int unlink(const char* name) noexcept {
  KIT_REAL(unlink);
  return strikes(Call::kDropName, __builtin_return_address(0)) ? -1 : real(name);
}

extern "C" ssize_t pwrite(int descriptor, const void* buffer, size_t size, off_t offset) {
  KIT_REAL(pwrite);
  return strikes(Call::kWriteAt, __builtin_return_address(0)) ? -1 : real(descriptor, buffer, size, offset);
}

namespace {

int print(const void* site, const char* format, va_list arguments) {
  KIT_REAL(vprintf);
  return strikes(Call::kPrint, site) ? -1 : real(format, arguments);
}

int complain(const void* site, FILE* file, const char* format, va_list arguments) {
  KIT_REAL(vfprintf);
  return strikes(Call::kComplain, site) ? -1 : real(file, format, arguments);
}

}  // namespace

extern "C" int printf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = print(__builtin_return_address(0), format, arguments);
  va_end(arguments);
  return length;
}

int printfChecked(int /*flag*/, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = print(__builtin_return_address(0), format, arguments);
  va_end(arguments);
  return length;
}

extern "C" int fprintf(FILE* file, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = complain(__builtin_return_address(0), file, format, arguments);
  va_end(arguments);
  return length;
}

int fprintfChecked(FILE* file, int /*flag*/, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = complain(__builtin_return_address(0), file, format, arguments);
  va_end(arguments);
  return length;
}

extern "C" void perror(const char* text) {
  KIT_REAL(perror);
  if (!strikes(Call::kComplainOfErrno, __builtin_return_address(0))) real(text);
}
