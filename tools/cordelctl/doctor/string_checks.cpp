// The texts that the library itself shows.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "schema/schema.h"

#include <algorithm>

namespace {

constexpr const char* kTemplate = "DuplicateID_EditingFile_SendingProject";
constexpr std::size_t kLongestMessage = 259;
constexpr std::size_t kLongestID = 5; // digits of 32767

std::string TextOf(const DocumentNode& root, std::string_view container, std::string_view attribute) {
    for (const Item& row : ItemsOf(root, container)) {
        if (const std::string* const text = FindValueIn(*row.node, attribute); text != nullptr) {
            return *text;
        }
    }
    return {};
}

std::string KindName(const DocumentNode& root, std::string_view type) {
    for (const Item& row : ItemsOf(root, "ProjectFilter")) {
        const std::string* const text = FindValueIn(*row.node, "Value");
        if (text != nullptr && ValueIn(*row.node, "ID") == type) {
            return *text;
        }
    }
    return {};
}

void Add(Level level, const char* check, const char* container, std::string what, const char* consequence,
         const char* mend, Findings& findings) {
    findings.push_back({level, check, container, {}, {}, std::move(what), consequence, mend});
}

void CheckTexts(const DocumentNode& root, Findings& findings) {
    if (TextOf(root, "Main", "Title").empty()) {
        Add(Level::Warning, "text-missing", "Main", "Title is missing or empty.",
            "The message of a clash has no caption.", "Add it to an item of the container.", findings);
    }
    if (TextOf(root, "StringTable", "FontFile_SPFTTF").empty()) {
        Add(Level::Warning, "text-missing", "StringTable", "FontFile_SPFTTF is missing or empty.",
            "The message of a clash of fonts does not say what clashes.", "Add it to an item of the container.",
            findings);
    }
    for (const char* const type : {"1", "2", "5", "6", "8"}) {
        const bool shown = *type == '2' || *type == '8';
        if (KindName(root, type).empty()) {
            Add(shown ? Level::Warning : Level::Note, "text-missing", "ProjectFilter",
                std::string("There is no name for files of the Type ") + type + ".",
                shown ? "The message of a clash shows the code of the Type in its place."
                      : "The library does not need it; a host that shows it gets the code in its place.",
                "Add an item with ID and Value.", findings);
        }
    }
}

/// The conversions of a template in order: 's' and 'd', '%' for a per cent sign, 'x' for anything else.
std::string ConversionsOf(std::string_view text) {
    std::string conversions;
    for (std::size_t i = text.find('%'); i != std::string_view::npos; i = text.find('%', i)) {
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        conversions += next == 's' || next == 'd' || next == '%' ? next : 'x';
        i += 2;
    }
    return conversions;
}

bool IsKindThenID(std::string_view conversions) {
    return std::string_view("sdsd").starts_with(conversions) && conversions.size() % 2 == 0;
}

std::size_t MessageLength(const std::string& text, const std::string& conversions, const std::string& kind) {
    std::size_t length = ByteLength(text);
    for (const char conversion : conversions) {
        if (conversion == 's' || conversion == 'd') {
            length += (conversion == 's' ? ByteLength(kind) : kLongestID) - 2;
        }
    }
    return length;
}

void CheckTemplate(const DocumentNode& root, Findings& findings) {
    constexpr const char* kContainer = "StringTable";
    const std::string text = TextOf(root, kContainer, kTemplate);
    if (text.empty()) {
        Add(Level::Warning, "text-missing", kContainer, std::string(kTemplate) + " is missing or empty.",
            "The message of a clash is empty.", "Add it: \"Two files of the kind %s have the ID %d.\"", findings);
        return;
    }
    const std::string conversions = ConversionsOf(text);
    if (conversions.find_first_not_of("sd") != std::string::npos) {
        Add(Level::Warning, "template-has-other-marks", kContainer,
            std::string(kTemplate) + " has a per cent sign that is neither %s nor %d.",
            "CheckID shows it as it stands, and IdsAreValid another way.", "Use nothing but %s and %d.", findings);
    } else if (conversions.empty()) {
        Add(Level::Note, "template-without-marks", kContainer, std::string(kTemplate) + " has neither %s nor %d.",
            "The message of a clash says neither which kind of file nor which ID.",
            "Name both: \"Two files of the kind %s have the ID %d.\"", findings);
    } else if (!IsKindThenID(conversions)) {
        Add(Level::Warning, "template-order", kContainer,
            std::string(kTemplate) + " does not name kind and ID in turn, the kind first and each at most twice.",
            "IdsAreValid fills in kind, ID, kind, ID whatever the marks are: it shows an ID for a kind, or the marks.",
            "Put %s before %d: \"Two files of the kind %s have the ID %d.\"", findings);
    }
    std::size_t longest = 0;
    for (const std::string& kind : {KindName(root, "2"), TextOf(root, kContainer, "FontFile_SPFTTF")}) {
        longest = std::max(longest, MessageLength(text, conversions, kind));
    }
    if (longest > kLongestMessage) {
        Add(Level::Error, "message-too-long", kContainer,
            "Filled in, " + std::string(kTemplate) + " takes up to " + std::to_string(longest) + " bytes.",
            "IdsAreValid stops the host when it is about to show a clash.",
            "Shorten it, or the names of the kinds, to at most 259 bytes in all.", findings);
    }
}

} // namespace

void CheckStrings(const DocumentNode& root, Findings& findings) {
    CheckTexts(root, findings);
    CheckTemplate(root, findings);
}
