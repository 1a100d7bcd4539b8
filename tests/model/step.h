// One step of a run, as plain data: what is done to the library and to the model alike.
#ifndef TEMBRA_TESTS_MODEL_STEP_H
#define TEMBRA_TESTS_MODEL_STEP_H

#include <string>
#include <vector>

#include "oracle/database.h"

namespace oracle {

struct Operation;

struct Step {
  const Operation* operation = nullptr;
  int number = 0;
  int second = 0;
  std::string text;   // a name, a MAC text, the sender of a datagram
  std::string other;  // a second text; of a datagram or a database what it is, in words
  Bytes bytes;        // of a datagram
  std::vector<Row> rows;
  Health health = Health::kGood;
  std::vector<Step> inner;  // what the callback does from now on: at most one step
};

std::string describe(const Step& step);
std::string describe(const std::vector<Step>& steps);

}  // namespace oracle

#endif
