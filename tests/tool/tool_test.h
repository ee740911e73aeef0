// Starts cordelctl as a user does, with an install folder and a per-user folder that last for one test.

#pragma once

#include "file_bytes.h"
#include "saved_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

/// What a run of the program left.
struct ToolRun {
    int status = -1; // exit status; 128 and the number of the signal when one ended it
    std::string output;
    std::string errors;

    nlohmann::json Json() const { return nlohmann::json::parse(output); }
};

// The exit statuses, as --help lists them.
inline constexpr int kDone = 0;
inline constexpr int kNo = 1;
inline constexpr int kUsage = 2;
inline constexpr int kMissing = 3;
inline constexpr int kNotKept = 4;
inline constexpr int kNoDocument = 5;
inline constexpr int kRefused = 6;
inline constexpr int kNoOutput = 7;
inline constexpr int kInterrupted = 130;

class ToolTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Runs cordelctl with these arguments; `input` is its standard input.
    ToolRun Run(const std::vector<std::string>& arguments, const std::string& input = {}) const;

    /// Runs it and expects it to succeed without a word on standard error; returns what it printed.
    std::string Output(const std::vector<std::string>& arguments) const;

    /// Creates the per-user copies.
    void Init() const { Output({"init"}); }

    std::filesystem::path InstallFolder() const { return m_folder / "install"; }
    std::filesystem::path UserFolder() const; // the per-user root
    std::filesystem::path ToolPath() const;
    std::filesystem::path InstalledPath(const std::string& name = "Cordelbox.xml") const;
    std::filesystem::path UserPath(const std::string& name = "Cordelbox.xml") const;

    /// A file of the user with this content; returns its path.
    std::string UserFile(const std::string& name, const std::string& content) const;

    /// Copies of a real file, numbered from 1.
    std::vector<std::string> CopiesOf(const std::string& path, int count) const;

    /// The items that were saved in the user's copy of a document, read without the library.
    std::vector<Record> Saved(const std::string& container, const std::string& document = "Cordelbox.xml") const;

    std::filesystem::path m_folder;

private:
    /// A folder for one test.
    static std::filesystem::path NewFolder();

    /// Runs the program with these files for its streams, and returns its exit status.
    int RunProgram(const std::vector<std::string>& arguments, const std::filesystem::path& input,
                   const std::filesystem::path& output, const std::filesystem::path& errors) const;
};

/// The value of an attribute of a record; fails the test when there is none.
std::string ValueOf(const Record& record, const std::string& name);

#ifdef _WIN32
inline const std::string kFontFolder = R"(Z:\usr\share\fonts\truetype\dejavu\)";
inline const std::string kProfileFolder = R"(Z:\usr\share\color\icc\)";
#else
inline const std::string kFontFolder = "/usr/share/fonts/truetype/dejavu/";
inline const std::string kProfileFolder = "/usr/share/color/icc/";
#endif
inline const std::string kSans = kFontFolder + "DejaVuSans.ttf";
inline const std::string kSansBold = kFontFolder + "DejaVuSans-Bold.ttf";
inline const std::string kMono = kFontFolder + "DejaVuSansMono.ttf";
inline const std::string kRgbProfile = kProfileFolder + "sRGB.icc";
inline const std::string kGrayProfile = kProfileFolder + "Gray.icc";
