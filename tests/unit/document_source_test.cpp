// The bytes of a document, in every encoding that a document may declare, and the largest one.

#include "document_source.h"

#include "engine_document.h"
#include "platform/document_limits.h"
#include "scratch_folder.h"
#include "utf16_bytes.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace {

/// The document in those bytes as UTF-8; nothing when it is refused.
std::optional<std::string> Utf8Of(const std::string& bytes) {
    const CMemoryFile file(bytes);
    CDocumentSource source;
    if (!source.Open(file.Path())) {
        return {};
    }
    return std::string(source.Text());
}

/// Why the document in those bytes is refused.
CReason OpenRefusal(const std::string& bytes) {
    const CMemoryFile file(bytes);
    CReason reason;
    EXPECT_FALSE(CDocumentSource().Open(file.Path(), &reason));
    return reason;
}

/// Opens a file of that many bytes, of which all but the first are zero.
bool OpensWithSize(std::size_t size) {
    const CMemoryFile file("<");
    return ::ftruncate(file.Descriptor(), static_cast<off_t>(size)) == 0 && CDocumentSource().Open(file.Path());
}

} // namespace

TEST(DocumentSource, PassesUtf8AsItIs) {
    for (const char* const text :
         {"<a/>", "<?xml version=\"1.0\"?><a/>", "<?xml version=\"1.0\" encoding=\"utf-8\"?><a/>", "\xEF\xBB\xBF<a/>",
          "<a b='\xC3\xA4'/>", "<?xmlish?>"}) {
        EXPECT_EQ(Utf8Of(text), text);
    }
}

TEST(DocumentSource, PassesAsciiByAnyOfItsNames) {
    for (const char* const name : {"US-ASCII", "us-ascii", "ASCII"}) {
        const std::string text = "<?xml version=\"1.0\" encoding=\"" + std::string(name) + "\"?><a/>";
        EXPECT_EQ(Utf8Of(text), text);
    }
}

TEST(DocumentSource, ConvertsUtf16WithAByteOrderMark) {
    EXPECT_EQ(Utf8Of("\xFF\xFE" + Utf16("<a/>", false)), "<a/>");
    EXPECT_EQ(Utf8Of("\xFE\xFF" + Utf16("<a/>", true)), "<a/>");
}

TEST(DocumentSource, ConvertsUtf16WithoutAByteOrderMark) {
    const std::string text = "<?xml version=\"1.0\"?><a/>";
    EXPECT_EQ(Utf8Of(Utf16(text, false)), text);
    EXPECT_EQ(Utf8Of(Utf16(text, true)), text);
}

TEST(DocumentSource, ConvertsWhatTheDeclarationNames) {
    const auto declared = [](const std::string& encoding, const std::string& text) {
        return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><a>" + text + "</a>";
    };
    EXPECT_EQ(Utf8Of(declared("ISO-8859-1", "\xE4")), declared("ISO-8859-1", "\xC3\xA4"));
    EXPECT_EQ(Utf8Of(declared("iso-8859-15", "\xA4")), declared("iso-8859-15", "\xE2\x82\xAC"));
    EXPECT_EQ(Utf8Of(declared("windows-1252", "\x80")), declared("windows-1252", "\xE2\x82\xAC"));
    EXPECT_EQ(Utf8Of(declared("Shift_JIS", "\x83\x41")), declared("Shift_JIS", "\xE3\x82\xA2"));
}

TEST(DocumentSource, ReadsTheDeclarationInEitherQuotes) {
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>"),
              "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA4</a>");
    EXPECT_EQ(Utf8Of("<?xml version='1.0'\n encoding = \"ISO-8859-1\" ?><a>\xE4</a>"),
              "<?xml version='1.0'\n encoding = \"ISO-8859-1\" ?><a>\xC3\xA4</a>");
}

TEST(DocumentSource, TakesAnEncodingFromTheDeclarationOnly) {
    const std::string text = "<?xml version='1.0'?><a encoding='ISO-8859-1'/>";
    EXPECT_EQ(Utf8Of(text), text);
}

TEST(DocumentSource, PassesADeclarationThatIsNotWholeAsItIs) {
    // The parser refuses it, and says nothing of encodings.
    for (const char* const text : {"<?xml", "<?xmlx encoding='UTF-16'?>", "<?xml version='1.0' encoding?><a/>",
                                   "<?xml version='1.0' encoding='ISO-8859-1?><a/>", "<?xml encoding=''?><a/>"}) {
        EXPECT_EQ(Utf8Of(text), text);
    }
}

TEST(DocumentSource, RefusesAnEncodingThatNobodyKnows) {
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='no-such'?><a/>"), std::nullopt);
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='no{such}'?><a/>"), std::nullopt);
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='" + std::string(900, 'x') + "'?><a/>"), std::nullopt);
}

