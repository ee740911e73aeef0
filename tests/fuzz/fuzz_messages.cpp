// Arbitrary templates and names of kinds, formatted by the library and by the C library one directive at a time. An
// input is a number, a name and a template, one a line; the template is all the rest.

#include "fuzz_failure.h"
#include "ids/clash_message.h"
#include "platform/bounded_text.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t kMessageSize = 260;

struct Directive {
    std::string text;
    std::string flags;
    std::string width;
    bool bPrecision = false;
    std::string precision;
    char conversion = '\0';
};

Directive ReadDirective(std::string_view text) {
    Directive directive;
    std::size_t position = 1;
    const auto take = [&](std::string_view allowed) {
        std::string taken;
        while (position < text.size() && allowed.find(text[position]) != std::string_view::npos) {
            taken += text[position++];
        }
        return taken;
    };
    directive.flags = take("-0+ #");
    directive.width = take("0123456789");
    if (position < text.size() && text[position] == '.') {
        directive.bPrecision = true;
        ++position;
        directive.precision = take("0123456789");
    }
    if (position < text.size()) {
        directive.conversion = text[position++];
    }
    directive.text = text.substr(0, position);
    return directive;
}

/// What the C library makes of the directive; nothing when that is too long to be a message anyway.
std::optional<std::string> Print(const Directive& directive, bool bText, const std::string& name, int32_t id) {
    if (directive.width.size() > 5 || directive.precision.size() > 5) {
        return {};
    }
    std::string format = "%";
    for (const char flag : directive.flags) {
        // Of a text only its side counts; '#' is nothing for either.
        if (flag != '#' && (!bText || flag == '-')) {
            format += flag;
        }
    }
    format += directive.width;
    if (directive.bPrecision) {
        format += "." + directive.precision;
    }
    format += bText ? 's' : 'd';
    static char buffer[200000 + 1];
    const int length = bText ? std::snprintf(buffer, sizeof buffer, format.c_str(), name.c_str())
                             : std::snprintf(buffer, sizeof buffer, format.c_str(), id);
    if (length < 0 || static_cast<std::size_t>(length) >= kMessageSize) {
        return {};
    }
    return std::string(buffer, static_cast<std::size_t>(length));
}

std::optional<std::string> Expected(std::string_view text, const std::string& name, int32_t id) {
    std::string result;
    int arguments = 0;
    while (!text.empty()) {
        if (text[0] != '%') {
            result += text[0];
            text.remove_prefix(1);
            continue;
        }
        const Directive directive = ReadDirective(text);
        if (directive.conversion == '%') {
            result += '%';
        } else if ((directive.conversion == 's' || directive.conversion == 'd') && arguments < 4) {
            const auto printed = Print(directive, arguments++ % 2 == 0, name, id);
            if (!printed) {
                return {};
            }
            result += *printed;
        } else {
            result += directive.text;
        }
        text.remove_prefix(directive.text.size());
    }
    return result.size() < kMessageSize ? std::optional(result) : std::nullopt;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(bytes), size);
    const auto takeLine = [&] {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const std::string line = std::string(input.substr(0, end).c_str());
        input.erase(0, end + 1);
        return line;
    };
    const int32_t id = platform::LenientInteger(takeLine());
    const std::string name = takeLine();
    const std::string text = input.c_str();
    FillPlaceholders(text, name, std::to_string(id));
    const auto expected = Expected(text, name, id);
    if (expected) {
        const std::string message = FormatClash(text, name, id);
        Require(message == *expected, "\"" + message + "\" instead of \"" + *expected + "\"");
    }
    return 0;
}
