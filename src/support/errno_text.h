// Texts of errno values, on any thread and any libc.
#ifndef TEMBRA_SUPPORT_ERRNO_TEXT_H
#define TEMBRA_SUPPORT_ERRNO_TEXT_H

#include <cstring>

namespace tembra {

/// Text of one errno value, kept as long as the object.
class ErrnoText {
 public:
  explicit ErrnoText(int error) : text_(pick(strerror_r(error, buffer_, sizeof buffer_))) {}
  [[nodiscard]] const char* text() const { return text_; }

 private:
  // strerror_r gives the text on some libcs and a status on others.
  [[nodiscard]] const char* pick(const char* text) const { return text; }
  [[nodiscard]] const char* pick(int status) const { return status == 0 ? buffer_ : "Unknown error"; }

  char buffer_[128] = {};
  const char* text_;
};

}  // namespace tembra

#endif