TEST(DocumentSource, RefusesBytesThatAreNotInTheEncoding) {
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='Shift_JIS'?><a>\x83</a>"), std::nullopt);
    EXPECT_EQ(Utf8Of("\xFF\xFE" + Utf16("<a/>", false) + "<"), std::nullopt) << "half a unit at the end";
    EXPECT_EQ(Utf8Of("\xFF\xFE" + Utf16("<a>", false) + std::string("\x00\xD8", 2)), std::nullopt)
        << "half a pair at the end";
}

TEST(DocumentSource, RefusesADeclarationThatIsNotInTheEncodingThatItNames) {
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='UTF-16LE'?><a/>"), std::nullopt);
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='UTF-16LE'?><aa/>"), std::nullopt) << "an even number of bytes";
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='UTF-32'?><aaaa/>"), std::nullopt);
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='IBM037'?><a/>"), std::nullopt)
        << "in which every byte is something";
}

TEST(DocumentSource, ConvertsMarkedUtf16ThatBeginsWithWhiteSpaceOrAComment) {
    EXPECT_EQ(Utf8Of("\xFF\xFE" + Utf16("\r\n\t <a/>", false)), "\r\n\t <a/>");
    EXPECT_EQ(Utf8Of("\xFE\xFF" + Utf16(" <!-- --><a/>", true)), " <!-- --><a/>");
}

TEST(DocumentSource, RefusesAByteOrderMarkThatContradictsTheDeclaration) {
    const auto declared = [](const char* encoding) {
        return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?><a/>";
    };
    for (const char* const encoding : {"ISO-8859-1", "windows-1252", "Shift_JIS", "US-ASCII", "UTF-16", "utf-16le"}) {
        EXPECT_EQ(Utf8Of("\xEF\xBB\xBF" + declared(encoding)), std::nullopt) << encoding;
    }
    for (const char* const encoding : {"ISO-8859-1", "UTF-8", "utf-8", "Shift_JIS", "UTF-16BE"}) {
        EXPECT_EQ(Utf8Of("\xFF\xFE" + Utf16(declared(encoding), false)), std::nullopt) << encoding;
        EXPECT_EQ(Utf8Of(Utf16(declared(encoding), false)), std::nullopt) << encoding << " without a mark";
    }
    for (const char* const encoding : {"ISO-8859-1", "UTF-8", "UTF-16LE"}) {
        EXPECT_EQ(Utf8Of("\xFE\xFF" + Utf16(declared(encoding), true)), std::nullopt) << encoding;
    }
}

TEST(DocumentSource, TakesAByteOrderMarkThatTheDeclarationConfirms) {
    const auto declared = [](const char* encoding) {
        return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?><a/>";
    };
    EXPECT_EQ(Utf8Of("\xEF\xBB\xBF" + declared("Utf-8")), "\xEF\xBB\xBF" + declared("Utf-8"));
    for (const char* const encoding : {"UTF-16", "utf-16", "UTF-16LE", "ISO-10646-UCS-2", "unicode"}) {
        EXPECT_EQ(Utf8Of("\xFF\xFE" + Utf16(declared(encoding), false)), declared(encoding));
    }
    for (const char* const encoding : {"UTF-16", "UTF-16BE", "UCS-2"}) {
        EXPECT_EQ(Utf8Of("\xFE\xFF" + Utf16(declared(encoding), true)), declared(encoding));
    }
}

TEST(DocumentSource, RefusesHighBytesInWhatIsDeclaredAscii) {
    EXPECT_EQ(Utf8Of("<?xml version='1.0' encoding='US-ASCII'?><a>\xC3\xA4</a>"), std::nullopt);
}

TEST(DocumentSource, RefusesAnEmptyFile) { EXPECT_EQ(Utf8Of(""), std::nullopt); }

TEST(DocumentSource, RefusesWhatIsNoFile) {
    CDocumentSource source;
    EXPECT_FALSE(source.Open("/no such file"));
    EXPECT_FALSE(CDocumentSource().Open("/"));
    EXPECT_FALSE(CDocumentSource().Open("/dev/zero"));
    EXPECT_FALSE(CDocumentSource().Open(""));
}

