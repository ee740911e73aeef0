#include "printer_reply.h"

#include "reply_lines.h"
#include "reply_words.h"

#include <algorithm>
#include <map>
#include <utility>

namespace {

/// What the numbers of FILEERROR mean.
std::string FileErrorText(std::string_view number) {
    static const std::map<std::string_view, const char*> kTexts{
        {"0", "a general failure"},         {"1", "the volume is not there"}, {"3", "it is not there"},
        {"7", "the name is not allowed"},   {"9", "it is a folder, no file"}, {"10", "it is a file, no folder"},
        {"15", "the volume is unreadable"}, {"16", "the volume has no label"}};
    const auto found = kTexts.find(number);
    return found != kTexts.end() ? found->second : "file error " + std::string(number);
}

struct PrinterPath {
    std::string volume;
    std::string path;
};

/// "0:\fonts\a.ttf" and its like.
PrinterPath TakeApart(std::string name) {
    std::replace(name.begin(), name.end(), '\\', '/');
    PrinterPath place;
    const std::size_t colon = name.find(':');
    if (colon != std::string::npos) {
        place.volume = name.substr(0, colon + 1);
        name.erase(0, colon + 1);
    }
    for (std::size_t start = 0; start < name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        if (end > start) {
            place.path += (place.path.empty() ? "" : "/") + name.substr(start, end - start);
        }
        start = end + 1;
    }
    return place;
}

bool IsQuestionMark(std::string_view text) { return text == "?" || text == "\"?\""; }

class CReplyReader {
public:
    PrinterReply Read(std::string_view capture) {
        const auto lines = SplitReply(capture);
        for (const ReplyLine& line : lines) {
            if (!line.text.empty()) {
                m_nLine = line.number;
                ReadLine(line.text);
            }
            if (line.endsReply) {
                EndBlock();
            }
        }
        EndBlock();
        if (!m_bAnswered) {
            throw CReplyError(m_nLine, "there is neither a table of volumes nor a directory listing in it");
        }
        return std::move(m_reply);
    }

private:
    enum class Block { None, Volumes, Listing, Other };

    void ReadLine(std::string_view line) {
        std::string_view text = Trimmed(line);
        if (SkipWord(text, "@PJL")) {
            EndBlock();
            ReadCommand(text);
            return;
        }
        if (CVolumeTable::IsHeading(text) && m_eBlock != Block::Other) {
            BeginTable(line);
            return;
        }
        switch (m_eBlock) {
        case Block::Volumes:
            ReadVolumeLine(line);
            break;
        case Block::Listing:
            ReadListingLine(text);
            break;
        case Block::Other:
            break;
        case Block::None:
            Refuse("\"" + std::string(text) + "\" belongs to no reply that is known");
        }
    }

    void ReadCommand(std::string_view command) {
        std::string_view words = command;
        const auto is = [&](std::string_view first, std::string_view second = {}) {
            words = command;
            return SkipWord(words, first) && (second.empty() || SkipWord(words, second));
        };
        if (command.empty()) {
            return;
        }
        if (is("INFO", "FILESYS")) {
            m_eBlock = Block::Volumes;
            ReadCount(words);
        } else if (is("FSDIRLIST") || is("FSQUERY")) {
            m_eBlock = Block::Listing;
            m_listed = PathOf(words);
            if (const auto error = ParameterOf(words, "FILEERROR")) {
                AddUnlisted(FileErrorText(*error));
            } else if (ParameterOf(words, "TYPE")) {
                AddEntry(m_listed.path, words);
            }
        } else {
            m_eBlock = Block::Other;
        }
    }

    PrinterPath PathOf(std::string_view parameters) const {
        const auto name = ParameterOf(parameters, "NAME");
        if (!name || name->empty()) {
            Refuse("it does not say of what: there is no NAME");
        }
        PrinterPath place = TakeApart(*name);
        if (place.volume.empty()) {
            Refuse("the path \"" + *name + "\" names no volume");
        }
        return place;
    }

    /// "[3 TABLE]": how many lines the table has, that of the headings included.
    void ReadCount(std::string_view text) {
        if (text.empty()) {
            return;
        }
        std::string_view inside = text;
        if (inside.front() != '[' || inside.back() != ']') {
            Refuse("\"" + std::string(text) + "\" is no part of a table of volumes");
        }
        inside = Trimmed(inside.substr(1, inside.size() - 2));
        const std::size_t end = std::min(inside.find(' '), inside.size());
        m_announced = NumberOf(inside.substr(0, end));
        inside = Trimmed(inside.substr(end));
        if (!m_announced || !SkipWord(inside, "TABLE") || !inside.empty()) {
            Refuse("\"" + std::string(text) + "\" is no part of a table of volumes");
        }
    }

