// What a verb gets to work with.

#include "context.h"

#include "failure.h"

#include <set>

DocumentPlace Context::Place() const {
    return m_globals.printers.empty() ? MainDocument() : PrinterDocument(PrinterFileName(m_globals.printers.front()));
}

CDocument& Context::Document() {
    return m_session.Open(Place(), m_verb.effect == Effect::Changes ? Access::Change : Access::Read);
}

void RequireSound(CDocument& document, const std::string& container) {
    const auto fail = [&](const std::string& what) {
        throw CFailure(ExitCode::Refused, container + " of " + document.Title() + " has an error: " + what,
                       "what would be worked out of it may be wrong; see: cordelctl doctor");
    };
    if (const auto before = document.FirstStrayNode(container)) {
        fail("something that is no item stands " +
             (*before == 0 ? "before the first item" : "behind item " + std::to_string(*before)) +
             ", and hosts read no further");
    }
    const ContainerSchema* const schema = FindContainerSchema(container);
    if (schema == nullptr || schema->key.empty()) {
        return;
    }
    const std::string key(schema->key);
    std::set<std::string> keys;
    for (const Row& row : document.RowsOrNone(container)) {
        const std::string* const value = row.Find(key);
        if (value == nullptr) {
            fail("item " + std::to_string(row.position) + " has no " + key);
        } else if (!keys.insert(*value).second) {
            fail("item " + std::to_string(row.position) + " has the " + key + " \"" + *value + "\" of another");
        }
    }
}

std::string NoteOn(CDocument& document, const std::string& container) {
    if (const auto before = document.FirstStrayNode(container)) {
        return "hosts read only the first " + std::to_string(*before) + " items of " + container +
               ": see cordelctl doctor";
    }
    return {};
}

void RequireDone(const COutcome& outcome, const std::string& what) {
    switch (outcome.m_what) {
    case What::Done:
    case What::AlreadyThere:
        return;
    case What::NoContainer:
        throw CFailure(ExitCode::Missing, what + " was not recorded: the document has no container for it",
                       "add it where it is missing: cordelctl doctor --fix");
    default:
        throw CFailure(ExitCode::Refused,
                       what + " was not recorded: " +
                           (outcome.m_reason.m_strWords.size() != 0 ? std::string(outcome.m_reason.m_strWords.c_str())
                                                                    : std::string("the document does not take it")),
                       "see what is wrong with the document: cordelctl doctor");
    }
}
