#include "random_values.h"

#include "stored_text.h"

#include <iterator>

namespace {

const char* const kSpecial[] = {"<", ">", "&", "\"", "'", "]]>", "-->", "?>", "<!--", "<![CDATA[", "&amp;", "&#0;",
                                "%s%n", "\\", "/", "\t", "\n", "\r", "\r\n", " ", "  ", "\x01", "\x0B", "\x1F", "\x7F",
                                // UTF-8, well-formed and not
                                "\xC2\x80", "\xC2\x85", "\xE2\x80\xA8", "\xEF\xBB\xBF", "\xEF\xBF\xBD", "\xEF\xBF\xBE",
                                "\xEF\xBF\xBF", "\xED\xA0\x80", "\xF0\x9F\x96\xA8", "\xF4\x8F\xBF\xBF", "\xC0\x80",
                                "\xFF", "\xFE\xFF", "\xE2\x82", "\xC3\xA4",
                                // double bytes of Japanese text: with an ASCII byte behind, reserved for users, alone
                                "\x83\x5C", "\x95\x7C", "\xF0\x40", "\xFC\x4B", "\x81", "\xA0", "a", "0"};

} // namespace

std::string CRandomValues::Any(std::size_t size) {
    return m_random() % 8 == 0 ? ManyBytes(size) : FewParts().substr(0, size);
}

std::string CRandomValues::Storable(std::size_t size) {
    for (;;) {
        const std::string value = Any(size);
        if (StoreText(value)) {
            return value;
        }
    }
}

/// From the blank on: with control characters no document could hold it.
std::string CRandomValues::ManyBytes(std::size_t size) {
    std::string value;
    for (std::size_t length = m_random() % (size + 1); value.size() < length;) {
        value += static_cast<char>(0x20 + m_random() % 0xE0);
    }
    return value;
}

std::string CRandomValues::FewParts() {
    std::string value;
    for (std::size_t parts = m_random() % 6; parts > 0; --parts) {
        if (m_random() % 4 == 0) {
            value += static_cast<char>(1 + m_random() % 255);
        } else {
            value += kSpecial[m_random() % std::size(kSpecial)];
        }
    }
    return value;
}
