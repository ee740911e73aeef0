// What the tool says of itself: help, the manual page, and the reference of the documentation, all from the table of
// verbs.

#pragma once

#include "verb.h"

#include <span>
#include <string>
#include <vector>

/// The help for the verb, or the family of verbs, that the words name; for the whole program when they name none.
std::string HelpFor(const std::vector<std::string>& words, std::span<const Verb> verbs);

/// The manual page, for man.
std::string ManualPage(std::span<const Verb> verbs);

/// The reference of all verbs, as Markdown.
std::string Reference(std::span<const Verb> verbs);
