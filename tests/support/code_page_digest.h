// What the code pages of Windows hold, in one number for each: the tests on Linux compare what documents are read as
// with it, and the tests on Windows what the system says.

#pragma once

#include <cstdint>
#include <string>

struct CodePageDigest {
    unsigned codePage;
    const char* encoding; // as a document declares it
    std::uint64_t digest;
};

inline constexpr CodePageDigest kCodePageDigests[] = {
    {874, "windows-874", 0xC0AE0EC1D0FDF5AD},   {932, "Shift_JIS", 0xA2F694BB270E43DD},
    {936, "GB2312", 0xB41F8460F8155E10},        {949, "EUC-KR", 0x12FEAD89DC5A0D69},
    {950, "Big5", 0x775E1137AAE177AA},          {1250, "windows-1250", 0x7EB87C8D0B023288},
    {1251, "windows-1251", 0xAAC031E927526EB7}, {1252, "windows-1252", 0x35002F96883E5B18},
    {1253, "windows-1253", 0x1FC9434305E0028D}, {1254, "windows-1254", 0xB1FAC3062CE98476},
    {1255, "windows-1255", 0x4654ED8E6C9558F0}, {1256, "windows-1256", 0x5DC2E02EF1316A90},
    {1257, "windows-1257", 0x344B555F04BE61B4}, {1258, "windows-1258", 0xE5EF4267D8BBAB02},
};

inline bool HasDoubleBytes(unsigned codePage) { return codePage >= 932 && codePage <= 950; }

/// The digest of a code page. `unitOf` gives the UTF-16 unit of one character's bytes, or 0 when they are none.
template <class UnitOf>
std::uint64_t DigestOf(unsigned codePage, UnitOf unitOf) {
    std::uint64_t digest = 14695981039346656037u;
    const auto add = [&digest](std::uint64_t value) {
        for (int half = 0; half < 2; ++half, value >>= 8) {
            digest = (digest ^ (value & 0xFF)) * 1099511628211u;
        }
    };
    for (unsigned first = 0x01; first < 0x100; ++first) {
        const unsigned single = unitOf(std::string(1, static_cast<char>(first)));
        add(single);
        for (unsigned second = 0x20; single == 0 && HasDoubleBytes(codePage) && second < 0x100; ++second) {
            add(unitOf(std::string{static_cast<char>(first), static_cast<char>(second)}));
        }
    }
    return digest;
}
