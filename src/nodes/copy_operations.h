// Copying attributes between two containers of a document. Neither operation creates an element or an attribute.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

/// Copies the attribute of the first source child that carries it to the first target child that carries it. A source
/// that does not exist reads as the empty string, which blanks the target: hosts rely on it.
COutcome CopyValue(CXmlObject* document, const AnsiString& sourceElement, const AnsiString& targetElement,
                   const AnsiString& attribute);

/// Copies the first four attributes of the first source child whose key is `key` over those of the first target child
/// with that key, as far as it has them: hosts rely on the four.
COutcome CopyRow(CXmlObject* document, const AnsiString& sourceElement, const AnsiString& targetElement,
                 const AnsiString& keyAttribute, const AnsiString& key);
