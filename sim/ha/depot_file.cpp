#include "sim/ha/depot_file.h"

#include <cstdlib>
#include <stdexcept>

#include "depot/check.h"

namespace tembra::sim {
namespace {

struct Releaser {
  void operator()(char* memory) const { std::free(memory); }  // NOLINT(cppcoreguidelines-no-malloc): Depot's contract
};
using DepotText = std::unique_ptr<char, Releaser>;

constexpr int kDefaultBuckets = -1;
constexpr int kTextLength = -1;

}  // namespace

DepotFile::DepotFile(const std::string& path)
    : path_(path), file_(dpopen(path.c_str(), DP_OWRITER | DP_OCREAT, kDefaultBuckets)) {
  if (!file_) fail("opened");
  if (depot::lookAtWalk(dpfdesc(file_.get())).safety == depot::Safety::kSafe) return;
  dpecode = DP_EBROKEN;
  fail("opened");
}

void DepotFile::fail(std::string_view what) const {
  throw std::runtime_error("the database " + path_ + " cannot be " + std::string(what) + ": " + dperrmsg(dpecode));
}

void DepotFile::put(const std::string& key, std::span<const unsigned char> value) {
  put(key, std::string_view(reinterpret_cast<const char*>(value.data()), value.size()));
}

void DepotFile::put(const std::string& key, std::string_view text) {
  if (!dpput(file_.get(), key.c_str(), kTextLength, text.data(), static_cast<int>(text.size()), DP_DOVER)) {
    fail("written");
  }
}

std::optional<std::vector<unsigned char>> DepotFile::get(const std::string& key) const {
  int size = 0;
  const DepotText value(dpget(file_.get(), key.c_str(), kTextLength, 0, -1, &size));
  if (!value) return std::nullopt;
  return std::vector<unsigned char>(value.get(), value.get() + size);
}

void DepotFile::erase(const std::string& key) {
  if (!dpout(file_.get(), key.c_str(), kTextLength)) fail("written");
}

std::vector<std::string> DepotFile::keys() const {
  std::vector<std::string> keys;
  if (!dpiterinit(file_.get())) fail("read");
  while (const DepotText key{dpiternext(file_.get(), nullptr)}) keys.emplace_back(key.get());
  return keys;
}

void DepotFile::close() {
  if (!dpclose(file_.release())) fail("closed");
}

}  // namespace tembra::sim
