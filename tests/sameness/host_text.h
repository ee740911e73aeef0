// The texts of a script are UTF-8, those of a host are in the code page.

#pragma once

#include <string>

std::string FromUtf8(const std::string& text);
std::string ToUtf8(const std::string& bytes);
