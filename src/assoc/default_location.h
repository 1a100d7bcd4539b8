// Where a device is until its user says otherwise.
#ifndef TEMBRA_ASSOC_DEFAULT_LOCATION_H
#define TEMBRA_ASSOC_DEFAULT_LOCATION_H

namespace tembra {

inline constexpr char kDefaultLocation[] = "Default";

}  // namespace tembra

#endif
