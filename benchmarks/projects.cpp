#include "projects.h"

#include "cordelbox.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

constexpr const char* kFamilies[] = {"Garamond", "Frutiger", "Helvetica", "Univers", "Bodoni", "Palatino", "Optima"};
constexpr const char* kStyles[] = {"Regular", "Bold", "Italic", "Bold Italic", "Light"};

/// A number with at least `digits` digits.
std::string Padded(int number, std::size_t digits) {
    std::string text = std::to_string(number);
    text.insert(0, digits - std::min(digits, text.size()), '0');
    return text;
}

template <std::size_t count>
std::string Pick(const char* const (&choices)[count], int row) {
    return choices[static_cast<std::size_t>(row) % count];
}

std::string Family(int row) { return Pick(kFamilies, row) + " " + Padded(row, 5); }

void Add(std::string& xml, std::string_view name, std::string_view value) {
    xml += ' ';
    xml += name;
    xml += "=\"";
    xml += value;
    xml += '"';
}

std::string Document(std::string_view containers) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Cordelbox>\n";
    xml += containers;
    return xml += "</Cordelbox>\n";
}

/// A container with `rows` items, whose attributes `addAttributes` adds.
template <class AddAttributes>
std::string Container(const std::string& name, int rows, AddAttributes addAttributes) {
    std::string xml = "  <" + name + ">\n";
    for (int row = 0; row < rows; ++row) {
        xml += "    <Item";
        addAttributes(xml, row);
        xml += "/>\n";
    }
    return xml += "  </" + name + ">\n";
}

void AddFile(std::string& xml, int row, const char* type) {
    Add(xml, "FileID", FontFileId(row));
    Add(xml, "Component", "Fonts");
    Add(xml, "ID", std::to_string(row));
    Add(xml, "Type", type);
    Add(xml, "Volume", "0:");
    Add(xml, "Path", "0:/fonts/" + Padded(row, 5) + ".ttf");
    Add(xml, "LocalPath", FontLocalPath(row));
    Add(xml, "Size", std::to_string(40000 + row));
    Add(xml, "CreateDate", "2019-03-12");
    Add(xml, "checked", "1");
}

void AddFont(std::string& xml, int row) {
    const std::string family = Family(row);
    const std::string style = Pick(kStyles, row);
    AddFile(xml, row, "5");
    Add(xml, "FontFamilyName", family);
    Add(xml, "TrueTypeTontName", family + " " + style);
    Add(xml, "FontStyle", style);
    Add(xml, "Copyright", "(c) 2004 Foundry. All rights reserved.");
    Add(xml, "PostScriptName", Pick(kFamilies, row) + Padded(row, 5));
    Add(xml, "SymbolSet", "19U");
}

void AddProfile(std::string& xml, int row) {
    AddFile(xml, row, "6");
    Add(xml, "ICMType", "1");
    Add(xml, "ProfileType", "0");
    Add(xml, "ColorSpace", "RGB");
    Add(xml, "Description", "Proof print, coated paper " + Padded(row, 5));
    Add(xml, "DeviceClass", "prtr");
    Add(xml, "Copyright", "(c) 2004 Foundry.");
    Add(xml, "Comment", "");
}

void AddJob(std::string& xml, int row) {
    Add(xml, "Name", "Quarterly report, part " + Padded(row, 5));
    Add(xml, "ID", std::to_string(row));
    Add(xml, "Type", "1");
    Add(xml, "Copies", "2");
    Add(xml, "Stored", "1");
    Add(xml, "checked", "0");
}

/// A hash without a key, as tables have used it.
std::uint64_t KnownHash(const std::string& text) {
    std::uint64_t hash = 0;
    const auto mix = [&hash](std::uint64_t block) {
        hash = (hash ^ block) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    };
    std::uint64_t block = 0;
    if (text.size() >= sizeof block) {
        std::memcpy(&block, text.data() + text.size() - sizeof block, sizeof block);
    } else {
        for (const char character : text) {
            block = block << 8 | static_cast<unsigned char>(character);
        }
    }
    mix(block);
    mix(text.size());
    return hash;
}

/// Texts of at most eight bytes whose hashes end alike.
std::vector<std::string> CollidingTexts(int count) {
    constexpr std::uint64_t kSame = 0xFFF;
    std::vector<std::string> texts;
    for (int number = 0; texts.size() < static_cast<std::size_t>(count); ++number) {
        std::string text = std::to_string(number);
        if ((KnownHash(text) & kSame) == 0) {
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

std::string OneItem(const std::string& container, std::string_view attribute, std::string_view value) {
    return Container(container, 1, [&](std::string& xml, int) { Add(xml, attribute, value); });
}

template <std::size_t size>
void Fill(char (&field)[size], const std::string& text) {
    std::snprintf(field, size, "%s", text.c_str());
}

} // namespace

std::string FontFileId(int row) { return "F" + Padded(row, 6); }

std::string FontLocalPath(int row) { return "C:\\Fonts\\" + Pick(kFamilies, row) + "\\" + Padded(row, 5) + ".ttf"; }

std::string FontProject(int rows) {
    return Document(OneItem("Property", "FileID", FontFileId(rows / 2)) + Container("Files", rows, AddFont));
}

std::string ProfileProject(int rows) {
    const auto slots = static_cast<std::size_t>(rows);
    return Document(OneItem("RGBSource", "IDArray", std::string(slots, '1')) + Container("Files", rows, AddProfile));
}

std::string ProjectWithoutIds(int rows) {
    return Document(Container("Files", rows, [](std::string& xml, int) {
        Add(xml, "FileID", "same");
        Add(xml, "Type", "8"); // of which IDs are gathered, and never clash
        Add(xml, "checked", "1");
    }));
}

std::string ProjectWithATwin(int rows) {
    return Document(Container("Files", rows, [rows](std::string& xml, int row) {
        if (row == rows - 1) {
            Add(xml, "xmlns:other", "other");
            Add(xml, "other:Size", "twin");
        }
        AddFont(xml, row);
    }));
}

std::string ProjectOfCollisions(int rows) {
    const std::vector<std::string> fileIds = CollidingTexts(rows);
    return Document(Container("Files", rows, [&](std::string& xml, int row) {
        Add(xml, "FileID", fileIds[static_cast<std::size_t>(row)]);
        Add(xml, "ID", std::to_string(row));
        Add(xml, "Type", "5");
        Add(xml, "checked", "1");
    }));
}

std::string PrinterWithJobs(int rows) { return Document(Container("Jobs", rows, AddJob)); }

FileItem FontRecord(int row, TrueTypeDetail& detail) {
    const std::string family = Family(row);
    Fill(detail.fontFamilyName, family);
    Fill(detail.trueTypeFontName, family + " Regular");
    Fill(detail.fontStyle, "Regular");
    Fill(detail.copyright, "(c) 2004 Foundry. All rights reserved.");
    Fill(detail.postScriptName, Pick(kFamilies, row) + Padded(row, 5));
    Fill(detail.symbolSet, "19U");
    FileItem file{};
    Fill(file.FileID, FontFileId(row));
    Fill(file.Component, "Fonts");
    Fill(file.ID, std::to_string(row));
    Fill(file.Type, "5");
    Fill(file.Volume, "0:");
    Fill(file.Path, "0:/fonts/" + Padded(row, 5) + ".ttf");
    Fill(file.LocalPath, FontLocalPath(row));
    Fill(file.Size, std::to_string(40000 + row));
    Fill(file.CreateDate, "2019-03-12");
    file.detail = &detail;
    return file;
}
