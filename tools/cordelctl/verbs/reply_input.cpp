#include "verbs/reply_input.h"

#include "failure.h"
#include "system/system.h"
#include "transaction/session.h"

#include <algorithm>
#include <filesystem>

void RequireFileName(const std::string& file) {
    if (file.empty()) {
        throw CFailure(ExitCode::Usage, "the name of the file is empty");
    }
}

std::string ReadInput(const std::string& file, const std::string& what, std::uint64_t most) {
    RequireFileName(file);
    try {
        std::string bytes = file == "-" ? host::StandardInput() : host::ReadInput(host::PathOf(file), most);
        StopIfInterrupted();
        if (bytes.size() > most) {
            throw host::TooLarge(host::PathOf(file));
        }
        return bytes;
    } catch (const std::filesystem::filesystem_error& error) {
        if (error.code() == std::errc::file_too_large) {
            throw CFailure(ExitCode::Refused, what + " " + file + " is larger than any can be: more than " +
                                                  std::to_string(most >> 20) + " MiB");
        }
        throw CFailure(ExitCode::Refused, what + " " + file + " cannot be opened: " + error.code().message());
    }
}

bool IsJson(const std::string& bytes) {
    const std::size_t start = bytes.find_first_not_of(" \t\r\n\xEF\xBB\xBF"); // a byte order mark may precede it
    return start != std::string::npos && (bytes[start] == '{' || bytes[start] == '[');
}

PrinterReply ReadReply(const std::string& file, const std::string& what) {
    try {
        return ReadPrinterReply(ReadInput(file, what, kMostReplyBytes));
    } catch (const CReplyError& error) {
        throw CFailure(ExitCode::Refused, "line " + std::to_string(error.Line()) + " of " + what + ": " + error.what(),
                       "nothing of it was recorded; what to ask a printer for: cordelctl storage inquiry");
    }
}

std::vector<std::string> UnlistedNotes(const PrinterReply& reply) {
    std::vector<std::string> notes;
    for (const UnlistedPath& path : reply.unlisted) {
        notes.push_back("the printer did not list " + path.volume + path.path + ": " + path.reason);
    }
    return notes;
}

Value ReportOf(const PrinterReply& reply) {
    if (!reply.volumes) {
        throw CFailure(ExitCode::Refused, reply.hasNoFileSystem ? "the printer says that it has no file system"
                                                                : "the reply has no table of volumes");
    }
    std::vector<std::pair<std::string, Value::List>> devices;
    for (const ReplyVolume& volume : *reply.volumes) {
        const std::string name = volume.location.empty() ? "Storage" : volume.location;
        auto device = std::find_if(devices.begin(), devices.end(), [&](const auto& one) { return one.first == name; });
        if (device == devices.end()) {
            device = devices.insert(devices.end(), {name, {}});
        }
        device->second.push_back(Value::Record{{"volume", volume.volume},
                                               {"totalSpace", volume.totalSpace},
                                               {"freeSpace", volume.freeSpace},
                                               {"location", volume.location},
                                               {"label", volume.label},
                                               {"status", volume.status}});
    }
    Value::List storages;
    for (auto& [name, volumes] : devices) {
        storages.push_back(Value::Record{{"name", name}, {"volumes", std::move(volumes)}});
    }
    return Value::Record{{"storages", std::move(storages)}};
}
