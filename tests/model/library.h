// The library as a run drives it: through its public line, in virtual time, one step at a time.
#ifndef TEMBRA_TESTS_MODEL_LIBRARY_H
#define TEMBRA_TESTS_MODEL_LIBRARY_H

#include "kit/router.h"
#include "oracle/effect.h"
#include "step.h"

namespace oracle {

class Library {
 public:
  Library();

  /// As a process begins, with an open connection of the LCD front end and no database; nothing seen yet.
  void begin();

  /// What the step made the library do.
  std::vector<Effect> perform(const Step& step);

  [[nodiscard]] std::vector<Field> fields();

  // What operations need.
  TembraAssociation& assoc() { return *TembraAssociation::singleton; }
  kit::Router& router() { return router_; }
  void receive(const std::string& sender, const Bytes& datagram);
  void setDatabase(const std::vector<Row>& rows, Health health);
  void setAuthorised(bool authorised);
  void setInCallback(const std::vector<Step>& inner) { inCallback_ = inner; }
  void overwriteEvent(int byte);
  static void result(const std::string& text);

 private:
  void clearFields();
  void runInCallback(AssocEvent* event);
  std::vector<Effect> takeEffects();

  kit::Router router_;
  std::vector<std::string> logStates_;
  std::vector<Step> inCallback_;
  bool isInCallback_ = false;
  AssocEvent* delivered_ = nullptr;
  int hasSocket_ = 0;
};

}  // namespace oracle

#endif
