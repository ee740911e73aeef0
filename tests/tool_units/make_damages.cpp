// Writes the damaged files into a folder, and the list of causes that have to be named to standard output.
//
//     make_damages FOLDER

#include "damages.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: make_damages FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const Damage& damage : MakeDamages()) {
        const char* const extension = damage.kind == FileKind::Font      ? ".ttf"
                                      : damage.kind == FileKind::Profile ? ".icc"
                                                                         : ".sfp";
        const std::string name = std::to_string(1000 + ++number).substr(1) + extension;
        std::ofstream(folder / name, std::ios::binary) << damage.bytes;
        std::printf("%s\t%s\t%s\n", name.c_str(), TextOf(damage.cause).code, damage.name.c_str());
    }
}
