// The one export macro: what carries it is part of the public line, everything else in the library is hidden.
#ifndef TEMBRA_EXPORT_H
#define TEMBRA_EXPORT_H

#define TEMBRA_API __attribute__((visibility("default")))

#endif
