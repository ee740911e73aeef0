// What the user is told when two files of one kind have the same ID.

#pragma once

#include "cordelbox.h"

#include <string>
#include <string_view>

/// The template of the message. It serves both functions below.
AnsiString ClashTemplate(CXmlObject* strings);

/// The template with every "%s" replaced by the kind's name, and then every "%d" by the ID, also one that the name
/// brought in. A result of more than 65,536 bytes is cut there, at a character; nothing longer is ever made of a
/// template.
std::string FillPlaceholders(std::string_view text, std::string_view kindName, std::string_view id);

/// The template formatted with kind, ID, kind, ID, in this order. "%s" and "%d", with flags, width and precision, print
/// the next of the four as what it is, text or number; "%%" is a percent sign; a fifth directive and anything else is
/// copied as it stands. A template is data: nothing in it reaches beyond the four. A result of more than 259 bytes
/// stops the process.
std::string FormatClash(std::string_view text, std::string_view kindName, int32_t id);

/// Shows the message in a modal box, with the title from the strings document. The lent windows are disabled while it
/// is open; those that were disabled are enabled again, whatever the record says by then. `windows` may be null.
void ShowClash(CXmlObject* strings, const MessageWindows* windows, const std::string& text);
