#include "sim/answers/fault.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "sim/answers/messages.h"
#include "sim/core/number.h"

namespace tembra::sim {
namespace {

struct KindRow {
  std::string_view name;
  FaultKind kind;
  bool takesValue;
  std::optional<int> defaultValue;  ///< none: the value must be given
  int largest;
};

constexpr std::array kKinds{
    KindRow{"lost", FaultKind::kLost, false, 0, 0},
    KindRow{"late", FaultKind::kLate, true, std::nullopt, 3'600'000},
    KindRow{"twice", FaultKind::kTwice, false, 0, 0},
    KindRow{"short", FaultKind::kShort, true, std::nullopt, 4096},
    KindRow{"code", FaultKind::kCode, true, Fault::kFailure, 255},
    KindRow{"silence", FaultKind::kSilence, false, 0, 0},
    KindRow{"reordered", FaultKind::kReordered, false, 0, 0},
    KindRow{"foreign", FaultKind::kForeign, false, 0, 0},
};

template <typename Rows>
std::string namesOf(const Rows& rows) {
  std::string names;
  for (const auto& row : rows) names.append(names.empty() ? "" : ", ").append(row.name);
  return names;
}

template <typename Rows>
auto findByName(const Rows& rows, std::string_view name) {
  return std::find_if(rows.begin(), rows.end(), [name](const auto& row) { return row.name == name; });
}

// Takes what stands before `separator` off the front of `text`; the whole text when there is none.
std::string_view takeUpTo(std::string_view& text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view front = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return front;
}

void checkMessage(std::string_view message) {
  if (message == "*" || findByName(kMessageKinds, message) != kMessageKinds.end()) return;
  throw std::invalid_argument("no answer is called \"" + std::string(message) + "\"; there are " +
                              namesOf(kMessageKinds) + ", and * for all");
}

const KindRow& kindCalled(std::string_view name) {
  const auto* const row = findByName(kKinds, name);
  if (row != kKinds.end()) return *row;
  throw std::invalid_argument("no fault is called \"" + std::string(name) + "\"; there are " + namesOf(kKinds));
}

int valueOf(const KindRow& row, std::string_view text) {
  const std::string name(row.name);
  if (!row.takesValue && !text.empty()) throw std::invalid_argument("the fault \"" + name + "\" takes no value");
  if (!text.empty()) return parseNumber(text, 0, row.largest);
  if (!row.defaultValue) throw std::invalid_argument("the fault \"" + name + "\" needs a value: " + name + "=N");
  return *row.defaultValue;
}

int countOf(std::string_view text) {
  if (text.empty()) return 1;
  return text == "always" ? Fault::kAlways : parseNumber(text, 0, 1'000'000);
}

void apply(const Fault& fault, Distortion& distortion) {
  switch (fault.kind) {
    case FaultKind::kLost:
      distortion.lost = true;
      break;
    case FaultKind::kLate:
      distortion.late += std::chrono::milliseconds(fault.value);
      break;
    case FaultKind::kTwice:
      distortion.twice = true;
      break;
    case FaultKind::kShort:
      distortion.length = static_cast<std::size_t>(fault.value);
      break;
    case FaultKind::kCode:
      distortion.code = fault.value;
      break;
    case FaultKind::kSilence:
      distortion.silent = true;
      break;
    case FaultKind::kReordered:
      distortion.reordered = true;
      break;
    case FaultKind::kForeign:
      distortion.foreign = true;
      break;
  }
}

}  // namespace

Fault parseFault(std::string_view specification) {
  const std::string_view message = takeUpTo(specification, ':');
  checkMessage(message);
  std::string_view kindAndValue = takeUpTo(specification, ':');
  const KindRow& row = kindCalled(takeUpTo(kindAndValue, '='));
  return {std::string(message), row.kind, valueOf(row, kindAndValue), countOf(specification)};
}

Distortion FaultList::take(std::string_view message) {
  Distortion distortion;
  for (Fault& fault : faults_) {
    if (fault.message != "*" && fault.message != message) continue;
    apply(fault, distortion);
    if (fault.remaining != Fault::kAlways) --fault.remaining;
  }
  std::erase_if(faults_, [](const Fault& fault) { return fault.remaining == 0; });
  return distortion;
}

}  // namespace tembra::sim
