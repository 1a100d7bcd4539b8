// Structures that begin with their own size as the caller knows it.
#ifndef TEMBRA_SUPPORT_SIZED_STRUCT_H
#define TEMBRA_SUPPORT_SIZED_STRUCT_H

#include <cerrno>

namespace tembra {

/// Copies all but the size. @return 0, or EINVAL when the caller's structure is smaller than the first version's.
template <typename Struct>
int fillIn(Struct* callers, Struct ours) {
  if (callers == nullptr || callers->size < sizeof ours) return EINVAL;
  ours.size = callers->size;
  *callers = ours;
  return 0;
}

}  // namespace tembra

#endif
