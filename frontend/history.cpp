#include "history.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <new>

#include "texts.h"

namespace tembra::frontend {
namespace {

constexpr std::size_t kLongestEvent = TEMBRA_HISTORY_SIZE / 2;  // 25 bridges with the worst of texts need 22,000
constexpr std::size_t kLongestText = 1024;                      // the library's lines have 511 characters at most
constexpr const char* kLevels[] = {"progress", "warning", "error", "detail"};

History theHistory;

long long microseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now.tv_sec * 1000000LL + now.tv_nsec / 1000;
}

bool isBlank(char character) { return static_cast<unsigned char>(character) <= ' '; }

std::string_view withoutEnd(std::string_view text) {
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

History& history() { return theHistory; }

class History::Lock {
 public:
  explicit Lock(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
  ~Lock() { pthread_mutex_unlock(&mutex_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  pthread_mutex_t& mutex_;
};

void History::event(std::string_view json) noexcept {
  const Lock lock(mutex_);
  begin();
  put(",\"event\":");
  put(json.size() <= kLongestEvent ? json : "null");
  end();
}

void History::call(const char* name, std::initializer_list<std::string_view> arguments, int error) noexcept {
  const Lock lock(mutex_);
  begin();
  put(",\"call\":");
  putString(name);
  std::string_view before = ",\"arguments\":[";
  for (const std::string_view each : arguments) {
    if (each.empty()) continue;
    put(before);
    putString(each.substr(0, kLongestText));
    before = ",";
  }
  if (before == ",") put("]");
  if (error != 0) putNumber(",\"error\":", error);
  end();
}

void History::line(int level, std::string_view text) noexcept {
  const Lock lock(mutex_);
  begin();
  put(",\"log\":");
  putString(withoutEnd(text.substr(0, kLongestText)));
  put(",\"level\":");
  putString(level >= 0 && level < 4 ? kLevels[level] : "error");
  end();
}

// ---- One entry -----------------------------------------------------------------------------------------------------

// With the lock held, so that the times are in the order of the numbers.
void History::begin() noexcept {
  putNumber(R"({"schema":1,"entry":)", static_cast<long long>(++last_));
  putNumber(",\"monotonic_us\":", microseconds(CLOCK_MONOTONIC));
  putNumber(",\"wall_us\":", microseconds(CLOCK_REALTIME));
}

void History::end() noexcept {
  put("}\n");
  if (hasAlarm_) eventfd_write(alarm_, 1);
}

void History::put(std::string_view bytes) noexcept {
  while (kCapacity - length_ < bytes.size()) dropFirst();
  const std::size_t at = (begin_ + length_) % kCapacity;
  const std::size_t straight = std::min(bytes.size(), kCapacity - at);
  std::memcpy(bytes_.data() + at, bytes.data(), straight);
  std::memcpy(bytes_.data(), bytes.data() + straight, bytes.size() - straight);
  length_ += bytes.size();
}

void History::putNumber(std::string_view before, long long number) noexcept {
  std::array<char, 24> digits;
  const int length = std::snprintf(digits.data(), digits.size(), "%lld", number);
  put(before);
  put({digits.data(), static_cast<std::size_t>(length)});
}

// In ASCII, as the kit's other JSON texts.
void History::putString(std::string_view text) noexcept {
  put("\"");
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    const char32_t number = character.length == 0 ? 0xFFFD : character.number;
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(character.length, 1));
    text.remove_prefix(bytes.size());
    if (number == '"' || number == '\\') {
      put("\\");
      put(bytes);
    } else if (number >= 0x20 && number < 0x7F) {
      put(bytes);
    } else if (number < 0x10000) {
      putEscaped(number);
    } else {
      putEscaped(0xD800 + ((number - 0x10000) >> 10));
      putEscaped(0xDC00 + ((number - 0x10000) & 0x3FF));
    }
  }
  put("\"");
}

void History::putEscaped(unsigned unit) noexcept {
  std::array<char, 8> digits;
  const int length = std::snprintf(digits.data(), digits.size(), "\\u%04x", unit);
  put({digits.data(), static_cast<std::size_t>(length)});
}

// ---- The ring ------------------------------------------------------------------------------------------------------

// An entry is shorter than the ring, so the first line is never the one that is being written.
void History::dropFirst() noexcept {
  const std::size_t dropped = lineEnd(0);
  begin_ = (begin_ + dropped) % kCapacity;
  length_ -= dropped;
  ++dropped_;
}

/// Where the line at an offset ends, behind its newline.
std::size_t History::lineEnd(std::size_t from) const noexcept {
  while (bytes_[(begin_ + from) % kCapacity] != '\n') ++from;
  return from + 1;
}

/// Where the line begins that ends at an offset.
std::size_t History::lineBegin(std::size_t to) const noexcept {
  do {
    --to;
  } while (to > 0 && bytes_[(begin_ + to - 1) % kCapacity] != '\n');
  return to;
}

/// Where the lines behind an entry begin. From the end, as they mostly are few.
std::size_t History::beginBehind(unsigned long long entry) const noexcept {
  if (entry <= dropped_) return 0;
  std::size_t from = length_;
  for (unsigned long long each = last_; each > entry; --each) from = lineBegin(from);
  return from;
}

void History::copy(std::size_t from, char* to) const noexcept {
  const std::size_t length = length_ - from;
  const std::size_t at = (begin_ + from) % kCapacity;
  const std::size_t straight = std::min(length, kCapacity - at);
  std::memcpy(to, bytes_.data() + at, straight);
  std::memcpy(to + straight, bytes_.data(), length - straight);
}

std::size_t History::write(char* text, std::size_t size) const noexcept {
  if (size == 0) return 0;
  const Lock lock(mutex_);
  std::size_t from = 0;
  while (length_ - from >= size) from = lineEnd(from);
  copy(from, text);
  text[length_ - from] = '\0';
  return length_ - from;
}

/// False: there is no room for the lines, whose length it is.
bool History::copyBehind(unsigned long long& entry, std::string& room, std::size_t& length) const noexcept {
  const Lock lock(mutex_);
  const std::size_t from = beginBehind(entry);
  length = length_ - from;
  if (length > room.size()) return false;
  copy(from, room.data());
  entry = last_;
  return true;
}

// Memory is asked for without the lock, which recording waits for. Meanwhile there may be more lines.
std::string History::behind(unsigned long long& entry) const noexcept {
  constexpr std::size_t kForMore = 512;
  try {
    std::string lines;
    std::size_t length = 0;
    while (!copyBehind(entry, lines, length)) lines.resize(std::min(length + kForMore, kCapacity));
    lines.resize(length);
    return lines;
  } catch (const std::bad_alloc&) {
    return {};
  }
}

void History::setAlarm(int descriptor) noexcept {
  const Lock lock(mutex_);
  alarm_ = descriptor;
  hasAlarm_ = true;
}

void History::clearAlarm(int descriptor) noexcept {
  const Lock lock(mutex_);
  hasAlarm_ = hasAlarm_ && alarm_ != descriptor;
}

}  // namespace tembra::frontend
