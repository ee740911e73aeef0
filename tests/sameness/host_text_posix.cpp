#include "host_text.h"

std::string FromUtf8(const std::string& text) { return text; }

std::string ToUtf8(const std::string& bytes) { return bytes; }
