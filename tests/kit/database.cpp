#include "kit/database.h"

#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "kit/text.h"

namespace kit {

namespace fs = std::filesystem;

namespace {

// Where a Depot file keeps what is damaged here.
constexpr std::size_t kBucketCountOffset = 32;
constexpr std::size_t kBucketsOffset = 48;
constexpr std::size_t kRecordHeaderLength = 28;
constexpr std::size_t kValueSizeInRecord = 12;

constexpr unsigned kZigbeeRadio = 1;

using Text = std::unique_ptr<char, decltype(&std::free)>;

void require(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

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

OpenDatabase::OpenDatabase(const char* path, int mode, int buckets) : depot_(dpopen(path, mode, buckets)) {
  require(depot_ != nullptr, std::string("dpopen: ") + dperrmsg(dpecode));
}

OpenDatabase::~OpenDatabase() {
  if (dpclose(depot_) != 0) return;
  std::fprintf(stderr, "dpclose: %s\n", dperrmsg(dpecode));
  std::abort();
}

void OpenDatabase::put(const std::string& key, const Bytes& value) const {
  const auto* data = value.empty() ? "" : reinterpret_cast<const char*>(value.data());
  const auto keySize = static_cast<int>(key.size());
  require(dpput(depot_, key.data(), keySize, data, static_cast<int>(value.size()), DP_DOVER) != 0, "dpput: " + key);
}

void OpenDatabase::index(int id, int number, const std::string& value) const {
  IndexRecord record{};
  fill(record.value, value);
  const auto* first = reinterpret_cast<const unsigned char*>(&record);
  put(std::to_string(id) + "." + std::to_string(number), Bytes(first, first + sizeof record));
}

Database& Database::create() {
  const OpenDatabase open(path_);
  return *this;
}

Database& Database::nextId(const std::string& text) { return put("NextDevid", text); }

Database& Database::put(const Device& device) { return put(device.key(), device.bytes()); }

Database& Database::put(const std::string& key, const std::string& value) { return put(key, bytesOf(value)); }

Database& Database::put(const std::string& key, const Bytes& value) {
  OpenDatabase(path_).put(key, value);
  return *this;
}

Database& Database::index(int id, int number, const std::string& value) {
  OpenDatabase(path_).index(id, number, value);
  return *this;
}

Database& Database::drop(const std::string& key) {
  const OpenDatabase open(path_);
  dpout(open.depot(), key.data(), static_cast<int>(key.size()));
  return *this;
}

bool Database::exists() const { return fs::exists(path_); }

int Database::records() const { return dprnum(OpenDatabase(path_, DP_OREADER).depot()); }

std::vector<std::string> Database::keys() const {
  const OpenDatabase open(path_, DP_OREADER);
  std::vector<std::string> keys;
  dpiterinit(open.depot());
  int size = 0;
  for (Text key(dpiternext(open.depot(), &size), &std::free); key; key.reset(dpiternext(open.depot(), &size))) {
    keys.emplace_back(key.get(), static_cast<std::size_t>(size));
  }
  return keys;
}

std::set<std::string> Database::keySet() const {
  const std::vector<std::string> all = keys();
  return {all.begin(), all.end()};
}

std::map<std::string, std::string> Database::all() const {
  std::map<std::string, std::string> records;
  if (!exists()) return records;
  for (const std::string& key : keys()) records[key] = text(key);
  return records;
}

std::string Database::text(const std::string& key) const {
  const OpenDatabase open(path_, DP_OREADER);
  int size = 0;
  const Text value(dpget(open.depot(), key.data(), static_cast<int>(key.size()), 0, -1, &size), &std::free);
  return value ? std::string(value.get(), static_cast<std::size_t>(size)) : "missing";
}

Bytes Database::file() const { return bytesOf(readFile(path_)); }

void Database::remove() { fs::remove(path_); }

void Database::replaceWith(const Bytes& content) { writeFile(path_, {content.begin(), content.end()}); }

void Database::makeUnopenable() { replaceWith({'x'}); }

void Database::makeRepairable() { std::ofstream(path_, std::ios::binary | std::ios::app) << 'x'; }

void Database::cutTo(std::size_t length) { fs::resize_file(path_, length); }

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
  require(found != content.end(), "no record of key " + key);
  const auto record = static_cast<std::size_t>(found - content.begin()) - kRecordHeaderLength;
  const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
  overwrite(record + offset, Bytes(bytes, bytes + sizeof value));
}

void Database::breakEveryValue() {
  const Bytes content = file();
  int buckets = 0;
  require(content.size() > kBucketsOffset, "no database");
  std::memcpy(&buckets, content.data() + kBucketCountOffset, sizeof buckets);
  overwrite(kBucketsOffset, Bytes(static_cast<std::size_t>(buckets) * sizeof(int), 0));
}

void Database::makeDirectory() {
  remove();
  fs::create_directory(path_);
}

void Database::overwrite(std::size_t offset, const Bytes& bytes) {
  std::fstream stream(path_, std::ios::binary | std::ios::in | std::ios::out);
  stream.seekp(static_cast<std::streamoff>(offset));
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace kit
