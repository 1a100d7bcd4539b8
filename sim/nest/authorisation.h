// The file that holds the authorisation code of the linked Nest account, for front ends to see that there is one.
#ifndef TEMBRA_SIM_NEST_AUTHORISATION_H
#define TEMBRA_SIM_NEST_AUTHORISATION_H

#include <filesystem>
#include <string>
#include <utility>

namespace tembra::sim {

class Authorisation {
 public:
  explicit Authorisation(std::filesystem::path file) : file_(std::move(file)) {}

  /// Both throw one sentence when the file cannot be changed.
  void keep(const std::string& code) const;
  void forget() const;
  bool exists() const { return std::filesystem::exists(file_); }

 private:
  std::filesystem::path file_;
};

}  // namespace tembra::sim

#endif
