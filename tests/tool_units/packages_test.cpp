// What Debian's packages install passes: their fonts and profiles have no fault.
//
// Looks at the packages that the tests need anyway, and at whatever others of the list are installed. With
// CORDELBOX_ALL_FONTS in the environment all of them have to be (scripts/install-packages.sh fonts).

#include "facts/file_bytes.h"
#include "verification/font_verification.h"
#include "verification/profile_verification.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

struct FontPackage {
    const char* name;
    const char* folder;
    bool isNeeded; // by the tests
};

// Each is a family of its own, or several.
const FontPackage kFontPackages[] = {
    {"fonts-dejavu-core", "truetype/dejavu", true},
    {"fonts-wqy-microhei", "truetype/wqy", true},
    {"fonts-tlwg-loma-otf", "opentype/tlwg", true},
    {"fonts-cantarell", "opentype/cantarell", false},
    {"fonts-crosextra-carlito and -caladea", "truetype/crosextra", false},
    {"fonts-freefont-ttf", "truetype/freefont", false},
    {"fonts-hack", "truetype/hack", false},
    {"fonts-inconsolata", "truetype/inconsolata", false},
    {"fonts-lato", "truetype/lato", false},
    {"fonts-liberation", "truetype/liberation", false},
    {"fonts-noto-core", "truetype/noto", false},
    {"fonts-open-sans", "truetype/open-sans", false},
    {"fonts-quicksand", "truetype/quicksand", false},
    {"fonts-roboto-unhinted", "truetype/roboto/unhinted", false},
    {"fonts-sil-gentium-basic", "truetype/gentium-basic", false},
};

bool AreAllRequired() { return std::getenv("CORDELBOX_ALL_FONTS") != nullptr; }

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder,
                                           std::initializer_list<const char*> extensions) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() && std::find(extensions.begin(), extensions.end(), extension) != extensions.end()) {
            files.push_back(entry.path());
        }
    }
    return files;
}

std::string ErrorsIn(const FileFindings& findings) {
    std::string text;
    for (const FileFinding& finding : findings) {
        if (TextOf(finding.cause).severity == Severity::Error) {
            text += std::string(TextOf(finding.cause).code) + ": " + finding.what + "\n";
        }
    }
    return text;
}

} // namespace

TEST(Packages, FontsHaveNoError) {
    std::size_t count = 0;
    std::size_t packages = 0;
    for (const FontPackage& package : kFontPackages) {
        const auto files =
            FilesIn(std::filesystem::path("/usr/share/fonts") / package.folder, {".ttf", ".otf", ".ttc"});
        if (package.isNeeded || AreAllRequired()) {
            EXPECT_FALSE(files.empty()) << package.name << " is not installed";
        }
        for (const auto& file : files) {
            const auto result = VerifyFont(ReadFileBytes(file));
            EXPECT_EQ(ErrorsIn(result.findings), "") << file;
            EXPECT_FALSE(result.members.empty()) << file;
        }
        count += files.size();
        packages += files.empty() ? 0 : 1;
    }
    std::printf("%zu fonts of %zu packages\n", count, packages);
    if (AreAllRequired()) {
        EXPECT_GE(count, 300u);
        EXPECT_GE(packages, 10u);
    }
}

TEST(Packages, ProfilesHaveNoError) {
    // icc-profiles-free and colord-data
    const auto files = FilesIn("/usr/share/color/icc", {".icc", ".ICM"});
    for (const auto& file : files) {
        EXPECT_EQ(ErrorsIn(VerifyProfile(ReadFileBytes(file))), "") << file;
    }
    std::printf("%zu profiles\n", files.size());
    EXPECT_GE(files.size(), 30u);
}
