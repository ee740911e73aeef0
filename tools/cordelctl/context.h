// What a verb gets to work with.

#pragma once

#include "document/document.h"
#include "document/places.h"
#include "store/outcome.h"
#include "transaction/session.h"
#include "verb.h"

#include <string>

class Context {
public:
    Context(const Verb& verb, const Arguments& arguments, const Globals& globals, CSession& session)
        : m_verb(verb), m_arguments(arguments), m_globals(globals), m_session(session) {}

    const Arguments& Args() const noexcept { return m_arguments; }
    const Globals& Options() const noexcept { return m_globals; }
    CSession& Session() noexcept { return m_session; }

    bool Has(std::string_view name) const { return m_arguments.Has(name); }
    std::string Text(std::string_view name) const { return m_arguments.Text(name); }
    std::vector<std::string> Texts(std::string_view name) const { return m_arguments.Texts(name); }

    /// Where the current document lies: the main document, or the printer's that the options name.
    DocumentPlace Place() const;

    /// The current document. Of a verb that changes it takes part in the transaction.
    CDocument& Document();

    /// The texts of the language.
    CDocument& Strings() { return m_session.Open(StringsDocument(m_globals.language), Access::Read); }

    /// Another printer's document, to be read.
    CDocument& Printer(const std::string& name) {
        return m_session.Open(PrinterDocument(PrinterFileName(name)), Access::Read);
    }

private:
    const Verb& m_verb;
    const Arguments& m_arguments;
    const Globals& m_globals;
    CSession& m_session;
};

/// Throws CFailure (Refused) when a container holds what makes hosts read wrong values, so that a figure worked out of
/// it may be wrong: a node that is no item, a key that is missing or used twice.
void RequireSound(CDocument& document, const std::string& container);

/// Throws CFailure when an operation of the library was not done: Missing for a container that is not there, Refused
/// for what a document cannot hold. A row that is there already counts as done.
void RequireDone(const COutcome& outcome, const std::string& what);
