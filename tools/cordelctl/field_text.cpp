// Fills the fixed text fields of the library's records.

#include "field_text.h"

#include "failure.h"
#include "output.h"
#include "platform/platform.h"

#include <algorithm>

namespace {

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r'; }

} // namespace

std::string FitText(const std::string& text, std::size_t limit, const std::string& what) {
    std::string fitted = text;
    if (std::any_of(fitted.begin(), fitted.end(), IsControl)) {
        std::replace_if(fitted.begin(), fitted.end(), IsControl, ' ');
        Note(what + ": control characters became blanks");
    }
    if (fitted.size() > limit) {
        fitted.resize(platform::CutLength(fitted, limit));
        Note(what + " was cut from " + std::to_string(text.size()) + " to " + std::to_string(fitted.size()) + " bytes");
    }
    return fitted;
}

void RequireFit(const std::string& text, std::size_t limit, const std::string& what) {
    if (text.size() > limit) {
        throw CFailure(ExitCode::Refused, what + " is " + std::to_string(text.size()) + " bytes long; at most " +
                                              std::to_string(limit) + " fit");
    }
    if (std::any_of(text.begin(), text.end(), IsControl) || !platform::IsWellFormed(text)) {
        throw CFailure(ExitCode::Refused,
                       what + " holds control characters, or bytes that are no characters: a document cannot hold it");
    }
}
