// Words, and the nearest of those that there are to one that was mistyped.

#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The words of a text, parted by blanks.
std::vector<std::string> WordsOf(std::string_view text);

std::string Joined(const std::vector<std::string>& texts, std::string_view separator);

/// "; did you mean X or Y?", or nothing when none of the known words is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& known);
