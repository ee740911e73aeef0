// Whether a file is a document at all, and its encoding.

#include "doctor/checks.h"

#include "doctor/document_encoding.h"
#include "platform/utf8.h"

#include <algorithm>

namespace {

/// What a broken file comes from, as far as its bytes tell: what is so, and what to do.
struct Cause {
    const char* check;
    std::string what;
    std::string mend;
    SourcePlace place = {};
};

constexpr const char* kBack = "Put a former state in its place: cordelctl history, cordelctl restore STATE; or the "
                              "installed document: cordelctl reset.";

SourcePlace PlaceOf(std::string_view bytes, std::size_t offset) {
    const std::string_view before = bytes.substr(0, offset);
    const std::size_t line = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
    long column = 1;
    for (std::size_t position = line; position < offset;) {
        char32_t codePoint = 0;
        DecodeUtf8(bytes, position, codePoint);
        ++column;
    }
    return {1 + static_cast<long>(std::count(before.begin(), before.end(), '\n')), column};
}

/// The first line that begins with one of the marks that a merge leaves where it found no answer.
std::size_t ConflictMark(std::string_view bytes) {
    for (const std::string_view mark : {"<<<<<<< ", "=======\n", ">>>>>>> "}) {
        for (std::size_t at = bytes.find(mark); at != std::string_view::npos; at = bytes.find(mark, at + 1)) {
            if (at == 0 || bytes[at - 1] == '\n') {
                return at;
            }
        }
    }
    return std::string_view::npos;
}

/// An ampersand that begins no reference.
std::size_t StrayAmpersand(std::string_view bytes) {
    for (std::size_t at = bytes.find('&'); at != std::string_view::npos; at = bytes.find('&', at + 1)) {
        const std::size_t end =
            bytes.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789#._-", at + 1);
        if (end == at + 1 || end == std::string_view::npos || bytes[end] != ';') {
            return at;
        }
    }
    return std::string_view::npos;
}

/// A byte that is no UTF-8.
std::size_t WrongByte(std::string_view bytes) {
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < bytes.size();) {
        const std::size_t start = position;
        if (!DecodeUtf8(bytes, position, codePoint)) {
            return start;
        }
    }
    return std::string_view::npos;
}

std::string HexOf(char byte) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    return std::string("0x") + kDigits[value >> 4] + kDigits[value & 15];
}

Cause NotWellFormed(const DocumentError& error) {
    return {"not-well-formed", "The document cannot be read: " + error.reason + ".",
            std::string("Mend it at that place. ") + kBack, error.place};
}

Cause CauseOf(std::string_view bytes, const DocumentError& error) {
    if (error.tooLarge) {
        return NotWellFormed(error); // without a look at its bytes
    }
    if (bytes.empty()) {
        return {"empty-file", "The file is empty.", kBack};
    }
    if (bytes.find_first_not_of('\0') == std::string_view::npos) {
        return {"file-of-zeros",
                "The file holds nothing but zero bytes: it was lost when the system or the disk failed.", kBack};
    }
    if (const std::size_t at = ConflictMark(bytes); at != std::string_view::npos) {
        return {"conflict-marks", "A merge of two versions left its marks in the file.",
                "Choose one of the versions between the marks, and remove the marks.", PlaceOf(bytes, at)};
    }
    const bool utf8 = EncodingOf(bytes) == "UTF-8";
    if (const std::size_t at = utf8 ? WrongByte(bytes) : std::string_view::npos; at != std::string_view::npos) {
        return {"wrong-byte",
                "The byte " + HexOf(bytes[at]) +
                    " is no UTF-8, which the file says that it is in: it was probably written in "
                    "an old code page.",
                "Save the file in UTF-8, or say its encoding in the first line: encoding=\"windows-1252\".",
                PlaceOf(bytes, at)};
    }
    if (const std::size_t at = utf8 ? StrayAmpersand(bytes) : std::string_view::npos; at != std::string_view::npos) {
        return {"stray-ampersand", "An ampersand stands by itself.", "Write &amp; for it.", PlaceOf(bytes, at)};
    }
    return NotWellFormed(error);
}

} // namespace

void CheckForm(std::string_view bytes, const DocumentError& error, Findings& findings) {
    const Cause cause = CauseOf(bytes, error);
    findings.push_back({Level::Error,
                        cause.check,
                        {},
                        {},
                        cause.place.line > 0 ? cause.place : error.place,
                        cause.what,
                        "It cannot be opened: the function that opens it returns null.",
                        cause.mend});
}

void CheckEncoding(std::string_view bytes, Findings& findings) {
    const std::string encoding = EncodingOf(bytes);
    if (encoding != "UTF-8") {
        findings.push_back({Level::Note,
                            "other-encoding",
                            {},
                            {},
                            {},
                            "The encoding of the document is " + encoding + ".",
                            "The library reads it, if the system knows that encoding, and saves it in UTF-8.",
                            "Save it in UTF-8 to have it read everywhere."});
    }
}
