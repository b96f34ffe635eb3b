// Texts in the alphabets of URLs and of base 64. Pure functions.
#pragma once

#include <string>

namespace standin {

std::string Base64(const std::string& bytes);
// False for what is none.
bool FromBase64(const std::string& text, std::string& bytes);

}  // namespace standin
