#include "ids/clash_message.h"

#include "nodes/attribute_values.h"
#include "platform/bounded_text.h"
#include "platform/code_page.h"
#include "platform/message_box.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

constexpr std::size_t kMessageSize = 260;    // with the terminating zero
constexpr std::size_t kWidthLimit = 1000000; // of a width or precision, far beyond what fits
constexpr std::size_t kFilledLimit = 65536;  // of a filled template, far beyond what a person reads

/// Replaces every placeholder, as far as the first `enough` bytes of the result go; what follows them is arbitrary.
std::string ReplaceAll(std::string_view text, std::string_view placeholder, std::string_view replacement,
                       std::size_t enough) {
    std::string result;
    while (result.size() < enough) {
        const std::size_t found = text.find(placeholder);
        result += text.substr(0, std::min(found, enough));
        if (found == std::string_view::npos) {
            break;
        }
        result += replacement.substr(0, enough);
        text.remove_prefix(found + placeholder.size());
    }
    return result;
}

/// The part of a directive between "%" and the conversion.
struct Directive {
    bool bLeft = false;
    bool bZeros = false;
    bool bPlus = false;
    bool bBlank = false;
    std::size_t width = 0;
    bool bPrecision = false;
    std::size_t precision = 0;
    char conversion = '\0';
    std::size_t length = 0; // with the "%" and the conversion
};

std::size_t TakeNumber(std::string_view text, std::size_t& position) noexcept {
    std::size_t number = 0;
    for (; position < text.size() && text[position] >= '0' && text[position] <= '9'; ++position) {
        number = std::min(number * 10 + static_cast<std::size_t>(text[position] - '0'), kWidthLimit);
    }
    return number;
}

/// Reads the directive that `text` begins with; its conversion is zero when the text ends before it.
Directive ReadDirective(std::string_view text) noexcept {
    Directive directive;
    std::size_t position = 1;
    for (; position < text.size() && std::string_view("-0+ #").find(text[position]) != std::string_view::npos;
         ++position) {
        directive.bLeft = directive.bLeft || text[position] == '-';
        directive.bZeros = directive.bZeros || text[position] == '0';
        directive.bPlus = directive.bPlus || text[position] == '+';
        directive.bBlank = directive.bBlank || text[position] == ' ';
    }
    directive.width = TakeNumber(text, position);
    if (position < text.size() && text[position] == '.') {
        ++position;
        directive.bPrecision = true;
        directive.precision = TakeNumber(text, position);
    }
    if (position < text.size()) {
        directive.conversion = text[position++];
    }
    directive.length = position;
    return directive;
}

void AppendPadded(std::string& result, const Directive& directive, std::string_view text) {
    const std::size_t padding = directive.width - std::min(directive.width, text.size());
    result.append(directive.bLeft ? 0 : padding, ' ');
    result += text;
    result.append(directive.bLeft ? padding : 0, ' ');
}

void AppendText(std::string& result, const Directive& directive, std::string_view text) {
    AppendPadded(result, directive, directive.bPrecision ? text.substr(0, directive.precision) : text);
}

void AppendNumber(std::string& result, const Directive& directive, int32_t number) {
    std::string digits = std::to_string(number);
    const std::string sign = number < 0 ? "-" : directive.bPlus ? "+" : directive.bBlank ? " " : "";
    digits.erase(0, number < 0 ? 1 : 0);
    if (directive.bPrecision && directive.precision == 0 && number == 0) {
        digits.clear();
    }
    std::size_t fewest = directive.precision;
    if (directive.bZeros && !directive.bLeft && !directive.bPrecision && directive.width > sign.size()) {
        fewest = directive.width - sign.size();
    }
    digits.insert(0, fewest - std::min(fewest, digits.size()), '0');
    AppendPadded(result, directive, sign + digits);
}

} // namespace

AnsiString ClashTemplate(CXmlObject* strings) {
    return ReadValue(strings, "StringTable", "DuplicateID_EditingFile_SendingProject");
}

std::string FillPlaceholders(std::string_view text, std::string_view kindName, std::string_view id) {
    // Of two bytes at most the second pass makes one, so twice the limit is enough for it, and one byte that the first
    // may have cut off a placeholder.
    const std::string named = ReplaceAll(text, "%s", kindName, 2 * kFilledLimit + 2);
    std::string filled = ReplaceAll(named, "%d", id, kFilledLimit + 1);
    filled.resize(platform::WholeCharacters(filled, kFilledLimit));
    return filled;
}

std::string FormatClash(std::string_view text, std::string_view kindName, int32_t id) {
    constexpr int kArguments = 4; // kind, ID, kind, ID
    std::string result;
    int argument = 0;
    for (std::size_t position = 0; position < text.size();) {
        if (text[position] != '%') {
            result += text[position++];
            continue;
        }
        const Directive directive = ReadDirective(text.substr(position));
        const bool bArgument = directive.conversion == 's' || directive.conversion == 'd';
        if (bArgument && argument < kArguments) {
            if (argument++ % 2 == 0) {
                AppendText(result, directive, kindName);
            } else {
                AppendNumber(result, directive, id);
            }
        } else if (directive.conversion == '%') {
            result += '%';
        } else {
            result += text.substr(position, directive.length);
        }
        position += directive.length;
    }
    if (result.size() >= kMessageSize) {
        platform::StopForField("message", result.size(), kMessageSize);
    }
    return result;
}

void ShowClash(CXmlObject* strings, const MessageWindows* windows, const std::string& text) {
    static const MessageWindows none{};
    const MessageWindows& lent = windows != nullptr ? *windows : none;
    const WindowHandle owner = lent.owner != nullptr ? *lent.owner : nullptr;
    std::vector<WindowHandle> handles; // the host may change its record while the message is shown
    for (const WindowHandle* const window : lent.windows) {
        if (window != nullptr) {
            handles.push_back(*window);
        }
    }
    const AnsiString caption = ReadValue(strings, "Main", "Title");
    const auto setEnabled = [&handles](bool enabled) {
        for (const WindowHandle handle : handles) {
            platform::SetWindowEnabled(handle, enabled);
        }
    };
    setEnabled(false);
    platform::ShowErrorMessage(owner, text.c_str(), caption.c_str());
    setEnabled(true);
}