TEST(DocumentSource, SaysWhyItRefusesWhatIsNoFile) {
    CReason reason;
    EXPECT_FALSE(CDocumentSource().Open("/no such file", &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(reason.m_pCall, "open");
    for (const char* const path : {"/", "/dev/zero"}) {
        EXPECT_FALSE(CDocumentSource().Open(path, &reason));
        EXPECT_EQ(reason.m_kind, ReasonKind::NotRegular) << path;
    }
    const CReason empty = OpenRefusal("");
    EXPECT_EQ(empty.m_kind, ReasonKind::Malformed);
    EXPECT_EQ(empty.m_nLine, 1u);
    EXPECT_EQ(empty.m_nColumn, 1u);
    EXPECT_EQ(empty.m_strWords, "the file is empty");
}

TEST(DocumentSource, SaysWhichEncodingItRefuses) {
    const CReason unknown = OpenRefusal("<?xml version='1.0' encoding='no-such'?><a/>");
    EXPECT_EQ(unknown.m_kind, ReasonKind::Encoding);
    EXPECT_EQ(unknown.m_strWords, "NO-SUCH");
    const CReason contradictory = OpenRefusal("\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a/>");
    EXPECT_EQ(contradictory.m_kind, ReasonKind::Encoding);
    EXPECT_EQ(contradictory.m_strWords, "ISO-8859-1");
    EXPECT_EQ(OpenRefusal("<?xml version='1.0' encoding='Shift_JIS'?><a>\x83</a>").m_kind, ReasonKind::Encoding);
}

TEST(DocumentSource, OpensAFileOfTheLargestSize) {
    EXPECT_EQ(kMaxDocumentBytes, 256u * 1024 * 1024);
    EXPECT_TRUE(OpensWithSize(kMaxDocumentBytes));
}

TEST(DocumentSource, RefusesAFileOneByteLargerAndSaysThatItIsTooLarge) {
    const CMemoryFile file("<");
    ASSERT_EQ(::ftruncate(file.Descriptor(), static_cast<off_t>(kMaxDocumentBytes + 1)), 0);
    CReason reason;
    EXPECT_FALSE(CDocumentSource().Open(file.Path(), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::TooLarge);
}

TEST(DocumentSource, ConvertsToTheLargestSizeAndNotAByteBeyond) {
    // Three bytes for each of two: small enough as they are.
    std::string bytes = "\xFF\xFE" + Utf16("<a>" + std::string(kMaxDocumentBytes % 3, ' '), false);
    bytes.resize(bytes.size() + (kMaxDocumentBytes - 3) / 3 * 2, '\x20');
    ASSERT_LT(bytes.size(), kMaxDocumentBytes);
    const CMemoryFile file(bytes);
    {
        CDocumentSource source;
        EXPECT_TRUE(source.Open(file.Path()));
        EXPECT_EQ(source.Text().size(), kMaxDocumentBytes);
    }
    ASSERT_EQ(::pwrite(file.Descriptor(), " ", 2, static_cast<off_t>(bytes.size())), 2);
    CReason reason;
    EXPECT_FALSE(CDocumentSource().Open(file.Path(), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::TooLarge);
    // Half a character behind the largest text is what is wrong then.
    ASSERT_EQ(::pwrite(file.Descriptor(), "\x00\xD8", 2, static_cast<off_t>(bytes.size())), 2);
    EXPECT_FALSE(CDocumentSource().Open(file.Path(), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::Encoding);
}

TEST(DocumentSource, HoldsWhatItReadWhateverBecomesOfTheFile) {
    const CMemoryFile file("0123456789");
    CDocumentSource source;
    ASSERT_TRUE(source.Open(file.Path()));
    ASSERT_EQ(::pwrite(file.Descriptor(), "xxxxx", 5, 0), 5);
    ASSERT_EQ(::ftruncate(file.Descriptor(), 5), 0);
    EXPECT_EQ(source.Text(), "0123456789");
}

TEST(DocumentSource, ClosesItsFile) {
    // With room for a few files only, a source that keeps its file open would soon find no room.
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit few = before;
    few.rlim_cur = 64;
    setrlimit(RLIMIT_NOFILE, &few);
    const CMemoryFile file("<a/>");
    bool bAll = true;
    for (int round = 0; round < 200; ++round) {
        bAll = CDocumentSource().Open(file.Path()) && !CDocumentSource().Open("/") && bAll;
    }
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_TRUE(bAll);
}

TEST(DocumentSource, OpensItsFileWithTheOneDescriptorThatIsLeft) {
    // The first behind the standard streams.
    constexpr int kFirst = 3;
    const CScratchFolder folder;
    const std::string path = folder.Path() / "document.xml";
    std::ofstream(path) << "<a/>";
    const int kept = ::fcntl(kFirst, F_DUPFD_CLOEXEC, kFirst + 1); // none where nothing is open there
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit few = before;
    few.rlim_cur = 64;
    setrlimit(RLIMIT_NOFILE, &few);
    std::vector<int> others;
    while (others.empty() || others.back() >= 0) {
        others.push_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    }
    ::close(kFirst);
    const bool bOpened = CDocumentSource().Open(path.c_str());
    for (const int other : others) {
        if (other > kFirst) {
            ::close(other);
        }
    }
    setrlimit(RLIMIT_NOFILE, &before);
    if (kept >= 0) {
        ::dup2(kept, kFirst);
        ::close(kept);
    }
    EXPECT_TRUE(bOpened);
}

TEST(DocumentSource, WaitsForNobodyAtAPipe) {
    const CScratchFolder folder;
    const std::string pipe = folder.Path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    CReason reason;
    EXPECT_FALSE(CDocumentSource().Open(pipe.c_str(), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::NotRegular);
}
