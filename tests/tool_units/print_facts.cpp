// Prints what fonts and profiles say of themselves: one line for each fact, or one that says that there is none.
//
//     print_facts FILE...

#include "facts/file_bytes.h"
#include "facts/font_facts.h"
#include "facts/profile_facts.h"

#include <cstdio>
#include <stdexcept>

namespace {

void PrintFacts(const char* path) {
    const auto print = [path](const char* name, const std::string& fact) {
        std::printf("%s: %s: %s\n", path, name, fact.c_str());
    };
    const std::string file = ReadFileBytes(path);
    constexpr std::size_t kProfileMark = 36;
    if (file.size() >= kProfileMark + 4 && file.compare(kProfileMark, 4, "acsp") == 0) {
        const ProfileFacts facts = ReadProfileFacts(path);
        print("description", facts.description);
        print("colour space", facts.colorSpace);
        print("class", facts.deviceClass);
        print("copyright", facts.copyright);
        print("manufacturer", facts.manufacturer);
        print("model", facts.model);
        return;
    }
    const TrueTypeFacts facts = ReadTrueTypeFacts(path);
    print("family", facts.family);
    print("name", facts.fullName);
    print("style", facts.style);
    print("copyright", facts.copyright);
    print("PostScript name", facts.postScriptName);
    print("symbol set", facts.symbolSet);
}

} // namespace

int main(int argumentCount, char** arguments) {
    for (int i = 1; i < argumentCount; ++i) {
        try {
            PrintFacts(arguments[i]);
        } catch (const std::runtime_error& error) {
            std::printf("%s: %s\n", arguments[i], error.what());
        }
    }
}
