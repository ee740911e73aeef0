// The library in use: opens the documents that the command line asks for, and releases all of them at the end.

#include "session.h"

#include "failure.h"

namespace {

std::string Languages() {
    std::string list;
    for (const auto& language : InstalledLanguages()) {
        list += (list.empty() ? "" : ", ") + language;
    }
    return list.empty() ? "none" : list;
}

// The library takes paths of at most 259 bytes, and of a per-user copy it keeps 11 of them in reserve.
constexpr std::size_t kLongestInstalledPath = 259;
constexpr std::size_t kLongestPerUserPath = 248;

[[noreturn]] void FailToOpen(const DocumentPlace& place) {
    const auto& file = place.Loaded();
    const std::string path = platform::TextOf(file);
    if (place.perUser.empty()) {
        throw CFailure(ExitCode::NoDocument, place.title + " cannot be opened: you have no folder for application data",
                       "set HOME, or XDG_CONFIG_HOME to an absolute path");
    }
    if (platform::TextOf(place.installed).size() > kLongestInstalledPath ||
        platform::TextOf(place.perUser).size() > kLongestPerUserPath) {
        throw CFailure(ExitCode::NoDocument, place.title + " cannot be opened: its path is too long: " + path,
                       "install the program, or keep the user's configuration, in a folder with a shorter path");
    }
    if (!std::filesystem::exists(file)) {
        throw CFailure(ExitCode::NoDocument, place.title + " is not there: " + path,
                       "put it there, or name another with --printer or --language");
    }
    throw CFailure(ExitCode::NoDocument, place.title + " cannot be read as XML: " + path,
                   &file == &place.perUser ? "see what is wrong with it: cordelctl doctor; to put the installed one in "
                                             "its place and keep it beside: cordelctl restore"
                                           : "mend it, or install it again");
}

} // namespace

CSession::CSession(const Globals& globals) : m_strings(StringsDocument(globals.language)) {
    RequireInstalledDocuments();
    // When the load itself fails (no memory), the library keeps its locks: nothing may be released after that.
    m_bStringsOpen = GetXmlObj(&m_pool.m_owner, globals.language.c_str()) != nullptr;
    try {
        // The main document is open by now or cannot be opened. Opening it by its file name as well tells which,
        // and later makes it the current document again.
        if (globals.printer.empty()) {
            Open(kMainDocumentName, MainDocument());
        } else {
            const std::string name = PrinterFileName(globals.printer);
            Open(name, PrinterDocument(name));
        }
    } catch (const CFailure&) {
        Release();
        throw;
    }
}

CSession::~CSession() { Release(); }

void CSession::RequireStrings() const {
    if (!m_bStringsOpen) {
        const std::string path = platform::TextOf(m_strings.Loaded());
        throw CFailure(ExitCode::NoDocument, m_strings.title + " cannot be opened: " + path,
                       "installed languages: " + Languages());
    }
}

void CSession::Visit(const std::string& printer) {
    const std::string name = PrinterFileName(printer);
    if (GetPrinterXmlObj(name.c_str()) == nullptr) {
        FailToOpen(PrinterDocument(name));
    }
    m_opened.push_back(name);
}

void CSession::Return() {
    GetPrinterXmlObj(m_strCurrent.c_str());
    m_opened.push_back(m_strCurrent);
}

void CSession::RequireKept() const {
    if (!m_current.IsKept()) {
        const std::string path = platform::TextOf(m_current.perUser);
        switch (m_current.perUser.empty() ? platform::FileState::Absent : platform::StateOf(m_current.perUser)) {
        case platform::FileState::NotWritable:
            throw CFailure(ExitCode::NotKept, "the change lasted only for this run: " + path + " may not be written",
                           "give yourself read and write permission for it");
        case platform::FileState::InUse:
            throw CFailure(ExitCode::NotKept, "the change lasted only for this run: another program holds " + path,
                           "try again when that program is done");
        case platform::FileState::NotAFile:
            throw CFailure(ExitCode::NotKept, "the change lasted only for this run: " + path + " is not a file",
                           "move it away, then run: cordelctl init");
        default:
            throw CFailure(ExitCode::NotKept,
                           "the change lasted only for this run: there is no per-user copy of " + m_current.title +
                               (path.empty() ? "" : " (" + path + ")"),
                           path.empty() ? "set HOME or XDG_CONFIG_HOME, then run: cordelctl init"
                                        : "create it with: cordelctl init");
        }
    }
    if (platform::StampOf(m_current.perUser) == m_stamp) {
        throw CFailure(ExitCode::NotKept, "the change could not be saved to " + platform::TextOf(m_current.perUser),
                       "see whether the disk is full or the folder read-only, then try again");
    }
}

void CSession::Open(const std::string& fileName, const DocumentPlace& place) {
    m_strCurrent = fileName;
    m_current = place;
    m_stamp = platform::StampOf(place.perUser);
    if (GetPrinterXmlObj(fileName.c_str()) == nullptr) {
        FailToOpen(place);
    }
    m_opened.push_back(fileName);
}

void CSession::Release() noexcept {
    for (const auto& fileName : m_opened) {
        ReleaseXmlObj(fileName.c_str());
    }
    ReleaseAll();
}
