// Arbitrary bytes as the main, the strings and a printer document, and all exports over them. What was opened and saved
// must open again, and hold the same.
//
// An input is four parts, divided by lines that hold only "----": the documents, and a name and a value, one a line.

#include "cordelbox.h"
#include "export_rounds.h"
#include "fuzz_failure.h"
#include "kept_tree.h"
#include "platform/semaphore.h"
#include "reference_document.h"
#include "scratch_folder.h"
#include "store/document_file.h"
#include "store/module_state.h"
#include "store/xml_object.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

class CHost {
public:
    CHost() {
        ::setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
        fs::create_directories(Copy("any").parent_path());
        fs::create_directories(Strings().parent_path());
        m_owner.semaphore = platform::NewSemaphore();
    }
    ~CHost() { platform::DeleteSemaphore(m_owner.semaphore); }
    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;

    fs::path Copy(const char* name) const { return Root() / "xml" / name; }
    fs::path Strings() const { return Root() / "language" / "English" / "Strings.xml"; }
    PoolOwner* Owner() { return &m_owner; }

private:
    fs::path Root() const { return m_folder.Path() / "Marvane" / "Hollivet" / "Cordelbox"; }
    const CScratchFolder m_folder;
    PoolOwner m_owner{};
};

std::array<std::string, 4> Parts(const std::string& input) {
    static const std::string kDivider = "\n----\n";
    std::array<std::string, 4> parts;
    std::size_t position = 0;
    for (std::string& part : parts) {
        const std::size_t end = &part == &parts.back() ? std::string::npos : input.find(kDivider, position);
        part = input.substr(position, end == std::string::npos ? end : end - position);
        if (end == std::string::npos) {
            break;
        }
        position = end + kDivider.size();
    }
    return parts;
}

/// The tree of the current document; nothing when none is open, or when it is empty but for its document element.
bool CurrentTree(RefNode& tree) {
    const CXmlObject* const document = State().currentDocument;
    if (document == nullptr) {
        return false;
    }
    for (const char* const name : {"Files", "Jobs", "Item", "a", "b", "i"}) {
        const DomNode node = document->m_pDom->FirstElementNamed(name);
        if (node) {
            tree = ReadTree(node.root());
            return true;
        }
    }
    return false;
}

/// What the current document holds is what it holds when it was saved and opened anew.
template <class Reopen>
void CheckReopened(Reopen reopen) {
    const bool bWasOpen = State().currentDocument != nullptr;
    RefNode before;
    const bool bHasTree = CurrentTree(before);
    const bool bSaved =
        bWasOpen && SaveToUserCopy(*State().currentDocument->m_pDom, State().currentDocument->m_strPath);
    reopen();
    Require((State().currentDocument != nullptr) == bWasOpen, "a document that was saved does not open again");
    if (bHasTree && bSaved) {
        RefNode after;
        Require(CurrentTree(after), "an element is gone");
        RequireKept(before, after);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static CHost host;
    const auto parts = Parts(std::string(reinterpret_cast<const char*>(bytes), size));
    std::ofstream(host.Copy("Cordelbox.xml"), std::ios::binary) << parts[0];
    std::ofstream(host.Strings(), std::ios::binary) << parts[1];
    std::ofstream(host.Copy("Printer.xml"), std::ios::binary) << parts[2];
    const std::size_t lineEnd = parts[3].find('\n');
    const std::string name = parts[3].substr(0, lineEnd);
    const std::string value = lineEnd == std::string::npos ? "" : parts[3].substr(lineEnd + 1);

    GetXmlObj(host.Owner(), "English");
    CallReaders(name, value);
    CallWriters(name, value);
    CallReaders(name, value);
    CheckReopened([] {
        ReleaseAll();
        GetXmlObj(host.Owner(), "English");
    });
    GetPrinterXmlObj("Printer.xml");
    CallReaders(name, value);
    CallWriters(name, value);
    CheckReopened([] {
        ReleaseXmlObj("Printer.xml");
        GetPrinterXmlObj("Printer.xml");
    });
    ReleaseXmlObj("Printer.xml");
    ReleaseAll();
    Require(host.Owner()->head == nullptr, "a document is still open");
    return 0;
}
