// The lines of a captured reply, whatever the device, the network or the terminal put around them.

#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Ends one job and lets the next say its language.
inline constexpr std::string_view kUniversalExit = "\x1B%-12345X";

struct ReplyLine {
    unsigned int number; // of the line in the capture, from 1
    std::string text;    // UTF-8, without the blanks at its end
    bool endsReply;      // a form feed stands behind it
};

/// Lines end with CR, LF or both; a form feed and the universal exit sequence end one too. Control characters that are
/// typed out (<CR>, <LF>, <HT>, <FF>, <ESC>), as logs and printed references have them, count as what they stand for.
/// Text that is not UTF-8 is taken for the language's own 8-bit set, Roman-8. Throws CReplyError for a control
/// character that belongs in no reply, and for a capture larger than kLargestCapture.
std::vector<ReplyLine> SplitReply(std::string_view capture);

inline constexpr std::size_t kLargestCapture = std::size_t{16} << 20;
