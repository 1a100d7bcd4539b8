// A text with its control characters made visible.
#ifndef TEMBRA_TESTS_KIT_VISIBLE_TEXT_H
#define TEMBRA_TESTS_KIT_VISIBLE_TEXT_H

#include <string>
#include <string_view>

namespace kit {

std::string visible(std::string_view text);

/// The same behind another text.
void appendVisible(std::string& shown, std::string_view text);

}  // namespace kit

#endif
