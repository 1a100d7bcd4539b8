/* Adds devices in C11: each device whose button is pressed, with the type and the name that the library proposes.
 * usage: add [HOW_MANY] */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tembra/frontend.h>

/* Returns the operation's outcome when the event is its end, else 0. */
static int handle(tembra_frontend* kit, const tembra_event* event) {
  const struct tembra_found* found = tembra_event_found(event);
  const struct tembra_warning* warning = tembra_event_warning(event);
  const struct tembra_ended* ended = tembra_event_ended(event);
  switch (tembra_event_head(event)->kind) {
    case TEMBRA_EVENT_WAITING:
      puts("Press the button of the device.");
      break;
    case TEMBRA_EVENT_FOUND: {
      const int error = tembra_frontend_finish(kit, found->type, found->name, found->place);
      if (error != 0) {
        fprintf(stderr, "%s: %s\n", found->name, strerror(error));
        tembra_frontend_cancel(kit);
      }
      break;
    }
    case TEMBRA_EVENT_ADDED:
      printf("Added %s (%s).\n", tembra_event_device(event)->name, tembra_type_name(tembra_event_device(event)->type));
      break;
    case TEMBRA_EVENT_WARNING:
      fprintf(stderr, "%s\n", warning->text);
      break;
    case TEMBRA_EVENT_ENDED:
      printf("%s%s%s\n", ended->text, *ended->advice == '\0' ? "" : " ", ended->advice);
      return ended->outcome;
    default:
      break;
  }
  return 0;
}

static int add(tembra_frontend* kit) {
  if (tembra_frontend_add(kit) != 0) return TEMBRA_FAILED;
  int outcome = 0;
  while (outcome == 0) {
    tembra_event* event = tembra_frontend_next(kit, -1);
    outcome = event == NULL ? TEMBRA_FAILED : handle(kit, event);
    tembra_event_free(event);
  }
  return outcome;
}

int main(int argc, char** argv) {
  tembra_frontend* kit = tembra_frontend_new(NULL);
  if (kit == NULL) {
    perror("add");
    return EXIT_FAILURE;
  }
  int left = argc > 1 ? atoi(argv[1]) : 1;
  while (left > 0 && add(kit) == TEMBRA_DONE) --left;
  tembra_frontend_free(kit);
  return left == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