    void BeginTable(std::string_view heading) {
        if (m_table) {
            EndTable();
        }
        m_eBlock = Block::Volumes;
        m_table.emplace(heading);
        m_rows.clear();
    }

    void ReadVolumeLine(std::string_view line) {
        const std::string_view text = Trimmed(line);
        if (text.front() == '[') {
            ReadCount(text);
        } else if (!m_table && IsQuestionMark(text)) {
            m_reply.hasNoFileSystem = true;
            m_reply.volumes.reset();
            m_bAnswered = true;
        } else if (!m_table) {
            Refuse("\"" + std::string(text) + "\" stands where the headings of the table of volumes should");
        } else {
            AddVolume(line);
        }
    }

    void AddVolume(std::string_view line) {
        try {
            m_rows.push_back(m_table->Row(line));
        } catch (const std::runtime_error& error) {
            Refuse(error.what());
        }
        const std::string& name = m_rows.back().volume;
        if (std::any_of(m_rows.begin(), m_rows.end() - 1,
                        [&](const ReplyVolume& other) { return other.volume == name; })) {
            Refuse("the volume " + name + " stands in the table twice");
        }
    }

    void ReadListingLine(std::string_view text) {
        if (!text.empty() && text.front() == '~') { // a continued line, as references print it
            text = Trimmed(text.substr(1));
        }
        if (IsQuestionMark(text)) {
            AddUnlisted("the printer does not know");
            return;
        }
        const std::size_t type = text.rfind(" TYPE=");
        if (type == std::string_view::npos) {
            if (const auto error = ParameterOf(text, "FILEERROR")) {
                AddUnlisted(FileErrorText(*error));
                return;
            }
            if (!ParameterOf(text, "TYPE")) {
                Refuse("\"" + std::string(text) + "\" is no line of a directory listing");
            }
            AddEntry(m_listed.path, text); // of FSQUERY
            return;
        }
        const std::string name(Trimmed(text.substr(0, type)));
        if (name == "." || name == "..") {
            m_bAnswered = true;
            return;
        }
        if (name.empty() || name.find_first_of("\\/:\t") != std::string::npos) {
            Refuse("\"" + name + "\" is no name of a file");
        }
        AddEntry(m_listed.path + (m_listed.path.empty() ? "" : "/") + name, text.substr(type));
    }

    void AddEntry(const std::string& path, std::string_view parameters) {
        const auto type = ParameterOf(parameters, "TYPE");
        const auto size = ParameterOf(parameters, "SIZE");
        ReplyEntry entry{m_listed.volume, path, type == "DIR", 0};
        if (!entry.isFolder) {
            const auto number = size ? NumberOf(*size) : std::nullopt;
            if (type != "FILE") {
                Refuse("\"" + type.value_or("") + "\" is neither FILE nor DIR");
            }
            if (!number) {
                Refuse("the size of " + path + " is no number of bytes");
            }
            entry.size = *number;
        }
        m_bAnswered = true;
        const auto [place, isNew] = m_places.try_emplace({entry.volume, entry.path}, m_reply.entries.size());
        if (isNew) {
            m_reply.entries.push_back(std::move(entry));
        } else {
            m_reply.entries[place->second] = std::move(entry);
        }
    }

    void AddUnlisted(const std::string& reason) {
        m_bAnswered = true;
        m_reply.unlisted.push_back({m_listed.volume, m_listed.path, reason});
    }

    void EndTable() {
        // The line of the headings counts, though not with every device.
        const auto rows = static_cast<std::int64_t>(m_rows.size());
        if (m_announced && *m_announced != rows && *m_announced != rows + 1) {
            Refuse("the table of volumes has " + std::to_string(rows) + " of the " +
                   std::to_string(std::max<std::int64_t>(*m_announced - 1, 0)) + " volumes that it announces");
        }
        m_reply.volumes = std::move(m_rows);
        m_reply.hasNoFileSystem = false;
        m_bAnswered = true;
        m_table.reset();
        m_rows.clear();
        m_announced.reset();
    }

    void EndBlock() {
        if (m_table) {
            EndTable();
        } else if (m_announced) {
            Refuse("the table of volumes is missing");
        }
        m_eBlock = Block::None;
    }

    [[noreturn]] void Refuse(const std::string& reason) const { throw CReplyError(m_nLine, reason); }

    PrinterReply m_reply;
    bool m_bAnswered = false;
    unsigned int m_nLine = 1;
    Block m_eBlock = Block::None;
    std::optional<CVolumeTable> m_table;
    std::optional<std::int64_t> m_announced;
    std::vector<ReplyVolume> m_rows;
    PrinterPath m_listed;
    std::map<std::pair<std::string, std::string>, std::size_t> m_places; // of the entries
};

} // namespace

PrinterReply ReadPrinterReply(std::string_view capture) { return CReplyReader().Read(capture); }
