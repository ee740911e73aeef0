#include "soak_document.h"

#include "saved_document.h"

#include <cstdint>
#include <stdexcept>

namespace {

constexpr int kRows = 50;

std::string Checksum(const std::string& text) {
    std::uint64_t sum = 14695981039346656037U;
    for (const char character : text) {
        sum = (sum ^ static_cast<unsigned char>(character)) * 1099511628211U;
    }
    return std::to_string(sum);
}

std::string RowText(int row) { return "row " + std::to_string(row * row); }

bool IsStamp(const std::string& text) {
    const std::size_t dash = text.rfind('-');
    return dash != std::string::npos && Checksum(text.substr(0, dash)) == text.substr(dash + 1);
}

} // namespace

std::string NewStamp(std::mt19937& random, int writer) {
    constexpr std::size_t kUsual = 200;
    constexpr std::size_t kLong = 3'000'000;
    const std::size_t length = Below(random, OneIn(random, 20) ? kLong : kUsual);
    const std::string text = "writer " + std::to_string(writer) + " number " + std::to_string(random()) + " " +
                             std::string(length, static_cast<char>('a' + Below(random, 26)));
    return text + "-" + Checksum(text);
}

std::string StampedDocument(const std::string& stamp) {
    std::string xml = "<Cordelbox><Stamp><Item Text=\"" + stamp + "\"/></Stamp><Files>";
    for (int row = 0; row < kRows; ++row) {
        xml += "<Item Text=\"" + RowText(row) + "\"/>";
    }
    return xml + "</Files></Cordelbox>";
}

std::string FaultOf(const std::string& bytes) {
    try {
        const SavedElement document = ReadSavedDocument(bytes);
        const std::vector<Record> stamp = RecordsBelow(document, "Stamp");
        if (stamp.size() != 1 || stamp[0].size() != 1 || !IsStamp(stamp[0][0].second)) {
            return "a stamp that nobody wrote";
        }
        const std::vector<Record> rows = RecordsBelow(document, "Files");
        for (int row = 0; row < kRows; ++row) {
            if (rows.size() != kRows || rows[static_cast<std::size_t>(row)] != Record{{"Text", RowText(row)}}) {
                return "rows that nobody wrote";
            }
        }
        return {};
    } catch (const std::runtime_error& error) {
        return std::string(error.what()) + " in " + std::to_string(bytes.size()) + " bytes";
    }
}

std::string HostileDocument(std::mt19937& random) {
    const auto repeated = [](const std::string& text, std::size_t count) {
        std::string all;
        for (; count > 0; --count) {
            all += text;
        }
        return all;
    };
    const std::string stamped = StampedDocument(NewStamp(random, 0));
    switch (random() % 8) {
    case 0:
        return {};
    case 1:
        return stamped.substr(0, Below(random, stamped.size()));
    case 2:
        return repeated("<a>", 1 + Below(random, 5000));
    case 3:
        return "<!DOCTYPE a [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '" + repeated("&a;", 100) + "'><!ENTITY c '" +
               repeated("&b;", 100) + "'><!ENTITY d '" + repeated("&c;", 100) + "'>]><a>&d;</a>";
    case 4: {
        std::string garbled = stamped;
        garbled[Below(random, garbled.size())] = static_cast<char>(random() % 256);
        return garbled;
    }
    case 5:
        return "<?xml version='1.0' encoding='UTF-16'?>" + stamped;
    case 6:
        return "<a " + repeated("b='c' ", 2) + "/>";
    default: {
        std::string noise(Below(random, 5000), '\0');
        for (char& byte : noise) {
            byte = static_cast<char>(random() % 256);
        }
        return noise;
    }
    }
}
