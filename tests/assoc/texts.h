// The texts that a front end gives a device.
#ifndef TEMBRA_TESTS_ASSOC_TEXTS_H
#define TEMBRA_TESTS_ASSOC_TEXTS_H

#include <tembra/assoc.h>

#include <string>

inline void setTexts(TembraAssociation& assoc, std::string name, std::string location) {
  assoc.setDevName(name.data());
  assoc.setDevLocation(location.data());
}

#endif
