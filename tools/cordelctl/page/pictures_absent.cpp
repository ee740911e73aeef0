// Where no reader of outlines and no colour management is at hand, the page says so in place of pictures.

#include "page/gamut.h"
#include "page/specimen.h"

#include <stdexcept>

Gamut ReadGamut(const std::filesystem::path&) {
    throw std::runtime_error("this program draws the colours of profiles on Linux only");
}

Gamut StandardGamut() { return {}; }

Specimen DrawSpecimen(const std::filesystem::path&, const std::string&) {
    throw std::runtime_error("this program draws specimens on Linux only");
}
