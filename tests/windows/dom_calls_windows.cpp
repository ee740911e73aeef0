#include "dom_calls_windows.h"

#include "lacking_system.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <utility>

namespace {

bool g_bInside = false; // the DOM's own calls do not count

IXMLDOMParseError* g_parseError = nullptr;
std::size_t g_nSavedBlanks = 0;
DWORD g_context = 0;

/// A function's own address, by the table and the place in it where the hook now stands.
std::map<std::pair<void**, std::size_t>, void*> g_real;

/// What stands in a table instead of a function.
struct Hook {
    std::size_t place;
    void* function;
};

void Watch(IXMLDOMNode* node);
void Watch(IXMLDOMElement* element);
void Watch(IXMLDOMProcessingInstruction* instruction);
void Watch(IXMLDOMNamedNodeMap* map);
void Watch(IXMLDOMNodeList* list);

template <class Argument>
void WatchGiven(Argument) {}

template <class Interface>
requires requires(Interface* object) { Watch(object); }
void WatchGiven(Interface** given) {
    if (given != nullptr && *given != nullptr) {
        Watch(*given);
    }
}

/// The library asks for no other interface by its name.
void WatchGiven(void** given) { WatchGiven(reinterpret_cast<IXMLDOMProcessingInstruction**>(given)); }

void GiveItself(IXMLDOMNode* node, IXMLDOMNode** given) {
    node->AddRef();
    *given = node;
}

template <class... Arguments>
void GiveItself(Arguments...) {}

template <auto method>
struct Function;

template <class Interface, class... Arguments, HRESULT (STDMETHODCALLTYPE Interface::*method)(Arguments...)>
struct Function<method> {
    static inline const char* s_name = "";

    /// A pointer to a virtual function holds its offset in the table, and one.
    static std::size_t Place() {
        const auto pointer = method;
        std::size_t offset = 0;
        std::memcpy(&offset, &pointer, sizeof offset);
        return (offset - 1) / sizeof(void*);
    }

    static HRESULT STDMETHODCALLTYPE Call(Interface* object, Arguments... arguments) {
        switch (g_bInside ? DomAnswer::ItsOwn : CDomCallWatch::FateOf(s_name)) {
        case DomAnswer::Failure:
            return E_FAIL;
        case DomAnswer::Nothing:
            return S_FALSE;
        case DomAnswer::Success:
            return S_OK;
        case DomAnswer::Itself:
            GiveItself(object, arguments...);
            return S_OK;
        case DomAnswer::ItsOwn:
            break;
        }
        void** const table = *reinterpret_cast<void***>(object);
        const auto real =
            reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(Interface*, Arguments...)>(g_real.at({table, Place()}));
        const bool bInside = std::exchange(g_bInside, true);
        const HRESULT result = real(object, arguments...);
        g_bInside = bInside;
        if (result == S_OK) {
            (WatchGiven(arguments), ...);
        }
        return result;
    }
};

template <auto method>
Hook HookOf(const char* name) {
    Function<method>::s_name = name;
    return {Function<method>::Place(), reinterpret_cast<void*>(&Function<method>::Call)};
}

void Place(IUnknown* object, const std::vector<Hook>& hooks) {
    void** const table = *reinterpret_cast<void***>(object);
    for (const Hook& hook : hooks) {
        void*& entry = table[hook.place];
        if (entry == hook.function) {
            continue;
        }
        g_real[{table, hook.place}] = entry;
        DWORD protection = 0;
        ::VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &protection);
        entry = hook.function;
        ::VirtualProtect(&entry, sizeof entry, protection, &protection);
    }
}

constexpr HRESULT (STDMETHODCALLTYPE IUnknown::*kQueryInterface)(REFIID, void**) = &IUnknown::QueryInterface;

void Watch(IXMLDOMNode* node) {
    static const std::vector<Hook> s_hooks{HookOf<kQueryInterface>("QueryInterface"),
                                           HookOf<&IXMLDOMNode::get_firstChild>("get_firstChild"),
                                           HookOf<&IXMLDOMNode::get_nextSibling>("get_nextSibling"),
                                           HookOf<&IXMLDOMNode::get_parentNode>("get_parentNode"),
                                           HookOf<&IXMLDOMNode::get_nodeName>("get_nodeName"),
                                           HookOf<&IXMLDOMNode::get_nodeType>("get_nodeType"),
                                           HookOf<&IXMLDOMNode::get_nodeValue>("get_nodeValue"),
                                           HookOf<&IXMLDOMNode::get_baseName>("get_baseName"),
                                           HookOf<&IXMLDOMNode::get_attributes>("get_attributes"),
                                           HookOf<&IXMLDOMNode::hasChildNodes>("hasChildNodes"),
                                           HookOf<&IXMLDOMNode::put_text>("put_text"),
                                           HookOf<&IXMLDOMNode::appendChild>("appendChild"),
                                           HookOf<&IXMLDOMNode::replaceChild>("replaceChild"),
                                           HookOf<&IXMLDOMNode::removeChild>("removeChild")};
    Place(node, s_hooks);
}

