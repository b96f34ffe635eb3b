// Between the host's UTF-8 and the system's UTF-16. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace host {

std::wstring ToWide(std::string_view text);
std::string ToUtf8(std::wstring_view text);

}  // namespace host
