#include "profile_content.h"

#include "table_reader.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr std::size_t kTypeHead = 8; // the type, and four bytes of nothing

bool HasAll(const CProfileTags& profile, std::initializer_list<const char*> names) {
    return std::all_of(names.begin(), names.end(), [&](const char* name) { return profile.Lists(name); });
}

/// The bytes that a curve takes from its beginning; nothing when it is none.
std::optional<std::size_t> CurveSize(std::string_view tag) {
    if (!Holds(tag, 0, kTypeHead + 4)) {
        return std::nullopt;
    }
    const std::string_view type = tag.substr(0, 4);
    std::size_t size = 0;
    if (type == "curv") {
        const std::size_t count = Word32At(tag, kTypeHead);
        size = kTypeHead + 4 + count * 2;
    } else if (type == "para") {
        constexpr std::size_t kParameters[] = {1, 3, 4, 5, 7};
        const std::uint32_t form = Word16At(tag, kTypeHead);
        if (form >= std::size(kParameters)) {
            return std::nullopt;
        }
        size = kTypeHead + 4 + kParameters[form] * 4;
    } else {
        return std::nullopt;
    }
    return size <= tag.size() ? std::optional(size) : std::nullopt;
}

/// So many curves, one behind the other, each beginning at a multiple of four.
bool HoldsCurves(std::string_view tag, std::size_t offset, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (offset > tag.size()) {
            return false;
        }
        const auto size = CurveSize(tag.substr(offset));
        if (!size) {
            return false;
        }
        offset += (*size + 3) & ~std::size_t{3};
    }
    return true;
}

/// The product, or more than any tag can hold.
std::size_t Multiplied(std::size_t a, std::size_t b) {
    constexpr std::size_t kTooLarge = std::size_t{1} << 40;
    return a != 0 && b > kTooLarge / a ? kTooLarge : a * b;
}

/// Tables of 8 or 16 bits.
bool IsOldTable(std::string_view tag, unsigned int inputs, unsigned int outputs) {
    const bool wide = tag.substr(0, 4) == "mft2";
    constexpr std::size_t kGrid = 48;
    const std::size_t head = wide ? kGrid + 4 : kGrid;
    if (tag.size() < head || ByteAt(tag, kTypeHead) != inputs || ByteAt(tag, kTypeHead + 1) != outputs) {
        return false;
    }
    const std::size_t grid = ByteAt(tag, kTypeHead + 2);
    const std::size_t inputEntries = wide ? Word16At(tag, kGrid) : 256;
    const std::size_t outputEntries = wide ? Word16At(tag, kGrid + 2) : 256;
    if (grid < 2 || inputEntries < 2 || outputEntries < 2) {
        return false;
    }
    std::size_t colours = outputs;
    for (unsigned int i = 0; i < inputs; ++i) {
        colours = Multiplied(colours, grid);
    }
    return tag.size() - head >= (inputs * inputEntries + colours + outputs * outputEntries) * (wide ? 2 : 1);
}

/// Tables with curves, a matrix and a grid.
bool IsNewTable(std::string_view tag, unsigned int inputs, unsigned int outputs) {
    constexpr std::size_t kHead = 32;
    if (tag.size() < kHead || ByteAt(tag, kTypeHead) != inputs || ByteAt(tag, kTypeHead + 1) != outputs) {
        return false;
    }
    const bool toConnection = tag.substr(0, 4) == "mAB ";
    const std::size_t bCurves = Word32At(tag, 12);
    const std::size_t matrix = Word32At(tag, 16);
    const std::size_t mCurves = Word32At(tag, 20);
    const std::size_t grid = Word32At(tag, 24);
    const std::size_t aCurves = Word32At(tag, 28);
    const unsigned int device = toConnection ? inputs : outputs;
    const unsigned int connection = toConnection ? outputs : inputs;
    constexpr std::size_t kMatrixSize = 48;
    if ((bCurves != 0 && !HoldsCurves(tag, bCurves, connection)) || (matrix != 0 && !Holds(tag, matrix, kMatrixSize)) ||
        (mCurves != 0 && !HoldsCurves(tag, mCurves, connection)) ||
        (aCurves != 0 && !HoldsCurves(tag, aCurves, device))) {
        return false;
    }
    if (grid == 0) {
        return inputs == outputs;
    }
    constexpr std::size_t kGridHead = 20;
    if (!Holds(tag, grid, kGridHead)) {
        return false;
    }
    std::size_t colours = outputs;
    for (unsigned int i = 0; i < inputs; ++i) {
        const std::size_t points = ByteAt(tag, grid + i);
        if (points < 2) {
            return false;
        }
        colours = Multiplied(colours, points);
    }
    const std::size_t precision = ByteAt(tag, grid + 16);
    return (precision == 1 || precision == 2) && tag.size() - grid - kGridHead >= Multiplied(colours, precision);
}

bool IsText(std::string_view tag) {
    if (tag.size() < kTypeHead) {
        return false;
    }
    const std::string_view type = tag.substr(0, 4);
    if (type == "text") {
        return true;
    }
    if (type == "desc") {
        return tag.size() >= kTypeHead + 4 && Holds(tag, kTypeHead + 4, Word32At(tag, kTypeHead));
    }
    constexpr std::size_t kRecords = 16;
    if (type != "mluc" || tag.size() < kRecords) {
        return false;
    }
    const std::size_t count = Word32At(tag, kTypeHead);
    const std::size_t size = Word32At(tag, kTypeHead + 4);
    constexpr std::size_t kRecordSize = 12;
    if (size != kRecordSize || !Holds(tag, kRecords, Multiplied(count, size))) {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t record = kRecords + i * size;
        if (!Holds(tag, Word32At(tag, record + 8), Word32At(tag, record + 4))) {
            return false;
        }
    }
    return true;
}

