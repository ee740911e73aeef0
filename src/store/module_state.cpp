#include "store/module_state.h"

#include "store/xml_object.h"

ModuleState& State() noexcept {
    static ModuleState state;
    return state;
}

void SaveCurrentDocument() noexcept {
    if (State().currentDocument != nullptr) {
        State().currentDocument->Save();
    }
}
