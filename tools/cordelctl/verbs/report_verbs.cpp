// report: a page to look at, print or send.

#include "failure.h"
#include "page/page_gathering.h"
#include "page/page_writer.h"
#include "verbs/reply_input.h"
#include "verbs/verbs.h"

#include <ctime>

namespace {

constexpr const char* kSpecimenText = "Hamburgefonstiv 0123456789";

/// Today, for who reads the page later.
std::string Today() {
    const std::time_t now = std::time(nullptr);
    char text[32];
    std::strftime(text, sizeof text, "Made on %Y-%m-%d.", std::localtime(&now));
    return text;
}

std::vector<DocumentPlace> DocumentsOf(const Context& context) {
    std::vector<DocumentPlace> documents{MainDocument()};
    const std::vector<std::string>& named = context.Options().printers;
    for (const std::string& printer : named.empty() ? PrinterFileNames() : named) {
        documents.push_back(PrinterDocument(PrinterFileName(printer)));
    }
    return documents;
}

Result Report(Context& context) {
    const std::string name = context.Text("FILE");
    RequireFileName(name);
    RequireInstalledDocuments();
    const std::string text = context.Has("--text") ? context.Text("--text") : kSpecimenText;
    PageContent content = GatherPage(context, {text, DocumentsOf(context)});
    if (context.Has("--date")) {
        content.made = Today();
    }
    const std::string page = WritePage(content);
    Result result;
    if (name == "-") {
        result.shape = Result::Shape::Plain;
        result.data = page;
        return result;
    }
    try {
        host::WriteWhole(host::PathOf(name), page);
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NoOutput, name + " could not be written: " + error.code().message());
    }
    result.data = Value::Record{{"file", name}, {"bytes", page.size()}, {"findings", content.findings.size()}};
    result.said.push_back("the page is in " + name);
    return result;
}

} // namespace

std::vector<Verb> ReportVerbs() {
    return {
        {"report",
         "Write a page to look at, print or send: storage, files with specimens, profiles with their colours, IDs, "
         "jobs, "
         "and what the doctor finds",
         Effect::None,
         &Report,
         {{Option::Kind::Operand, "FILE", "", "The page to write, one XHTML file that needs nothing else", true,
           Offer::Files},
          {Option::Kind::Text, "--text", "TEXT", "The line to show in each font; without, one of letters and digits"},
          {Option::Kind::Flag, "--date", "",
           "Say on the page when it was made; without, the same documents give the "
           "same bytes"}},
         "The page shows the main document and every printer, or with --printer only those named.",
         "cordelctl report storage.html"}};
}
