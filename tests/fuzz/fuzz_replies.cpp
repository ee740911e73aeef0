// Arbitrary captures of what a printer replied: each is either refused, with a line that it has, or read into what a
// document can hold.

#include "fuzz_failure.h"
#include "replies/printer_reply.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view capture(reinterpret_cast<const char*>(bytes), size);
    try {
        const PrinterReply reply = ReadPrinterReply(capture);
        for (const ReplyVolume& volume : reply.volumes.value_or(std::vector<ReplyVolume>())) {
            Require(!volume.volume.empty(), "a volume has a name");
            for (const std::string* const field : {&volume.volume, &volume.totalSpace, &volume.freeSpace,
                                                   &volume.location, &volume.label, &volume.status}) {
                Require(field->size() <= 255, "a field fits the document");
            }
        }
        for (const ReplyEntry& entry : reply.entries) {
            Require(!entry.volume.empty() && entry.size >= 0, "an entry has a volume and a size");
        }
    } catch (const CReplyError& error) {
        const auto lineEnds =
            std::count_if(capture.begin(), capture.end(), [](char c) { return c == '\n' || c == '\r'; });
        Require(error.Line() >= 1 && error.Line() <= lineEnds + 1, "the line is one of the capture");
    }
    return 0;
}
