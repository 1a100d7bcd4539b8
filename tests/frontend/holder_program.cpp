// A front end of the router for tests: usage: PROGRAM WATCH-PATH NAME [--keep-open] OPERATION...
// Does the operations one after the other, takes what is proposed, and prints each event as JSON.
#include <tembra/frontend.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

int start(tembra_frontend* kit, const std::string& operation) {
  if (operation == "add") return tembra_frontend_add(kit);
  if (operation == "remove") return tembra_frontend_remove(kit);
  return tembra_frontend_hue_list(kit);
}

void awaitEnd(tembra_frontend* kit) {
  for (bool ended = false; !ended;) {
    tembra_event* event = tembra_frontend_next(kit, -1);
    std::puts(tembra_event_json(event));
    std::fflush(stdout);
    if (tembra_event_found(event) != nullptr) tembra_frontend_finish(kit, 0, nullptr, nullptr);
    ended = tembra_event_ended(event) != nullptr;
    tembra_event_free(event);
  }
}

}  // namespace

int main(int argc, char** argv) {
  tembra_options options{};
  options.size = sizeof options;
  options.watch_path = argv[1];
  options.program = argv[2];
  options.keep_open = static_cast<int>(argc > 3 && std::strcmp(argv[3], "--keep-open") == 0);
  tembra_frontend* kit = tembra_frontend_new(&options);
  if (kit == nullptr) return 1;
  for (int i = 3 + options.keep_open; i < argc; ++i) {
    if (start(kit, argv[i]) != 0) return 1;
    awaitEnd(kit);
  }
  tembra_frontend_free(kit);
  return 0;
}
