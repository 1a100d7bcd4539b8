// The reasons that an operation of the front-end kit ends with, from the kit's own table.
#include <tembra/frontend.h>

#include <fstream>

#include "docs/pages.h"

namespace {

constexpr char kReasonsIntroduction[] = R"(# Why an operation ends

Made by `make-docs` from the front-end kit's table of reasons; do not edit.

Each operation of the kit ends with an event that has a reason ([`<tembra/frontend.h>`](../frontend/include/tembra/frontend.h)).
Its number and its name never change: translate by the name. Before the sentences reach a front end, the kit fills in
what stands in braces. A translation finds the same in members of the event:

| Words | What it is | Member |
|---|---|---|
| `{server}` | the server's name, such as Z-Wave | `server` |
| `{error}` | what the system said, such as "Permission denied", in parentheses | `error`, an errno |
| `{device}`, `{named}` | the device's name and number, with the word "as" before it and without | `device_id`, `device_name` |
| `{which}` | the device's name and number, or "some devices" | `device_id`, `device_name` |
| `{holder}` | who has the connection | `holder_program`, `holder_pid`, `holder_since`, `holder_operation` |
| `{phase}` | when it happened, such as "while it described itself": `tembra_phase_text` | `phase`; translate by its name |
| `{why}` | why others cannot watch | `why`, in English only |

What is empty is left out. The sentences for calls that are refused have the key errno: `tembra_refusal_text`.

| Number | Name | What happened | What to do |
|---|---|---|---|
)";

constexpr int kLargestReason = 255;

}  // namespace

bool docs::writeReasons(const std::filesystem::path& path) {
  std::ofstream page(path);
  page << kReasonsIntroduction;
  for (int reason = 0; reason <= kLargestReason; ++reason) {
    const char* name = tembra_reason_name(reason);
    if (name == nullptr) continue;
    page << "| " << reason << " | `" << name << "` | " << tembra_reason_text(reason) << " | "
         << tembra_reason_advice(reason) << " |\n";
  }
  page.close();
  return page.good();
}
