// The DOM's basic types over COM: counted references to nodes, and texts that own their buffer.

#pragma once

#include "com_pointer.h"

#include <msxml2.h>

using DomChar = wchar_t;

using DomText = CComText;

using DomNode = CComPointer<IXMLDOMNode>;
