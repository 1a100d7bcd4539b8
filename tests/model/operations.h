// Everything that can be done in a step, to the model and to the library.
#ifndef TEMBRA_TESTS_MODEL_OPERATIONS_H
#define TEMBRA_TESTS_MODEL_OPERATIONS_H

#include "step.h"

namespace oracle {

struct Model;
class Library;

/// What a description shows of a step beside the operation's name.
enum class Shown { kNothing, kNumber, kNumbers, kText, kTexts, kDatagram, kWords, kInner };

struct Operation {
  const char* name;
  Shown shown;
  void (*onModel)(Model&, const Step&);
  void (*onLibrary)(Library&, const Step&);
};

const std::vector<Operation>& operations();

/// The operation of that name, which must exist.
const Operation& operation(const std::string& name);

Step call(const std::string& name, int number = 0, int second = 0);
Step call(const std::string& name, const std::string& text, const std::string& other = "");

}  // namespace oracle

#endif
