// The nearest of the words that there are to one that was mistyped.

#include "text/nearest.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace {

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// How many letters are to be added, dropped or exchanged, or neighbours swapped, to make one word of the other.
std::size_t DistanceOf(std::string_view left, std::string_view right) {
    std::vector<std::size_t> before;
    std::vector<std::size_t> last(right.size() + 1);
    std::vector<std::size_t> now(right.size() + 1);
    for (std::size_t k = 0; k <= right.size(); ++k) {
        last[k] = k;
    }
    for (std::size_t i = 1; i <= left.size(); ++i) {
        now[0] = i;
        for (std::size_t k = 1; k <= right.size(); ++k) {
            const bool equal = Folded(left[i - 1]) == Folded(right[k - 1]);
            now[k] = std::min({last[k] + 1, now[k - 1] + 1, last[k - 1] + (equal ? 0 : 1)});
            if (i > 1 && k > 1 && Folded(left[i - 1]) == Folded(right[k - 2]) &&
                Folded(left[i - 2]) == Folded(right[k - 1])) {
                now[k] = std::min(now[k], before[k - 2] + 1);
            }
        }
        before = std::exchange(last, now);
    }
    return last.back();
}

} // namespace

std::vector<std::string> WordsOf(std::string_view text) {
    std::istringstream stream{std::string(text)};
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += joined.empty() ? "" : separator;
        joined += text;
    }
    return joined;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& known) {
    constexpr std::size_t kLongestWord = 64;
    constexpr std::size_t kMost = 3;
    if (word.empty() || word.size() > kLongestWord) {
        return {};
    }
    std::vector<std::pair<std::size_t, std::string>> closest;
    for (const std::string& other : known) {
        const std::size_t distance = other.size() <= kLongestWord ? DistanceOf(word, other) : kLongestWord;
        const std::size_t bound = std::max<std::size_t>(1, std::min(word.size(), other.size()) / 3);
        const bool begins =
            word.size() > 1 && other.size() > word.size() && DistanceOf(word, other.substr(0, word.size())) == 0;
        if (distance <= bound || begins) {
            closest.emplace_back(distance, other);
        }
    }
    std::sort(closest.begin(), closest.end());
    closest.erase(std::unique(closest.begin(), closest.end()), closest.end());
    std::string text;
    for (std::size_t i = 0; i < std::min(closest.size(), kMost); ++i) {
        text += (i == 0                                     ? "; did you mean "
                 : i + 1 == std::min(closest.size(), kMost) ? " or "
                                                            : ", ") +
                closest[i].second;
    }
    return text.empty() ? text : text + "?";
}
