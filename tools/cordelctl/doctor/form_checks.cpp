// Whether a file is a document at all, and its encoding.

#include "checks.h"

void CheckForm(const DocumentContent& content, Findings& findings) {
    if (content.error) {
        findings.push_back({Level::Error,
                            "not-well-formed",
                            {},
                            {},
                            content.error->place,
                            "The document cannot be read as XML: " + content.error->reason + ".",
                            "It cannot be opened: the function that opens it returns null.",
                            "Mend it at that place, or put the installed document in place of the copy: cordelctl "
                            "restore."});
    }
    if (!content.encoding.empty() && content.encoding != "UTF-8") {
        findings.push_back({Level::Note,
                            "other-encoding",
                            {},
                            {},
                            {},
                            "The encoding of the document is " + content.encoding + ".",
                            "The library reads it, if the system knows that encoding, and saves it in UTF-8.",
                            "Save it in UTF-8 to have it read everywhere."});
    }
}