void Watch(IXMLDOMElement* element) {
    static const std::vector<Hook> s_hooks{HookOf<&IXMLDOMElement::getElementsByTagName>("getElementsByTagName"),
                                           HookOf<&IXMLDOMElement::setAttribute>("setAttribute")};
    Watch(static_cast<IXMLDOMNode*>(element));
    Place(element, s_hooks);
}

void Watch(IXMLDOMProcessingInstruction* instruction) {
    static const std::vector<Hook> s_hooks{HookOf<&IXMLDOMProcessingInstruction::get_data>("get_data")};
    Watch(static_cast<IXMLDOMNode*>(instruction));
    Place(instruction, s_hooks);
}

void Watch(IXMLDOMNamedNodeMap* map) {
    static const std::vector<Hook> s_hooks{HookOf<&IXMLDOMNamedNodeMap::get_length>("get_length"),
                                           HookOf<&IXMLDOMNamedNodeMap::get_item>("get_item")};
    Place(map, s_hooks);
}

void Watch(IXMLDOMNodeList* list) {
    static const std::vector<Hook> s_hooks{HookOf<&IXMLDOMNodeList::nextNode>("nextNode")};
    Place(list, s_hooks);
}

HRESULT STDMETHODCALLTYPE GivenParseError(IXMLDOMDocument* document, IXMLDOMParseError** given) {
    if (g_parseError == nullptr) {
        return Function<&IXMLDOMDocument::get_parseError>::Call(document, given);
    }
    g_parseError->AddRef();
    *given = g_parseError;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE GivenSave(IXMLDOMDocument* document, VARIANT destination) {
    if (g_nSavedBlanks == 0) {
        return Function<&IXMLDOMDocument::save>::Call(document, destination);
    }
    const std::string blanks(std::size_t{1} << 20, ' ');
    IStream* const stream = static_cast<IStream*>(destination.punkVal);
    for (std::size_t left = g_nSavedBlanks; left > 0;) {
        const std::size_t count = std::min(left, blanks.size());
        stream->Write(blanks.data(), static_cast<ULONG>(count), nullptr);
        left -= count;
    }
    return S_OK;
}

void Watch(IXMLDOMDocument* document) {
    static const std::vector<Hook> s_hooks{
        HookOf<&IXMLDOMDocument::put_async>("put_async"),
        HookOf<&IXMLDOMDocument::put_validateOnParse>("put_validateOnParse"),
        HookOf<&IXMLDOMDocument::put_resolveExternals>("put_resolveExternals"),
        HookOf<&IXMLDOMDocument::load>("load"),
        {HookOf<&IXMLDOMDocument::save>("save").place, reinterpret_cast<void*>(&GivenSave)},
        HookOf<&IXMLDOMDocument::get_documentElement>("get_documentElement"),
        HookOf<&IXMLDOMDocument::createElement>("createElement"),
        HookOf<&IXMLDOMDocument::createProcessingInstruction>("createProcessingInstruction"),
        {HookOf<&IXMLDOMDocument::get_parseError>("get_parseError").place, reinterpret_cast<void*>(&GivenParseError)}};
    Watch(static_cast<IXMLDOMNode*>(document));
    Place(document, s_hooks);
}

HRESULT WINAPI WatchedCoCreateInstance(REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID interfaceId,
                                       LPVOID* given) {
    g_context = context;
    switch (CDomCallWatch::FateOf("CoCreateInstance")) {
    case DomAnswer::Failure:
        return E_FAIL;
    case DomAnswer::Success:
        return S_OK;
    default:
        break;
    }
    static const auto s_real = RealFunction(&::CoCreateInstance, "CoCreateInstance", "ole32.dll");
    const bool bInside = std::exchange(g_bInside, true);
    const HRESULT result = s_real(type, outer, context, interfaceId, given);
    g_bInside = bInside;
    if (result == S_OK && interfaceId == IID_IXMLDOMDocument) {
        Watch(static_cast<IXMLDOMDocument*>(*given));
    }
    return result;
}

} // namespace

DWORD ClassContext() noexcept { return g_context; }

void GiveSavedBlanks(std::size_t count) noexcept { g_nSavedBlanks = count; }

void GiveParseError(IXMLDOMParseError* error) noexcept { g_parseError = error; }

extern "C" {

decltype(&::CoCreateInstance) __imp_CoCreateInstance = WatchedCoCreateInstance;

} // extern "C"
