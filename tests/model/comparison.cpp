#include "comparison.h"

#include <utility>

#include "difference.h"
#include "operations.h"
#include "shrink.h"

namespace oracle {

std::optional<Difference> compare(Library& library, const std::vector<Step>& steps, Alteration alteration,
                                  Coverage* coverage) {
  Model model;
  model.open();
  library.begin();
  model.effects.clear();
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const Model before = coverage == nullptr ? Model() : model;
    steps[i].operation->onModel(model, steps[i]);
    if (model.unforeseen) return {};
    std::vector<Effect> foretold = std::exchange(model.effects, {});
    if (alteration != nullptr) alteration(model, foretold);
    const std::vector<Effect> seen = library.perform(steps[i]);
    auto found = difference(seen, foretold);
    if (!found) found = difference(library.fields(), model.fields());
    if (found) return Difference{i + 1, *found};
    if (coverage != nullptr) coverage->note(before, steps[i], seen, model);
  }
  return {};
}

std::vector<Step> shortest(Library& library, std::vector<Step> steps, Alteration alteration) {
  return shrink(std::move(steps), [&](const std::vector<Step>& part) -> std::size_t {
    const auto found = compare(library, part, alteration);
    return found ? found->steps : 0;
  });
}

std::string report(Library& library, const std::vector<Step>& steps, Alteration alteration) {
  const std::vector<Step> least = shortest(library, steps, alteration);
  const auto found = compare(library, least, alteration);
  return "after\n" + describe(least) + (found ? found->what : "no difference");
}

}  // namespace oracle
