// Verifying fonts before they go to a printer, held against loading all their glyphs and nothing else.

#include "facts/file_bytes.h"
#include "verification/font_verification.h"
#include "workloads.h"

#include <benchmark/benchmark.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int kRepetitions = 7;
constexpr const char* kFolder = "/usr/share/fonts/truetype";

struct EndLibrary {
    void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
};

/// The fonts that are installed, over and over until there are enough; none when none is.
std::vector<std::string> Fonts() {
    std::vector<std::string> installed;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(kFolder, error)) {
        if (entry.path().extension() == ".ttf") {
            installed.push_back(entry.path().string());
        }
    }
    std::sort(installed.begin(), installed.end());
    std::vector<std::string> fonts;
    for (std::size_t i = 0; i < kManyFonts && !installed.empty(); ++i) {
        fonts.push_back(installed[i % installed.size()]);
    }
    return fonts;
}

bool IsVerified(const std::string& font) { return !VerifyFont(ReadFileBytes(font)).members.empty(); }

bool AreGlyphsLoaded(FT_Library library, const std::string& font) {
    FT_Face face = nullptr;
    if (FT_New_Face(library, font.c_str(), 0, &face) != 0) {
        return false;
    }
    bool bLoaded = true;
    for (FT_Long glyph = 0; glyph < face->num_glyphs; ++glyph) {
        bLoaded = FT_Load_Glyph(face, static_cast<FT_UInt>(glyph), FT_LOAD_NO_SCALE) == 0 && bLoaded;
    }
    FT_Done_Face(face);
    return bLoaded;
}

void Register(const std::string& name, const std::vector<std::string>& fonts,
              const std::function<bool(const std::string&)>& work) {
    const auto run = [fonts, work](benchmark::State& state) {
        for ([[maybe_unused]] const auto _ : state) {
            if (fonts.empty() || !std::all_of(fonts.begin(), fonts.end(), work)) {
                state.SkipWithError("failed");
                break;
            }
        }
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->Repetitions(kRepetitions)->Iterations(1)->UseRealTime();
}

} // namespace

void RegisterFontWorkloads() {
    FT_Library opened = nullptr;
    FT_Init_FreeType(&opened);
    const std::shared_ptr<FT_LibraryRec_> library(opened, EndLibrary());
    const std::vector<std::string> fonts = Fonts();
    Register(WorkloadName("verifying fonts", kManyFonts, "cordelctl"), fonts, IsVerified);
    Register(WorkloadName("verifying fonts", kManyFonts, "FreeType"), fonts,
             [library](const std::string& font) { return AreGlyphsLoaded(library.get(), font); });
}
