// Random runs: mostly on course, so that devices get added and removed, and nonsense enough.
#ifndef TEMBRA_TESTS_MODEL_GENERATOR_H
#define TEMBRA_TESTS_MODEL_GENERATOR_H

#include <cstdint>
#include <random>
#include <vector>

#include "oracle/model.h"
#include "step.h"

namespace oracle {

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : engine_(seed) {}

  /// A run of that many steps, the same for the same seed.
  std::vector<Step> run(std::size_t steps);

 private:
  using Make = Step (Generator::*)();
  struct Choice {
    int weight;
    Make make;
  };

  int below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(limit)); }
  bool chance(int percent) { return below(100) < percent; }
  template <typename Container>
  const auto& oneOf(const Container& container) {
    return *(std::begin(container) + below(static_cast<int>(std::size(container))));
  }
  Step oneOf(std::initializer_list<Choice> choices);

  Step any();
  Step onCourse();
  Step beginOperation();
  Step finishNaming();
  Step zwaveProgress();
  Step zigbeeProgress();

  Step anyCall();
  Step radioCall();
  Step namingCall();
  Step hueCall();
  Step nestCall();
  Step conversion();
  Step connectionCall();

  Step anyDatagram();
  Step zwaveDatagram();
  Step zigbeeDatagram();
  Step hueDatagram();
  Step nestDatagram();
  Step strangeDatagram();
  Step fromStranger(Step step);
  Step cutOrPadded(Step step);
  Step zwaveAnswer(int node);
  Step zigbeeAnswer(int status);
  Record<1036> anyBlock(std::string& words);
  Record<444> anyDescription(std::string& words);

  // What a server sends behind a description is taken as it stands.
  template <std::size_t Size>
  void leaveSomething(Record<Size>& record, std::size_t from, std::string& words) {
    if (!chance(25)) return;
    for (std::size_t at = from; at < Size; ++at) record.setByte(at, below(256));
    words += ", and leftovers";
  }

  Step anyWait();
  Step anyDatabase();
  Row anyRow();
  Row anyDevice();
  Step anySetting();
  Step anyCallbackPlan();

  std::string anyName();
  int anyType();
  int anyNode();
  int anyRadioNumber();

  std::mt19937_64 engine_;
  Model model_;
};

}  // namespace oracle

#endif
