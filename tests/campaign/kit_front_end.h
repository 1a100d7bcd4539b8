// A front end on the front-end kit: one kit for a whole run, one operation a step.
#ifndef TEMBRA_TESTS_CAMPAIGN_KIT_FRONT_END_H
#define TEMBRA_TESTS_CAMPAIGN_KIT_FRONT_END_H

#include <tembra/frontend.hpp>

#include <string>
#include <vector>

#include "campaign/front_end.h"

namespace campaign {

/// An event when it was fetched, and the state right behind it.
struct KitEvent {
  Time at;
  tembra::Event event;
  std::string state;  ///< JSON
};

/// A step as its front end knows it.
struct KitStory {
  std::vector<KitEvent> events;
  std::vector<Time> did;              ///< when the front end called the kit
  std::vector<SeenEvent> told;        ///< what the library told the kit
  std::vector<std::string> mistakes;  ///< what the kit must not do
};

class KitFrontEnd {
 public:
  /// In the role of the step that is tried. Every second run keeps its connection open between the operations.
  explicit KitFrontEnd(const Plan& plan);
  KitFrontEnd(const KitFrontEnd&) = delete;
  KitFrontEnd& operator=(const KitFrontEnd&) = delete;
  ~KitFrontEnd();

  /// Carries out a step on the calling thread. A hang-up, which every thread has to block, cancels it.
  End operate(const Step& step);

  [[nodiscard]] const KitStory& story() const { return story_; }

  /// How the last operation ended, "add: nobody-pressed".
  [[nodiscard]] std::string ending() const;

 private:
  [[nodiscard]] tembra::Result start(const Step& step);
  void awaitLastCall() const;
  void expectSilence();
  void cancel();
  void hear(const Step& step, const tembra::Event& event);

  tembra::Frontend kit_;
  KitStory story_;
};

}  // namespace campaign

#endif
