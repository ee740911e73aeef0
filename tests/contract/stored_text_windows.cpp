// The system converts between the code page and UTF-16, and knows what becomes of bytes that stand for nothing.

#include "stored_text.h"

#include "cordelbox.h"

#include <cstddef>
#include <stdexcept>

namespace {

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

bool IsLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool IsDocumentText(const std::wstring& text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        const wchar_t unit = text[position];
        if (IsHighSurrogate(unit) && position + 1 < text.size() && IsLowSurrogate(text[position + 1])) {
            ++position;
        } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit == 0xFFFE || unit == 0xFFFF ||
                   (unit < 0x20 && unit != L'\t' && unit != L'\n' && unit != L'\r')) {
            return false;
        }
    }
    return true;
}

std::wstring Wide(const std::string& bytes) {
    const int count = static_cast<int>(bytes.size());
    std::wstring text(static_cast<std::size_t>(::MultiByteToWideChar(CP_ACP, 0, bytes.data(), count, nullptr, 0)),
                      L'\0');
    if (::MultiByteToWideChar(CP_ACP, 0, bytes.data(), count, text.data(), static_cast<int>(text.size())) == 0) {
        throw std::runtime_error("no text in UTF-16");
    }
    return text;
}

std::string Narrow(UINT codePage, const std::wstring& text) {
    const int count = static_cast<int>(text.size());
    std::string bytes(
        static_cast<std::size_t>(::WideCharToMultiByte(codePage, 0, text.data(), count, nullptr, 0, nullptr, nullptr)),
        '\0');
    if (::WideCharToMultiByte(codePage, 0, text.data(), count, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                              nullptr) == 0) {
        throw std::runtime_error("no text of 8 bits");
    }
    return bytes;
}

} // namespace

std::optional<StoredText> StoreText(const std::string& bytes) {
    if (bytes.empty()) {
        return StoredText();
    }
    const std::wstring text = Wide(bytes);
    return IsDocumentText(text) ? std::optional(StoredText{Narrow(CP_UTF8, text), Narrow(CP_ACP, text)}) : std::nullopt;
}
