// Structures with their size as first member. A program and the kit may have been built with different versions of one.
#ifndef TEMBRA_FRONTEND_SIZED_H
#define TEMBRA_FRONTEND_SIZED_H

#include <tembra/frontend.h>
#include <tembra/watch.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace tembra::frontend {

/// A structure that is handed out: all zero, but for its size.
template <typename Structure>
[[nodiscard]] Structure sized() {
  Structure structure{};
  structure.size = sizeof structure;
  return structure;
}

/// Where the structure ended in version 1.0: every program has as much.
template <typename Structure>
inline constexpr std::size_t kFirstSize = 0;
template <>
inline constexpr std::size_t kFirstSize<tembra_options> = offsetof(tembra_options, watch_path) +
                                                          sizeof(tembra_options::watch_path);
template <>
inline constexpr std::size_t kFirstSize<tembra_state> = offsetof(tembra_state, found) + sizeof(tembra_state::found);
template <>
inline constexpr std::size_t kFirstSize<tembra_holder> = offsetof(tembra_holder, phase) + sizeof(tembra_holder::phase);

/// Whether some version has a structure of this size.
template <typename Structure>
[[nodiscard]] bool isSized(const Structure* program) {
  return program != nullptr && program->size >= kFirstSize<Structure>;
}

/// Takes over what the program knows of a structure; the rest stays as it is. False: the size is none.
template <typename Structure>
[[nodiscard]] bool takeIn(Structure& structure, const Structure& program) {
  if (!isSized(&program)) return false;
  std::memcpy(&structure, &program, std::min(program.size, sizeof structure));
  structure.size = sizeof structure;
  return true;
}

/// Fills in what fits into the program's structure, whose size stays. False: the size is none.
template <typename Structure>
[[nodiscard]] bool handOut(Structure* program, Structure structure) {
  if (!isSized(program)) return false;
  structure.size = program->size;
  std::memcpy(program, &structure, std::min(structure.size, sizeof structure));
  return true;
}

}  // namespace tembra::frontend

#endif
