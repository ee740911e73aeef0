// The code pages as the system has them, against the numbers with which the tests on Linux compare what documents are
// read as.

#include "code_page_digest.h"

#include "cordelbox.h"

#include <gtest/gtest.h>

#include <string>

TEST(CodePageTables, AreThoseThatDocumentsAreReadWithOnLinux) {
    for (const CodePageDigest& page : kCodePageDigests) {
        const auto unitOf = [&](const std::string& bytes) -> unsigned {
            if (bytes.size() == 1 && ::IsDBCSLeadByteEx(page.codePage, static_cast<BYTE>(bytes[0])) != FALSE) {
                return 0;
            }
            // With MB_ERR_INVALID_CHARS the areas for characters of the user's own would count as undefined too.
            wchar_t units[4] = {};
            const int count =
                ::MultiByteToWideChar(page.codePage, 0, bytes.data(), static_cast<int>(bytes.size()), units, 4);
            const std::string defaultBytes = page.codePage == 932 ? "\x81\x45" : "?";
            const wchar_t defaultUnit = page.codePage == 932 ? L'\x30FB' : L'?';
            return count == 1 && (units[0] != defaultUnit || bytes == defaultBytes) ? units[0] : 0;
        };
        EXPECT_EQ(DigestOf(page.codePage, unitOf), page.digest) << page.codePage;
    }
}
