// The document that a verb reads whole.

#include "document_choice.h"

#include "document_places.h"
#include "failure.h"
#include "platform/platform.h"

ChosenDocument CurrentChoice(const Globals& globals, bool texts) {
    RequireInstalledDocuments();
    const DocumentPlace place = texts                     ? StringsDocument(globals.language)
                                : globals.printer.empty() ? MainDocument()
                                                          : PrinterDocument(PrinterFileName(globals.printer));
    return {place.title, place.Loaded()};
}

DocumentNode ReadChosen(const ChosenDocument& chosen) {
    const std::string path = platform::TextOf(chosen.file);
    if (!std::filesystem::is_regular_file(chosen.file)) {
        throw CFailure(ExitCode::NoDocument, chosen.title + " is not there: " + path,
                       "put it there, or name another with --printer or --language");
    }
    DocumentContent content = ReadDocument(chosen.file);
    if (content.error) {
        const SourcePlace& place = content.error->place;
        throw CFailure(ExitCode::NoDocument,
                       chosen.title + " cannot be read as XML: " + path +
                           (place.line > 0
                                ? ", line " + std::to_string(place.line) + ", column " + std::to_string(place.column)
                                : "") +
                           ": " + platform::FromUtf8(content.error->reason),
                       "mend it there, or put the installed one in its place: cordelctl restore");
    }
    return std::move(content.root);
}
