#include "windows_encodings.h"

#include <cstdint>

namespace {

struct Name {
    std::string_view encoding;
    unsigned codePage;
};

constexpr Name kNames[] = {
    {"SHIFT_JIS", 932},
    {"SHIFT-JIS", 932},
    {"SJIS", 932},
    {"X-SJIS", 932},
    {"MS_KANJI", 932},
    {"CSSHIFTJIS", 932},
    {"WINDOWS-31J", 932},
    {"CSWINDOWS31J", 932},
    {"WINDOWS-932", 932},
    {"X-MS-CP932", 932},
    {"CP932", 932},
    {"GB2312", 936},
    {"GB2312-80", 936},
    {"GB_2312-80", 936},
    {"GB231280", 936},
    {"CSGB2312", 936},
    {"CN-GB", 936},
    {"CHINESE", 936},
    {"GBK", 936},
    {"WINDOWS-936", 936},
    {"CP936", 936},
    {"EUC-KR", 949},
    {"CSEUCKR", 949},
    {"KS_C_5601", 949},
    {"KS_C_5601-1987", 949},
    {"KS_C_5601_1987", 949},
    {"KS_C_5601-1989", 949},
    {"KSC_5601", 949},
    {"KSC5601", 949},
    {"KOREAN", 949},
    {"UHC", 949},
    {"WINDOWS-949", 949},
    {"CSKSC56011987", 949},
    {"CP949", 949},
    {"BIG5", 950},
    {"CSBIG5", 950},
    {"CN-BIG5", 950},
    {"X-X-BIG5", 950},
    {"WINDOWS-950", 950},
    {"CP950", 950},
    {"WINDOWS-1250", 1250},
    {"X-CP1250", 1250},
    {"CP1250", 1250},
    {"WINDOWS-1251", 1251},
    {"X-CP1251", 1251},
    {"CP1251", 1251},
    {"WINDOWS-1252", 1252},
    {"X-CP1252", 1252},
    {"CP1252", 1252},
    {"WINDOWS-1253", 1253},
    {"CP1253", 1253},
    {"WINDOWS-1254", 1254},
    {"CP1254", 1254},
    {"WINDOWS-1255", 1255},
    {"CP1255", 1255},
    {"WINDOWS-1256", 1256},
    {"CP1256", 1256},
    {"WINDOWS-1257", 1257},
    {"CP1257", 1257},
    {"WINDOWS-1258", 1258},
    {"CP1258", 1258},
    {"WINDOWS-874", 874},
    {"CP874", 874},
};

/// Single bytes that follow each other as their characters do.
struct AddedBytes {
    unsigned codePage;
    std::uint8_t first;
    std::uint8_t last;
    char16_t character; // of the first
};

constexpr AddedBytes kBytes[] = {
    {874, 0x80, 0x9F, 0x80},    {874, 0xDB, 0xDE, 0xF8C1},  {874, 0xFC, 0xFF, 0xF8C5},  {932, 0x80, 0x80, 0x80},
    {932, 0xA0, 0xA0, 0xF8F0},  {932, 0xFD, 0xFF, 0xF8F1},  {936, 0xFF, 0xFF, 0xF8F5},  {949, 0x80, 0x80, 0x80},
    {949, 0xFF, 0xFF, 0xF8F7},  {950, 0xFF, 0xFF, 0xF8F8},  {1250, 0x80, 0x9F, 0x80},   {1251, 0x80, 0x9F, 0x80},
    {1252, 0x80, 0x9F, 0x80},   {1253, 0x80, 0x9F, 0x80},   {1253, 0xAA, 0xAA, 0xF8F9}, {1253, 0xD2, 0xD2, 0xF8FA},
    {1253, 0xFF, 0xFF, 0xF8FB}, {1254, 0x80, 0x9F, 0x80},   {1255, 0x80, 0x9F, 0x80},   {1255, 0xCA, 0xCA, 0x5BA},
    {1255, 0xD9, 0xDF, 0xF88D}, {1255, 0xFB, 0xFC, 0xF894}, {1255, 0xFF, 0xFF, 0xF896}, {1257, 0x80, 0x9F, 0x80},
    {1257, 0xA1, 0xA1, 0xF8FC}, {1257, 0xA5, 0xA5, 0xF8FD}, {1258, 0x80, 0x9F, 0x80},
};

/// Second bytes that follow each other as their characters do, behind each of some first bytes.
struct AddedRows {
    unsigned codePage;
    std::uint8_t firstLead;
    std::uint8_t lastLead;
    std::uint8_t first;
    std::uint8_t last;
    char16_t character; // of the first
    char16_t perLead;   // from one first byte to the next
};

constexpr AddedRows kRows[] = {
    {936, 0xA1, 0xA7, 0x40, 0x7E, 0xE4C6, 96},  {936, 0xA1, 0xA7, 0x80, 0xA0, 0xE505, 96},
    {936, 0xA2, 0xA2, 0xAB, 0xB0, 0xE766, 0},   {936, 0xA2, 0xA2, 0xE3, 0xE4, 0xE76C, 0},
    {936, 0xA2, 0xA2, 0xEF, 0xF0, 0xE76E, 0},   {936, 0xA2, 0xA2, 0xFD, 0xFE, 0xE770, 0},
    {936, 0xA4, 0xA4, 0xF4, 0xFE, 0xE772, 0},   {936, 0xA5, 0xA5, 0xF7, 0xFE, 0xE77D, 0},
    {936, 0xA6, 0xA6, 0xB9, 0xC0, 0xE785, 0},   {936, 0xA6, 0xA6, 0xD9, 0xDF, 0xE78D, 0},
    {936, 0xA6, 0xA6, 0xEC, 0xED, 0xE794, 0},   {936, 0xA6, 0xA6, 0xF3, 0xF3, 0xE796, 0},
    {936, 0xA6, 0xA6, 0xF6, 0xFE, 0xE797, 0},   {936, 0xA7, 0xA7, 0xC2, 0xD0, 0xE7A0, 0},
    {936, 0xA7, 0xA7, 0xF2, 0xFE, 0xE7AF, 0},   {936, 0xA8, 0xA8, 0x96, 0xA0, 0xE7BC, 0},
    {936, 0xA8, 0xA8, 0xBC, 0xBC, 0xE7C7, 0},   {936, 0xA8, 0xA8, 0xBF, 0xBF, 0xE7C8, 0},
    {936, 0xA8, 0xA8, 0xC1, 0xC4, 0xE7C9, 0},   {936, 0xA8, 0xA8, 0xEA, 0xFE, 0xE7CD, 0},
    {936, 0xA9, 0xA9, 0x58, 0x58, 0xE7E2, 0},   {936, 0xA9, 0xA9, 0x5B, 0x5B, 0xE7E3, 0},
    {936, 0xA9, 0xA9, 0x5D, 0x5F, 0xE7E4, 0},   {936, 0xA9, 0xA9, 0x89, 0x95, 0xE7E7, 0},
    {936, 0xA9, 0xA9, 0x97, 0xA3, 0xE7F4, 0},   {936, 0xA9, 0xA9, 0xF0, 0xFE, 0xE801, 0},
    {936, 0xAA, 0xAF, 0xA1, 0xFE, 0xE000, 94},  {936, 0xD7, 0xD7, 0xFA, 0xFE, 0xE810, 0},
    {936, 0xF8, 0xFE, 0xA1, 0xFE, 0xE234, 94},  {936, 0xFE, 0xFE, 0x50, 0x7E, 0xE815, 0},
    {936, 0xFE, 0xFE, 0x80, 0xA0, 0xE844, 0},   {949, 0xC9, 0xC9, 0xA1, 0xFE, 0xE000, 0},
    {949, 0xFE, 0xFE, 0xA1, 0xFE, 0xE05E, 0},   {950, 0x81, 0x8D, 0x40, 0x7E, 0xEEB8, 157},
    {950, 0x81, 0x8D, 0xA1, 0xFE, 0xEEF7, 157}, {950, 0x8E, 0xA0, 0x40, 0x7E, 0xE311, 157},
    {950, 0x8E, 0xA0, 0xA1, 0xFE, 0xE350, 157}, {950, 0xFA, 0xFE, 0x40, 0x7E, 0xE000, 157},
    {950, 0xFA, 0xFE, 0xA1, 0xFE, 0xE03F, 157},
};

} // namespace

unsigned WindowsCodePage(std::string_view encoding) noexcept {
    for (const Name& name : kNames) {
        if (name.encoding == encoding) {
            return name.codePage;
        }
    }
    return 0;
}

AddedCharacter FindAddedCharacter(unsigned codePage, std::string_view bytes) noexcept {
    if (bytes.empty()) {
        return {0, 0}; // a converter may stop behind the last byte
    }
    const auto first = static_cast<std::uint8_t>(bytes[0]);
    for (const AddedBytes& added : kBytes) {
        if (added.codePage == codePage && first >= added.first && first <= added.last) {
            return {1, static_cast<char16_t>(added.character + (first - added.first))};
        }
    }
    const auto second = static_cast<std::uint8_t>(bytes.size() > 1 ? bytes[1] : '\0');
    for (const AddedRows& added : kRows) {
        if (added.codePage == codePage && first >= added.firstLead && first <= added.lastLead &&
            second >= added.first && second <= added.last) {
            return {2, static_cast<char16_t>(added.character + (first - added.firstLead) * added.perLead +
                                             (second - added.first))};
        }
    }
    return {0, 0};
}
