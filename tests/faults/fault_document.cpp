#include "fault_document.h"

#include "access_list.h"

#include "nodes/node_writers.h"
#include "platform/semaphore.h"
#include "store/document_pool.h"
#include "store/module_state.h"
#include "store/xml_object.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>

namespace fs = std::filesystem;

namespace {

constexpr const char* kName = "Cordelbox\\xml\\Faults.xml";
constexpr mode_t kMode = 0640;
constexpr uid_t kOwner = 1234; // where the tests may give files away
constexpr const char* kNote = "user.cordelbox.note";

/// What belongs to the permissions above, and lets one more user read.
std::string ListOfCopy() {
    using enum AccessEntry::Tag;
    return AccessListBytes({{Owner, 6}, {User, 4, 4321}, {OwningGroup, 0}, {Mask, 4}, {Others, 0}});
}

/// A text of which no two places are alike.
std::string Counted(std::size_t length) {
    std::string text;
    for (int number = 0; text.size() < length; ++number) {
        text += std::to_string(number) + " ";
    }
    return text;
}

std::string OctalDigits(mode_t mode) {
    std::ostringstream digits;
    digits << std::oct << mode;
    return digits.str();
}

std::string OldDocument(DocumentSize size) {
    const std::string text = Counted(static_cast<std::size_t>(size));
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r><Files>";
    for (int row = 0; row < 40; ++row) {
        xml += "<Item FileID=\"" + std::to_string(row) + "\" ID=\"" + std::to_string(row * 7) + "\" Text=\"" + text +
               "\"/>";
    }
    return xml + "</Files></r>";
}

} // namespace

bool Holds(const fs::path& path, const std::string& bytes) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, 64 << 10> piece;
    std::size_t nHeld = 0;
    while (file.read(piece.data(), piece.size()), file.gcount() > 0) {
        const std::string_view read(piece.data(), static_cast<std::size_t>(file.gcount()));
        if (std::string_view(bytes).substr(nHeld, read.size()) != read) {
            return false;
        }
        nHeld += read.size();
    }
    return file.eof() && nHeld == bytes.size();
}

FaultTest::FaultTest(DocumentSize size)
    : m_strOld(OldDocument(size)), m_copyFolder(m_folder.Path() / "Marvane" / "Hollivet" / "Cordelbox" / "xml") {
    ::setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
    fs::create_directories(m_copyFolder);
    m_owner.semaphore = platform::NewSemaphore();
    RestoreCopy();
    m_pDocument = OpenDocument(&m_owner, kName);
    State().currentDocument = m_pDocument;
    CXmlQuery change("Files", "ID", "changed, and a little longer than it was");
    change.AddPair("FileID", "5");
    EXPECT_EQ(WriteAttribute(State().currentDocument, &change), 0);
    EXPECT_EQ(Save(), 0);
    m_strNew = ReadBytes(CopyPath());
    EXPECT_NE(m_strNew, m_strOld);
    RestoreCopy();
}

FaultTest::~FaultTest() {
    State().currentDocument = nullptr;
    ReleaseDocument(&m_owner, kName);
    platform::DeleteSemaphore(m_owner.semaphore);
}

void FaultTest::RestoreCopy() {
    // The same file: the rights of one that is put in its place would count only as far as the document had them.
    WriteBytes(CopyPath(), m_strOld);
    if (::geteuid() == 0) {
        EXPECT_EQ(::chown(CopyPath().c_str(), kOwner, kOwner), 0);
    }
    EXPECT_EQ(::chmod(CopyPath().c_str(), kMode), 0);
    SetFileAttribute(CopyPath(), kAccessList, ListOfCopy());
    SetFileAttribute(CopyPath(), kNote, "a note");
    m_strList = FileAttribute(CopyPath(), kAccessList);
    m_strNote = FileAttribute(CopyPath(), kNote);
}

int32_t FaultTest::Save() const { return m_pDocument->Save() ? 0 : 1; }

std::set<std::string> FaultTest::Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_copyFolder)) {
        names.insert(entry.path().filename());
    }
    return names;
}

::testing::AssertionResult FaultTest::CopyIsWhole(bool bRightsKept) const {
    if (!Holds(CopyPath(), m_strOld) && !Holds(CopyPath(), m_strNew)) {
        const std::string bytes = ReadBytes(CopyPath());
        return ::testing::AssertionFailure() << "the copy is neither document but " << bytes.size() << " bytes:\n"
                                             << bytes.substr(0, 4000);
    }
    struct stat status {};
    const bool bLooked = ::stat(CopyPath().c_str(), &status) == 0;
    const mode_t mode = status.st_mode & 07777;
    const std::string list = FileAttribute(CopyPath(), kAccessList);
    const std::string note = FileAttribute(CopyPath(), kNote);
    if (!bLooked || (mode & ~kMode) != 0 || (list != m_strList && list != "(none)" && (mode & 070) != 0)) {
        return ::testing::AssertionFailure() << "more rights than before: permissions " << OctalDigits(mode);
    }
    if (list == "(none)" && m_strList != list && (mode & 077) != 0) {
        return ::testing::AssertionFailure() << "without its list, the group may what the mask allowed";
    }
    if (bRightsKept && (mode != kMode || list != m_strList || note != m_strNote)) {
        return ::testing::AssertionFailure() << "rights lost: permissions " << OctalDigits(mode) << ", note " << note;
    }
    if (bRightsKept && ::geteuid() == 0 && status.st_uid != kOwner) {
        return ::testing::AssertionFailure() << "owner " << status.st_uid;
    }
    return ::testing::AssertionSuccess();
}