bool IsColour(std::string_view tag) { return tag.size() >= kTypeHead + 12 && tag.substr(0, 4) == "XYZ "; }

/// A table between the device and the connection space, in the direction that its name tells.
bool IsTable(const CProfileTags& profile, const std::string& name, std::string_view tag) {
    if (tag.size() < kTypeHead) {
        return false;
    }
    const bool toConnection = name[0] == 'A';
    const unsigned int device = ChannelsOf(profile.ColourSpace());
    const unsigned int connection = profile.Class() == "link" ? ChannelsOf(profile.ConnectionSpace()) : 3;
    const unsigned int inputs = toConnection ? device : connection;
    const unsigned int outputs = toConnection ? connection : device;
    const std::string_view type = tag.substr(0, 4);
    if (type == "mft1" || type == "mft2") {
        return IsOldTable(tag, inputs, outputs);
    }
    return type == (toConnection ? "mAB " : "mBA ") && IsNewTable(tag, inputs, outputs);
}

void CheckWhitePoint(std::string_view tag, FileFindings& findings) {
    const double x = FixedAt(tag, kTypeHead);
    const double y = FixedAt(tag, kTypeHead + 4);
    const double z = FixedAt(tag, kTypeHead + 8);
    // Papers and screens: from grey to a little more than the reference, from candle light to blue sky.
    const bool sane = y >= 0.2 && y <= 1.5 && x >= 0.5 * y && x <= 1.5 * y && z >= 0.1 * y && z <= 2.0 * y;
    if (!sane) {
        findings.push_back({Cause::WhitePoint, "its white point is " + std::to_string(x) + ", " + std::to_string(y) +
                                                   ", " + std::to_string(z)});
    }
}

/// Colours can be turned back into amounts of red, green and blue only when the three are three.
void CheckColorants(const CProfileTags& profile, FileFindings& findings) {
    double m[3][3];
    const char* const names[] = {"rXYZ", "gXYZ", "bXYZ"};
    for (std::size_t column = 0; column < 3; ++column) {
        const std::string_view tag = profile.Find(names[column]);
        if (!IsColour(tag)) {
            return;
        }
        for (std::size_t row = 0; row < 3; ++row) {
            m[row][column] = FixedAt(tag, kTypeHead + row * 4);
        }
    }
    const double determinant = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    constexpr double kSmallest = 0.0001;
    if (std::abs(determinant) < kSmallest) {
        findings.push_back({Cause::TransformImpossible, "its red, green and blue are not three colours (tags \"rXYZ\", "
                                                        "\"gXYZ\" and \"bXYZ\")"});
    }
}

} // namespace

void CheckRequiredTags(const CProfileTags& profile, FileFindings& findings) {
    std::string missing;
    const auto require = [&](const char* name) {
        if (!profile.Lists(name)) {
            missing += (missing.empty() ? "" : ", ") + Quoted(name);
        }
    };
    require("desc");
    require("cprt");
    const std::string_view kind = profile.Class();
    if (kind == "link") {
        require("A2B0");
        require("pseq");
    } else {
        require("wtpt");
    }
    if (kind == "abst") {
        require("A2B0");
    } else if (kind == "nmcl") {
        require("ncl2");
    } else if (kind == "spac") {
        require("A2B0");
        require("B2A0");
    } else if (kind == "scnr" || kind == "mntr" || kind == "prtr") {
        const bool hasTables = profile.Lists("A2B0") || profile.Lists("B2A0");
        if (hasTables || (profile.ColourSpace() != "RGB " && profile.ColourSpace() != "GRAY")) {
            require("A2B0");
            if (kind != "scnr") {
                require("B2A0");
            }
        } else if (profile.ColourSpace() == "GRAY") {
            require("kTRC");
        } else {
            for (const char* const name : {"rXYZ", "gXYZ", "bXYZ", "rTRC", "gTRC", "bTRC"}) {
                require(name);
            }
        }
    }
    if (!missing.empty()) {
        findings.push_back({Cause::TagMissing, missing});
    }
}

void CheckTagContent(const CProfileTags& profile, FileFindings& findings) {
    for (const ProfileTag& listed : profile.All()) {
        const std::string_view tag = profile.Find(listed.name);
        const std::string& name = listed.name;
        if (tag.size() != listed.length) {
            continue; // it lies outside, or is listed twice
        }
        const auto isOneOf = [&](std::initializer_list<const char*> names) {
            return std::find(names.begin(), names.end(), name) != names.end();
        };
        bool whole = true;
        if (isOneOf({"rTRC", "gTRC", "bTRC", "kTRC"})) {
            whole = CurveSize(tag).has_value();
        } else if (isOneOf({"wtpt", "rXYZ", "gXYZ", "bXYZ"})) {
            whole = IsColour(tag);
        } else if (isOneOf({"desc", "cprt"})) {
            whole = IsText(tag);
        } else if (isOneOf({"A2B0", "A2B1", "A2B2", "B2A0", "B2A1", "B2A2"}) &&
                   ChannelsOf(profile.ColourSpace()) != 0 && profile.Class() != "nmcl") {
            whole = IsTable(profile, name, tag);
        }
        if (!whole) {
            findings.push_back({Cause::TagMalformed, "tag " + Quoted(name)});
        } else if (name == "wtpt") {
            CheckWhitePoint(tag, findings);
        }
    }
    if (HasAll(profile, {"rXYZ", "gXYZ", "bXYZ"}) && !profile.Lists("A2B0")) {
        CheckColorants(profile, findings);
    }
}
