// What a verb gets to work with.

#include "context.h"

#include "failure.h"

DocumentPlace Context::Place() const {
    return m_globals.printers.empty() ? MainDocument() : PrinterDocument(PrinterFileName(m_globals.printers.front()));
}

CDocument& Context::Document() {
    return m_session.Open(Place(), m_verb.effect == Effect::Changes ? Access::Change : Access::Read);
}

void RequireSound(CDocument& document, const std::string& container) {
    const auto error = document.ErrorIn(container);
    if (error) {
        throw CFailure(ExitCode::Refused, container + " of " + document.Title() + " has an error: " + *error,
                       "what would be worked out of it may be wrong; see: cordelctl doctor");
    }
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
