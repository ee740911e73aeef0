// Arbitrary bytes as a document, with limits that they can reach, and a sequence of edits on it that the bytes choose:
// saved and loaded again after every few, the document holds what it held, or the old copy stays and holds that.
//
// An input is two parts, divided by a line that holds only "----": the document and the choices.

#include "engine_document.h"
#include "fuzz_failure.h"
#include "kept_tree.h"
#include "nodes/node_writers.h"
#include "random_case.h"
#include "scratch_folder.h"

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

class CEdits {
public:
    CEdits(const std::uint8_t* bytes, std::size_t size) : m_choices(bytes, size) {}

    bool HasMore() const { return m_choices.HasMore(); }

    void EditOnce(CXmlObject& document) {
        CRequest query(Container().c_str(), Name().c_str(), Text().c_str());
        for (std::size_t count = m_choices.Below(4); count > 0; --count) {
            query.With(Name().c_str(), Text().c_str());
        }
        switch (m_choices.Below(5)) {
        case 0:
        case 1:
            WriteItem(&document, &query);
            break;
        case 2:
            query.Counting(0);
            WriteAttribute(&document, &query);
            break;
        case 3:
            UpdateItem(&document, &query);
            break;
        default:
            RemoveItems(&document, &query);
        }
    }

private:
    std::string Of(std::initializer_list<const char*> texts) { return texts.begin()[m_choices.Below(texts.size())]; }
    std::string Container() { return Of({"a", "b", "Files", "Item", "i", "p:a", "List"}); }
    std::string Name() {
        return Of({"a", "b", "c", "p", "q", "p:a", "q:a", "p:b:c", "xmlns", "xmlns:p", "xmlns:q", "xml:lang", ":",
                   "\xC3\x84", "\xF0\x90\x80\x80"});
    }
    std::string Text() {
        if (m_choices.OneIn(12)) {
            return std::string(1500 * (1 + m_choices.Below(8)), Of({"v", "\"", "<", "\t"})[0]);
        }
        return Of({"", "1", " x", "x  y", "&", "\"<]]>", "\t", "\r\n", "u", "v", "\xFF", "\x01", "\xEF\xBF\xBE",
                   "http://www.w3.org/2000/xmlns/"});
    }

    CChoices m_choices;
};

class CFile {
public:
    CFile() : m_path(m_folder.Path() / "document.xml") {}

    /// Null when the file holds no document.
    std::unique_ptr<CXmlObject> Load() const {
        auto object = std::make_unique<CXmlObject>();
        object->m_pDom = DomDocument::Create();
        if (!object->m_pDom->Load(m_path.c_str())) {
            return nullptr;
        }
        object->m_pTables = std::make_unique<CDocumentTables>(*object->m_pDom);
        return object;
    }

    bool Save(CXmlObject& document) const {
        try {
            document.m_pDom->Save(m_path.c_str());
            return true;
        } catch (const DomError&) {
            return false;
        }
    }

    void Fill(const std::string& bytes) const { std::ofstream(m_path, std::ios::binary) << bytes; }

private:
    const CScratchFolder m_folder;
    const fs::path m_path;
};

RefNode TreeOf(CXmlObject& document) { return ReadTree(document.m_pDom->DocumentElement().root()); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const CFile file;
    const std::string input(reinterpret_cast<const char*>(bytes), size);
    const std::string divider = "\n----\n";
    const std::size_t end = std::min(input.find(divider), input.size());
    const std::size_t choices = std::min(end + divider.size(), input.size());
    file.Fill(input.substr(0, end));
    std::unique_ptr<CXmlObject> document = file.Load();
    if (document == nullptr) {
        return 0;
    }
    RefNode onDisk = TreeOf(*document);
    CEdits edits(bytes + choices, size - choices);
    for (int round = 0; round < 8 && (round == 0 || edits.HasMore()); ++round) {
        for (int edit = 0; edit < 4 && edits.HasMore(); ++edit) {
            edits.EditOnce(*document);
        }
        if (file.Save(*document)) {
            onDisk = TreeOf(*document);
        }
        document = file.Load();
        Require(document != nullptr, "what was saved does not load");
        RequireKept(onDisk, TreeOf(*document));
        onDisk = TreeOf(*document);
    }
    return 0;
}
