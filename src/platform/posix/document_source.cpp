#include "document_source.h"

#include "platform/document_limits.h"

#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace {

/// An XML declaration lies within this many bytes, if its encoding is to be found.
constexpr std::size_t kDeclarationBytes = 1024;

bool ReadAt(int file, std::size_t offset, char* buffer, std::size_t size) noexcept {
    while (size > 0) {
        const ssize_t count = pread(file, buffer, size, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        offset += static_cast<std::size_t>(count);
        buffer += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

/// The value of the pseudo attribute "encoding" of the XML declaration that `head` begins with; empty when there is
/// none.
std::string DeclaredEncoding(std::string_view head) {
    constexpr std::string_view kWhite = " \t\r\n";
    if (!head.starts_with("<?xml") || head.size() < 6 || kWhite.find(head[5]) == std::string_view::npos) {
        return {};
    }
    const std::string_view declaration = head.substr(0, head.find("?>"));
    const std::size_t name = declaration.find("encoding");
    if (name == std::string_view::npos) {
        return {};
    }
    const std::size_t quote = declaration.find_first_of("\"'", name);
    if (quote == std::string_view::npos) {
        return {};
    }
    const std::size_t end = declaration.find(declaration[quote], quote + 1);
    return end == std::string_view::npos ? std::string() : std::string(declaration.substr(quote + 1, end - quote - 1));
}

/// The encoding to convert from; empty for UTF-8 (and its subset ASCII).
std::string DetectEncoding(std::string_view head) {
    if (head.starts_with("\xEF\xBB\xBF")) {
        return {};
    }
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF")) {
        return "UTF-16";
    }
    if (head.starts_with(std::string_view("<\0?\0", 4))) {
        return "UTF-16LE";
    }
    if (head.starts_with(std::string_view("\0<\0?", 4))) {
        return "UTF-16BE";
    }
    std::string declared = DeclaredEncoding(head);
    for (char& character : declared) {
        if (character >= 'a' && character <= 'z') {
            character = static_cast<char>(character - 'a' + 'A');
        }
    }
    return declared == "UTF-8" || declared == "US-ASCII" || declared == "ASCII" ? std::string() : declared;
}

class CConverter {
public:
    explicit CConverter(const char* encoding) noexcept : m_hConverter(iconv_open("UTF-8", encoding)) {}
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

    /// Converts all of `text`; false when some of it is not in the encoding, or the result is too large.
    bool Convert(std::string_view text, std::string& converted) {
        char* input = const_cast<char*>(text.data()); // which iconv only reads
        std::size_t left = text.size();
        char buffer[16384];
        while (left > 0) {
            char* output = buffer;
            std::size_t room = sizeof buffer;
            const std::size_t result = iconv(m_hConverter, &input, &left, &output, &room);
            const int error = errno;
            converted.append(buffer, sizeof buffer - room);
            if ((result == static_cast<std::size_t>(-1) && error != E2BIG) || converted.size() > kMaxDocumentBytes) {
                return false;
            }
        }
        return true;
    }

private:
    const iconv_t m_hConverter;
};

} // namespace

bool CDocumentSource::Open(const char* path, CReason* reason) {
    m_file = platform::CFileOpener().Open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    if (!m_file.IsOpen() || fstat(m_file.Descriptor(), &status) != 0) {
        GiveReason(reason, CReason::OfCall(m_file.IsOpen() ? "fstat" : "open", static_cast<std::uint32_t>(errno)));
        return false;
    }
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
    m_nSize = static_cast<std::size_t>(status.st_size);
    char head[kDeclarationBytes];
    const std::size_t headSize = std::min(m_nSize, sizeof head);
    if (!ReadAt(m_file.Descriptor(), 0, head, headSize)) {
        GiveReason(reason, CReason::OfCall("pread", static_cast<std::uint32_t>(errno)));
        return false;
    }
    const std::string encoding = DetectEncoding({head, headSize});
    if (!encoding.empty() && !Convert(encoding.c_str())) {
        GiveReason(reason, CReason::Of(ReasonKind::Encoding, encoding.c_str()));
        return false;
    }
    return true;
}

bool CDocumentSource::Convert(const char* encoding) {
    CConverter converter(encoding);
    std::string text(m_nSize, '\0');
    if (!converter.IsOpen() || !ReadAt(m_file.Descriptor(), 0, text.data(), text.size()) ||
        !converter.Convert(text, m_strConverted)) {
        return false;
    }
    m_bConverted = true;
    m_nSize = m_strConverted.size();
    // A declaration that the conversion does not lead to itself names an encoding that the file is not in.
    return m_strConverted.starts_with('<');
}

bool CDocumentSource::Read(std::size_t offset, char* buffer, std::size_t size) const noexcept {
    if (m_bConverted) {
        m_strConverted.copy(buffer, size, offset);
        return true;
    }
    return ReadAt(m_file.Descriptor(), offset, buffer, size);
}
