// The exports that open and release documents.

#include "cordelbox.h"
#include "store/document_pool.h"
#include "store/module_state.h"

#include <string>

namespace {

constexpr const char* kXmlFolder = "Cordelbox\\xml\\";
constexpr const char* kLanguageFolder = "Cordelbox\\language\\";

AnsiString Join(const char* folder, const char* name, const char* end = "") {
    const std::string path = std::string(folder) + (name != nullptr ? name : "") + end;
    return AnsiString(path.data(), path.size());
}

AnsiString MainDocumentPath() { return Join(kXmlFolder, "Cordelbox.xml"); }

} // namespace

CXmlObject* GetXmlObj(PoolOwner* owner, const char* language) {
    ModuleState& state = State();
    state.poolOwner = owner;
    state.currentDocument = OpenDocument(owner, MainDocumentPath());
    state.stringsPath = Join(kLanguageFolder, language, "\\Strings.xml");
    state.stringsDocument = OpenDocument(owner, state.stringsPath);
    return state.stringsDocument;
}

int32_t ReleaseAll() noexcept {
    const ModuleState& state = State();
    ReleaseDocument(state.poolOwner, MainDocumentPath());
    return ReleaseDocument(state.poolOwner, state.stringsPath);
}

CXmlObject* GetPrinterXmlObj(const char* fileName) {
    ModuleState& state = State();
    state.currentDocument = OpenDocument(state.poolOwner, Join(kXmlFolder, fileName));
    return state.currentDocument;
}

int32_t ReleaseXmlObj(const char* fileName) noexcept {
    return ReleaseDocument(State().poolOwner, Join(kXmlFolder, fileName));
}
