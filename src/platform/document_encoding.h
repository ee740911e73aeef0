// How a document shows its encoding: by a byte order mark, by the look of its first characters, and by its XML
// declaration.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// An XML declaration lies within this many bytes, if its encoding is to be found.
inline constexpr std::size_t kDeclarationBytes = 1024;

/// What the first bytes show.
enum class EncodingForm : std::uint8_t { OneByteUnits, MarkedUtf8, Utf16LittleEndian, Utf16BigEndian };

struct DocumentEncoding {
    EncodingForm m_form = EncodingForm::OneByteUnits;
    std::size_t m_nMarkBytes = 0; // length of the byte order mark
    std::string m_strDeclared;    // in upper case; empty when the document declares none

    bool IsUtf16() const noexcept {
        return m_form == EncodingForm::Utf16LittleEndian || m_form == EncodingForm::Utf16BigEndian;
    }

    /// True when the bytes show one encoding and the declaration names another: the document is malformed then.
    bool IsContradictory() const noexcept;
};

/// The encoding of a document that begins with these bytes, of which kDeclarationBytes are enough.
DocumentEncoding FindEncoding(std::string_view head);
