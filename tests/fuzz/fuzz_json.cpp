// Arbitrary JSON: each is either refused with a reason, or read into values that are written as JSON and read back as
// the same.

#include "fuzz_failure.h"
#include "json.h"

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

Value Parsed(const std::string& json) {
    std::istringstream stream(json);
    return ParseJson(stream);
}

std::size_t Depth(const Value& value) {
    std::size_t below = 0;
    for (const Value& item : value.Items()) {
        below = std::max(below, Depth(item));
    }
    for (const auto& [name, member] : value.Members()) {
        below = std::max(below, Depth(member));
    }
    return value.IsList() || value.IsRecord() ? below + 1 : below;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Value value;
    try {
        value = Parsed(std::string(reinterpret_cast<const char*>(bytes), size));
    } catch (const std::runtime_error& error) {
        Require(*error.what() != '\0', "what is refused has a reason");
        return 0;
    }
    Require(Depth(value) <= kDeepestJson, "nothing is deeper than it may be");
    const std::string written = FormatJson(value);
    Require(FormatJson(Parsed(written)) == written, "what was written is read back");
    return 0;
}
