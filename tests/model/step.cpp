#include "step.h"

#include "kit/visible_text.h"
#include "operations.h"

namespace oracle {
namespace {

std::string quoted(const std::string& text) { return '"' + kit::visible(text) + '"'; }

std::string argumentsOf(const Step& step) {
  switch (step.operation->shown) {
    case Shown::kNothing:
      return "()";
    case Shown::kNumber:
      return "(" + std::to_string(step.number) + ")";
    case Shown::kNumbers:
      return "(" + std::to_string(step.number) + ", " + std::to_string(step.second) + ")";
    case Shown::kText:
      return "(" + quoted(step.text) + ")";
    case Shown::kTexts:
      return "(" + quoted(step.text) + ", " + quoted(step.other) + ")";
    case Shown::kDatagram:
      return " of " + std::to_string(step.bytes.size()) + " bytes from " + step.text + ": " + step.other;
    case Shown::kWords:
      return ": " + step.other;
    case Shown::kInner:
      return step.inner.empty() ? " nothing" : " " + describe(step.inner.front());
  }
  return "";
}

}  // namespace

std::string describe(const Step& step) { return step.operation->name + argumentsOf(step); }

std::string describe(const std::vector<Step>& steps) {
  std::string text;
  for (std::size_t i = 0; i < steps.size(); ++i)
    text += "  " + std::to_string(i + 1) + ". " + describe(steps[i]) + "\n";
  return text;
}

}  // namespace oracle
