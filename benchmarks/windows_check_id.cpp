// Windows: CheckID on a project of 1,000 files, and the same lookups written directly over the system's DOM. There each
// lookup walks the list and reads the attributes of the filter by name, up to the first that differs.
//
// Prints the two medians and their ratio.

#include "com_pointer.h"
#include "cordelbox.h"
#include "projects.h"

#include <msxml2.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr CLSID kDocumentClass = {0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};
constexpr const char* kDocument = "Fonts.xml";
constexpr int kLibraryRepetitions = 21;
constexpr int kPeerRepetitions = 3; // of work that takes seconds

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(EXIT_FAILURE);
}

void Require(bool done, const char* what) {
    if (!done) {
        Fail(what);
    }
}

fs::path InstallProject() {
    std::array<wchar_t, MAX_PATH> program{};
    Require(::GetModuleFileNameW(nullptr, program.data(), MAX_PATH) != 0, "no path of this program");
    const fs::path folder = fs::path(program.data()).parent_path() / "Cordelbox" / "xml";
    fs::create_directories(folder);
    std::ofstream(folder / kDocument, std::ios::binary) << FontProject(kSmall);
    return folder / kDocument;
}

/// A project in the system's DOM.
class CPlainDom {
public:
    explicit CPlainDom(const fs::path& file) {
        const HRESULT result = ::CoCreateInstance(kDocumentClass, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                                  reinterpret_cast<void**>(m_document.Receive()));
        Require(SUCCEEDED(result), "no DOM");
        m_document->put_async(VARIANT_FALSE);
        VARIANT_BOOL loaded = VARIANT_FALSE;
        m_document->load(CComText(file.native()).AsVariant(), &loaded);
        Require(loaded == VARIANT_TRUE, "the project does not load");
        m_files = First(L"Files");
    }

    /// The lookups of CheckID; the number of those that found a file.
    int CheckId() const {
        const CComPointer<IXMLDOMElement> property = FirstChild(First(L"Property"));
        const CComText edited = Read(property, CComText(L"FileID"));
        const CComText fileIdName(L"FileID");
        const CComText id = Read(Find({{fileIdName, edited}}), CComText(L"ID"));
        const CComText idName(L"ID");
        const CComText typeName(L"Type");
        const CComText types[] = {CComText(L"1"), CComText(L"5")};
        int users = 0;
        for (CComPointer<IXMLDOMElement> file = FirstChild(m_files); file; file = Next(file)) {
            const CComText fileId = Read(file, fileIdName);
            for (const CComText& type : types) {
                users += Find({{fileIdName, fileId}, {idName, id}, {typeName, type}}) ? 1 : 0;
            }
        }
        return users;
    }

private:
    struct Pair {
        const CComText& name;
        const CComText& value;
    };

    static CComPointer<IXMLDOMElement> AsElement(const CComPointer<IXMLDOMNode>& node) {
        CComPointer<IXMLDOMElement> element;
        if (node) {
            node->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(element.Receive()));
        }
        return element;
    }

    CComPointer<IXMLDOMElement> First(const wchar_t* name) const {
        CComPointer<IXMLDOMNodeList> list;
        CComPointer<IXMLDOMNode> node;
        m_document->getElementsByTagName(CComText(name).Get(), list.Receive());
        list->nextNode(node.Receive());
        return AsElement(node);
    }

    static CComPointer<IXMLDOMElement> FirstChild(const CComPointer<IXMLDOMElement>& parent) {
        CComPointer<IXMLDOMNode> child;
        parent->get_firstChild(child.Receive());
        return AsElement(child);
    }

    static CComPointer<IXMLDOMElement> Next(const CComPointer<IXMLDOMElement>& element) {
        CComPointer<IXMLDOMNode> sibling;
        element->get_nextSibling(sibling.Receive());
        return AsElement(sibling);
    }

    static CComText Read(const CComPointer<IXMLDOMElement>& element, const CComText& name) {
        CComText text;
        VARIANT value;
        ::VariantInit(&value);
        element->getAttribute(name.Get(), &value);
        if (value.vt == VT_BSTR) {
            *text.Receive() = value.bstrVal;
        }
        return text;
    }

    CComPointer<IXMLDOMElement> Find(std::initializer_list<Pair> filter) const {
        CComPointer<IXMLDOMElement> file = FirstChild(m_files);
        while (file && !std::all_of(filter.begin(), filter.end(), [&](const Pair& pair) {
                   return Read(file, pair.name).View() == pair.value.View();
               })) {
            file = Next(file);
        }
        return file;
    }

    CComPointer<IXMLDOMDocument> m_document;
    CComPointer<IXMLDOMElement> m_files;
};

template <class Work>
double MedianSeconds(int repetitions, Work work) {
    std::vector<double> seconds;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        const auto start = std::chrono::steady_clock::now();
        Require(work() == 1, "wrong result");
        seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(seconds.begin(), seconds.end());
    return seconds[seconds.size() / 2];
}

} // namespace

int main() {
    ::CoInitialize(nullptr);
    const fs::path file = InstallProject();

    PoolOwner owner{};
    owner.semaphore = ::CreateSemaphoreA(nullptr, 1, 1, nullptr);
    GetXmlObj(&owner, "");
    Require(GetPrinterXmlObj(kDocument) != nullptr, "the library does not open the project");
    const auto check = [] { return CheckID(nullptr, nullptr, nullptr); };
    check(); // makes the table and the index
    const double library = MedianSeconds(kLibraryRepetitions, check);

    const CPlainDom dom(file);
    const double peer = MedianSeconds(kPeerRepetitions, [&] { return dom.CheckId(); });

    constexpr double kBound = 300;
    std::printf("CheckID/%d/library %.3f ms, CheckID/%d/COM %.3f s: %.0f times faster (bound: %.0f) %s\n", kSmall,
                library * 1e3, kSmall, peer, peer / library, kBound, peer / library >= kBound ? "met" : "NOT MET");
    return EXIT_SUCCESS;
}
