#include "host_text.h"

#include <windows.h>

namespace {

std::string Converted(const std::string& bytes, UINT from, UINT to) {
    if (bytes.empty()) {
        return {};
    }
    std::wstring wide(bytes.size(), L'\0');
    wide.resize(static_cast<std::size_t>(::MultiByteToWideChar(from, 0, bytes.data(), static_cast<int>(bytes.size()),
                                                               wide.data(), static_cast<int>(wide.size()))));
    std::string text(wide.size() * 3, '\0');
    text.resize(
        static_cast<std::size_t>(::WideCharToMultiByte(to, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                                                       static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

} // namespace

std::string FromUtf8(const std::string& text) { return Converted(text, CP_UTF8, CP_ACP); }

std::string ToUtf8(const std::string& bytes) { return Converted(bytes, CP_ACP, CP_UTF8); }
