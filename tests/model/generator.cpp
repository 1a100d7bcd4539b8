#include "generator.h"

#include "operations.h"

namespace oracle {
namespace {

constexpr int kAnyNodes[] = {5, 5, 5, 6, 6, 7, 77, 1, 200, 254};
constexpr int kAnyTypes[] = {0, 1, 2, 12, 36, 37, 39, 41, 42, 46, 52, 54, 55, 60, 67, 256 + 3, -1, 999};

}  // namespace

std::vector<Step> Generator::run(std::size_t steps) {
  model_ = Model();
  model_.open();
  std::vector<Step> made;
  while (made.size() < steps) {
    const Step step = made.empty() && chance(80) ? anyDatabase() : any();
    Model after = model_;
    step.operation->onModel(after, step);
    if (after.unforeseen) continue;
    after.effects.clear();
    model_ = std::move(after);
    made.push_back(step);
  }
  return made;
}

Step Generator::oneOf(std::initializer_list<Choice> choices) {
  int total = 0;
  for (const Choice& choice : choices) total += choice.weight;
  int left = below(total);
  const Choice* chosen = choices.begin();
  for (; left >= chosen->weight; ++chosen) left -= chosen->weight;
  return (this->*chosen->make)();
}

Step Generator::any() {
  return oneOf({{58, &Generator::onCourse},
                {10, &Generator::anyCall},
                {10, &Generator::anyDatagram},
                {8, &Generator::anyWait},
                {7, &Generator::anyDatabase},
                {7, &Generator::anySetting}});
}

Step Generator::onCourse() {
  if (model_.running == 0) return call("checkAssocConnection");
  switch (model_.state) {
    case 1:
    case 2:
      return chance(55) ? zwaveProgress() : zigbeeProgress();
    case 3:
    case 4:
    case 5:
    case 6:
      return zwaveProgress();
    default:
      if (model_.idle != 0) return beginOperation();
      if (model_.activeRadio == 3) return hueDatagram();
      if (model_.activeRadio == 4) return nestDatagram();
      return finishNaming();
  }
}

Step Generator::beginOperation() {
  const int dice = below(100);
  if (dice < 50) return call("addDevZigbeeZwave");
  if (dice < 80) return call("removeDevZigbeeZwave");
  return dice < 90 ? hueCall() : nestCall();
}

Step Generator::finishNaming() {
  const int dice = below(100);
  if (dice < 35) return call("setDevType", anyType());
  if (dice < 60) return call("addingDone");
  if (dice < 85) return namingCall();
  return anyWait();
}

Step Generator::zwaveProgress() { return zwaveAnswer(anyNode()); }

Step Generator::zigbeeProgress() {
  constexpr int kAdding[] = {1, 1, 6, 6, 10, 10, 10, 10, 2, 11, 3, 12, 5, 255};
  constexpr int kLeaving[] = {2, 2, 2, 12, 1, 10};
  return zigbeeAnswer(model_.state == 1 ? oneOf(kAdding) : oneOf(kLeaving));
}

std::string Generator::anyName() {
  const std::string names[] = {"Lamp",
                               "Kitchen window",
                               "",
                               "100%s %n",
                               std::string(31, 'n'),
                               std::string(32, 'N'),
                               std::string(66, 'm'),
                               std::string(179, 'a'),
                               std::string(180, 'b'),
                               std::string(300, 'c'),
                               "x"};
  return oneOf(names);
}

int Generator::anyType() { return oneOf(kAnyTypes); }

int Generator::anyNode() {
  if (chance(12)) return chance(50) ? 0 : 255;
  return oneOf(kAnyNodes);
}

}  // namespace oracle
