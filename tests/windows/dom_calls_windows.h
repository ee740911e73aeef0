// The library's calls to the DOM, watched and answered otherwise. The tables of functions of the DOM's objects lead
// here as soon as the library has got the object; outside a watch every call does what it always does.

#pragma once

#include "call_watch.h"

#include <msxml2.h>

#include <string>

enum class DomAnswer {
    ItsOwn,
    Failure, // an error, and nothing done
    Nothing, // S_FALSE, and nothing done
    Success, // S_OK, and nothing done
    Itself   // the node that was asked, for a call that gives a node
};

using CDomCallWatch = CCallWatch<std::string, DomAnswer>;

/// The class context with which a document was last asked for.
DWORD ClassContext() noexcept;

/// From now on every document writes this many blanks when it is saved; 0: itself.
void GiveSavedBlanks(std::size_t count) noexcept;

/// From now on every document gives this for what it says of a load that failed; null: its own.
void GiveParseError(IXMLDOMParseError* error) noexcept;
