#include "document_source.h"

#include "file_opening.h"
#include "platform/document_encoding.h"
#include "platform/document_limits.h"
#include "platform/utf8.h"
#include "windows_encodings.h"

#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

/// A file that changes while it is read is read again, up to so many times in all.
constexpr int kMaxReadings = 3;

/// Reads up to the end of the file, or up to `size` bytes. Returns how many there were, or -1 with errno.
ssize_t ReadUpTo(int file, char* buffer, std::size_t size) noexcept {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = pread(file, buffer + done, size - done, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return -1;
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

bool IsSameMoment(const timespec& left, const timespec& right) noexcept {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

/// Whether a file is unchanged from one look at it to the next, as far as the file system tells.
bool IsUnchanged(const struct stat& before, const struct stat& after) noexcept {
    return before.st_size == after.st_size && IsSameMoment(before.st_mtim, after.st_mtim) &&
           IsSameMoment(before.st_ctim, after.st_ctim);
}

/// Whether a file of this kind and size can hold a document.
bool CanHoldDocument(const struct stat& status, CReason* reason) noexcept {
    if (!S_ISREG(status.st_mode)) {
        GiveReason(reason, CReason::Of(ReasonKind::NotRegular));
        return false;
    }
    if (status.st_size <= 0) {
        GiveReason(reason, CReason::OfReader(1, 1, "the file is empty"));
        return false;
    }
    if (static_cast<std::size_t>(status.st_size) > kMaxDocumentBytes) {
        GiveReason(reason, CReason::Of(ReasonKind::TooLarge));
        return false;
    }
    return true;
}

class CConverter {
public:
    /// From a code page of Windows, or from the encoding of that name where `codePage` is 0.
    CConverter(unsigned codePage, const std::string& encoding)
        : m_nCodePage(codePage),
          m_hConverter(
              iconv_open("UTF-8", codePage == 0 ? encoding.c_str() : ("CP" + std::to_string(codePage)).c_str())) {}
    ~CConverter() {
        if (IsOpen()) {
            iconv_close(m_hConverter);
        }
    }
    CConverter(const CConverter&) = delete;
    CConverter& operator=(const CConverter&) = delete;
    bool IsOpen() const noexcept {
        return m_hConverter != reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr): so iconv defines it
    }

    /// Converts all of `text`; false when some of it is not in the encoding, or the result is larger than
    /// kMaxDocumentBytes.
    bool Convert(std::string_view text, std::string& converted) {
        std::string piece(std::size_t{64} << 10, '\0'); // not on the stack: hosts' threads may have little
        while (!text.empty()) {
            char* input = const_cast<char*>(text.data()); // which iconv only reads
            const std::size_t length = CanCompose() ? SeparateLength(text) : text.size();
            std::size_t left = length;
            char* output = piece.data();
            std::size_t room = piece.size();
            const std::size_t result = iconv(m_hConverter, &input, &left, &output, &room);
            const bool bStopped = result == static_cast<std::size_t>(-1) && errno != E2BIG;
            bool bWhole = true;
            text.remove_prefix(length - left);
            if (text.empty() || CanCompose()) {
                // A letter may have been kept to the last.
                bWhole = iconv(m_hConverter, nullptr, nullptr, &output, &room) != static_cast<std::size_t>(-1);
            }
            converted.append(piece, 0, piece.size() - room);
            if (!bWhole || (bStopped && !AppendAdded(text, converted)) || converted.size() > kMaxDocumentBytes) {
                return false;
            }
        }
        return true;
    }

private:
    /// Whether the system's converter joins a letter and the accent behind it to one character, as Windows does not.
    bool CanCompose() const noexcept { return m_nCodePage == 1255 || m_nCodePage == 1258; }

    /// Length of the beginning that holds no accent behind a letter: one byte beyond ASCII, or all up to the next.
    static std::size_t SeparateLength(std::string_view text) noexcept {
        const auto isAscii = [](char character) { return static_cast<unsigned char>(character) < 0x80; };
        const auto end = std::find_if_not(text.begin(), text.end(), isAscii);
        return end == text.begin() ? 1 : static_cast<std::size_t>(end - text.begin());
    }

    bool AppendAdded(std::string_view& text, std::string& converted) const {
        const AddedCharacter added = FindAddedCharacter(m_nCodePage, text);
        if (added.length == 0) {
            return false;
        }
        AppendUtf8(converted, added.character);
        text.remove_prefix(added.length);
        return true;
    }

    const unsigned m_nCodePage;
    const iconv_t m_hConverter;
};

} // namespace

bool CDocumentSource::Open(const char* path, CReason* reason) {
    const platform::CFile file = platform::CFileOpener().Open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file.IsOpen()) {
        GiveReason(reason, CReason::OfCall("open", static_cast<std::uint32_t>(errno)));
        return false;
    }
    m_rights = platform::RightsOf(file, reason);
    return m_rights.has_value() && Read(file.Descriptor(), reason) && Decode(reason);
}

bool CDocumentSource::Read(int file, CReason* reason) {
    for (int reading = 0; reading < kMaxReadings; ++reading) {
        struct stat before = {};
        struct stat after = {};
        if (fstat(file, &before) != 0) {
            GiveReason(reason, CReason::OfCall("fstat", static_cast<std::uint32_t>(errno)));
            return false;
        }
        if (!CanHoldDocument(before, reason)) {
            return false;
        }
        const auto size = static_cast<std::size_t>(before.st_size);
        m_pBytes = std::make_unique_for_overwrite<char[]>(size);
        const ssize_t count = ReadUpTo(file, m_pBytes.get(), size);
        if (count < 0 || fstat(file, &after) != 0) {
            GiveReason(reason, CReason::OfCall(count < 0 ? "pread" : "fstat", static_cast<std::uint32_t>(errno)));
            return false;
        }
        if (static_cast<std::size_t>(count) == size && IsUnchanged(before, after)) {
            m_text = {m_pBytes.get(), size};
            return true;
        }
    }
    GiveReason(reason, CReason::Of(ReasonKind::InUse, "the file changes while it is read"));
    return false;
}

bool CDocumentSource::Decode(CReason* reason) {
    const DocumentEncoding encoding = FindEncoding(m_text);
    if (encoding.IsContradictory()) {
        GiveReason(reason, CReason::Of(ReasonKind::Encoding, encoding.m_strDeclared.c_str()));
        return false;
    }
    std::string name = encoding.m_strDeclared;
    if (encoding.IsUtf16()) {
        name = encoding.m_form == EncodingForm::Utf16LittleEndian ? "UTF-16LE" : "UTF-16BE";
    } else if (encoding.m_form == EncodingForm::MarkedUtf8 || name.empty() || name == "UTF-8") {
        return true;
    }
    CConverter converter(WindowsCodePage(name), name);
    const bool bConverted =
        converter.IsOpen() && converter.Convert(m_text.substr(encoding.m_nMarkBytes), m_strConverted);
    m_pBytes.reset();
    m_text = m_strConverted;
    // A declaration that the conversion does not lead to itself names an encoding that the file is not in.
    if (bConverted && (encoding.IsUtf16() || m_text.starts_with('<'))) {
        return true;
    }
    GiveReason(reason, m_text.size() > kMaxDocumentBytes ? CReason::Of(ReasonKind::TooLarge)
                                                         : CReason::Of(ReasonKind::Encoding, name.c_str()));
    return false;
}
