#include "kit/database.h"

#include <depot.h>
#include <gtest/gtest.h>
#include <tembra/globals.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "kit/interposed_database.h"

namespace kit {

namespace fs = std::filesystem;

namespace {

// Where a Depot file keeps what is damaged here.
constexpr std::size_t kBucketCountOffset = 32;
constexpr std::size_t kBucketsOffset = 48;
constexpr std::size_t kRecordHeaderLength = 28;
constexpr std::size_t kValueSizeInRecord = 12;

constexpr unsigned kZigbeeRadio = 1;

/// An open database of the test's own.
class Session {
 public:
  explicit Session(int mode) : depot_(dpopen(DBName, mode, -1)) {
    if (depot_ == nullptr) ADD_FAILURE() << "dpopen: " << dperrmsg(dpecode);
  }
  ~Session() {
    if (depot_ != nullptr && dpclose(depot_) == 0) ADD_FAILURE() << "dpclose: " << dperrmsg(dpecode);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  [[nodiscard]] DEPOT* depot() const { return depot_; }

 private:
  const UnwatchedDatabaseUse own_;
  DEPOT* depot_;
};

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

// A text that is as long as its field has no NUL there.
template <std::size_t Size>
void fill(char (&field)[Size], const std::string& text) {
  std::memset(field, 0, Size);
  text.copy(field, Size);
}

}  // namespace

Device::Device(int id, const std::string& name) {
  record_.id = id;
  fill(record_.name, name);
}

Device& Device::zwave(unsigned node) {
  record_.radioKind = RADIO_ZWAVE;
  record_.zwaveNode = node;
  return *this;
}

Device& Device::zigbee(unsigned address) {
  record_.radioKind = kZigbeeRadio;
  record_.zigbeeAddress = address;
  return *this;
}

Device& Device::ip() {
  record_.radioKind = RADIO_IP;
  return *this;
}

Device& Device::type(const std::string& typeName) {
  fill(record_.typeName, typeName);
  return *this;
}

Device& Device::cutTo(std::size_t length) {
  length_ = std::min(length, sizeof record_);
  return *this;
}

std::string Device::key() const { return std::to_string(record_.id); }

Bytes Device::bytes() const {
  const auto* first = reinterpret_cast<const unsigned char*>(&record_);
  return {first, first + length_};
}

Database& Database::create() {
  const Session session(DP_OWRITER | DP_OCREAT);
  return *this;
}

Database& Database::nextId(const std::string& text) { return put("NextDevid", text); }

Database& Database::put(const Device& device) { return put(device.key(), device.bytes()); }

Database& Database::put(const std::string& key, const std::string& value) { return put(key, bytesOf(value)); }

Database& Database::put(const std::string& key, const Bytes& value) {
  const Session session(DP_OWRITER | DP_OCREAT);
  const auto* data = reinterpret_cast<const char*>(value.data());
  if (dpput(session.depot(), key.data(), static_cast<int>(key.size()), value.empty() ? "" : data,
            static_cast<int>(value.size()), DP_DOVER) == 0) {
    ADD_FAILURE() << "dpput: " << dperrmsg(dpecode);
  }
  return *this;
}

Database& Database::index(int id, int number, const std::string& value) {
  IndexRecord record{};
  fill(record.value, value);
  const auto* first = reinterpret_cast<const unsigned char*>(&record);
  return put(std::to_string(id) + "." + std::to_string(number), Bytes(first, first + sizeof record));
}

Database& Database::drop(const std::string& key) {
  const Session session(DP_OWRITER | DP_OCREAT);
  dpout(session.depot(), key.data(), static_cast<int>(key.size()));
  return *this;
}

bool Database::exists() const { return fs::exists(DBName); }

int Database::records() const {
  const Session session(DP_OREADER);
  return session.depot() == nullptr ? -1 : dprnum(session.depot());
}

std::vector<std::string> Database::keys() const {
  const Session session(DP_OREADER);
  std::vector<std::string> keys;
  if (session.depot() == nullptr || dpiterinit(session.depot()) == 0) return keys;
  while (char* key = dpiternext(session.depot(), nullptr)) {
    keys.emplace_back(key);
    std::free(key);
  }
  return keys;
}

Bytes Database::file() const {
  std::ifstream stream(DBName, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void Database::remove() { fs::remove(DBName); }

void Database::replaceWith(const Bytes& content) {
  std::ofstream(DBName, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
}

void Database::makeUnopenable() { replaceWith({'x'}); }

void Database::makeRepairable() { std::ofstream(DBName, std::ios::binary | std::ios::app) << 'x'; }

void Database::cutTo(std::size_t length) { fs::resize_file(DBName, length); }

void Database::breakRecord(const std::string& key) { overwriteInRecord(key, kValueSizeInRecord, 0xFFFFFFFF); }

void Database::overwriteInRecord(const std::string& key, std::size_t offset, unsigned value) {
  const Bytes content = file();
  const Bytes wanted = bytesOf(key);
  auto found = content.begin() + kBucketsOffset;
  const auto isKey = [&](auto at) {
    int keyLength = 0;
    if (at - content.begin() < static_cast<long>(kBucketsOffset + kRecordHeaderLength)) return false;
    std::memcpy(&keyLength, &*(at - kRecordHeaderLength + 8), sizeof keyLength);
    return keyLength == static_cast<int>(key.size());
  };
  do {
    found = std::search(found + 1, content.end(), wanted.begin(), wanted.end());
  } while (found != content.end() && !isKey(found));
  ASSERT_NE(found, content.end()) << "no record of key " << key;
  const auto record = static_cast<std::size_t>(found - content.begin()) - kRecordHeaderLength;
  const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
  overwrite(record + offset, Bytes(bytes, bytes + sizeof value));
}

void Database::breakEveryValue() {
  const Bytes content = file();
  int buckets = 0;
  ASSERT_GT(content.size(), kBucketsOffset);
  std::memcpy(&buckets, content.data() + kBucketCountOffset, sizeof buckets);
  overwrite(kBucketsOffset, Bytes(static_cast<std::size_t>(buckets) * sizeof(int), 0));
}

void Database::makeDirectory() {
  remove();
  fs::create_directory(DBName);
}

void Database::overwrite(std::size_t offset, const Bytes& bytes) {
  std::fstream stream(DBName, std::ios::binary | std::ios::in | std::ios::out);
  stream.seekp(static_cast<std::streamoff>(offset));
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace kit
