// Fills the fixed text fields of the library's records.

#include "records/field_text.h"

#include "failure.h"
#include "platform/utf8.h"
#include "schema/schema.h"
#include "system/system.h"

#include <algorithm>

namespace {

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r'; }

/// Length of the longest beginning of the text that ends with a whole character and takes at most `limit` bytes in the
/// code page.
std::size_t FittingLength(const std::string& utf8, std::size_t limit) {
    std::size_t length = 0;
    std::size_t taken = 0;
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < utf8.size(); length = position) {
        DecodeUtf8(utf8, position, codePoint);
        taken += ByteLength(utf8.substr(length, position - length));
        if (taken > limit) {
            return length;
        }
    }
    return length;
}

} // namespace

std::string FitText(const std::string& utf8, std::size_t limit, const std::string& what, FitNotes& notes) {
    std::string fitted = utf8;
    if (std::any_of(fitted.begin(), fitted.end(), IsControl)) {
        std::replace_if(fitted.begin(), fitted.end(), IsControl, ' ');
        notes.push_back(what + ": control characters became blanks");
    }
    const std::size_t length = ByteLength(fitted);
    if (length > limit) {
        fitted.resize(FittingLength(fitted, limit));
        notes.push_back(what + " was cut from " + std::to_string(length) + " to " + std::to_string(ByteLength(fitted)) +
                        " bytes");
    }
    return host::ToCodePage(fitted);
}

std::string RequireFit(const std::string& utf8, std::size_t limit, const std::string& what) {
    RequireText(utf8, what);
    std::string text = host::ToCodePage(utf8);
    if (text.size() > limit) {
        throw CFailure(ExitCode::Refused, what + " is " + std::to_string(text.size()) + " bytes long; at most " +
                                              std::to_string(limit) + " fit");
    }
    return text;
}
