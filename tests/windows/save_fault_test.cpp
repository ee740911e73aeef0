#include "save_fault_test.h"

#include "store/module_state.h"
#include "store/xml_object.h"

#include <sddl.h>

#include <stdexcept>

namespace fs = std::filesystem;

const std::set<std::wstring> kCopyAlone{L"Cordelbox.xml"};

namespace {

std::string OldDocument() {
    std::string files;
    for (int row = 0; row < 40; ++row) {
        files += "<Item FileID=\"" + std::to_string(row) + "\" ID=\"" + std::to_string(row * 7) + "\"/>";
    }
    return Document("<Files>" + files + "</Files>");
}

std::vector<char> RightsOf(const fs::path& path) {
    DWORD size = 0;
    ::GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> rights(size);
    EXPECT_NE(::GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size), FALSE);
    return rights;
}

/// All rights to everybody, which no new file has.
void GiveRights(const fs::path& path) {
    PSECURITY_DESCRIPTOR rights = nullptr;
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;WD)", SDDL_REVISION_1, &rights, nullptr) ==
            FALSE ||
        ::SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights) == FALSE) {
        throw std::runtime_error("no access rights");
    }
    ::LocalFree(rights);
}

} // namespace

void SaveFaultTest::SetUp() {
    HostTest::SetUp();
    m_strOld = OldDocument();
    CopyMainForUser(m_strOld);
    Open();
    WriteAttr("Files", "ID", "changed, and a little longer than it was");
    m_strNew = UserMainText();
    ASSERT_NE(m_strNew, m_strOld);
    RestoreCopy();
    m_rights = RightsOf(UserMainPath());
}

void SaveFaultTest::RestoreCopy() const {
    for (const auto& entry : fs::directory_iterator(UserMainPath().parent_path())) {
        fs::remove(entry.path());
    }
    WriteFile(UserMainPath(), m_strOld);
    GiveRights(UserMainPath());
    ASSERT_NE(::SetFileAttributesW(UserMainPath().c_str(), FILE_ATTRIBUTE_HIDDEN), FALSE);
}

int32_t SaveFaultTest::Save() { return State().currentDocument->Save() ? 0 : 1; }

int32_t SaveFaultTest::SaveWatched(const CSystemCallWatch::Judge& judge) {
    CSystemCallWatch watch(judge);
    return Save();
}

std::vector<SystemCall> SaveFaultTest::CallsOfASave(DWORD nAtMost) {
    CSystemCallWatch watch([&](std::size_t, const SystemCall&) { return Fate{0, false, nAtMost}; });
    EXPECT_EQ(Save(), 0);
    return watch.Calls();
}

std::set<std::wstring> SaveFaultTest::Names() const {
    std::set<std::wstring> names;
    for (const auto& entry : fs::directory_iterator(UserMainPath().parent_path())) {
        names.insert(entry.path().filename());
    }
    return names;
}

void SaveFaultTest::ExpectWholeAfter(int32_t status, bool bAttributesKept, bool bRightsKept) const {
    ASSERT_EQ(UserMainText(), status == 0 ? m_strNew : m_strOld) << "status " << status;
    if (bAttributesKept) {
        ASSERT_NE(::GetFileAttributesW(UserMainPath().c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
    }
    if (bRightsKept) {
        ASSERT_EQ(RightsOf(UserMainPath()), m_rights);
    }
}

void SaveFaultTest::ExpectNextSaveToWork() const {
    ASSERT_EQ(Save(), 0);
    ASSERT_EQ(UserMainText(), m_strNew);
    ASSERT_EQ(Names(), kCopyAlone);
}
