// The colours that a device can make, as its profile describes them, seen along the lightness axis: the outline of the
// gamut on the plane of a* and b*.

#pragma once

#include <filesystem>
#include <vector>

struct AbPoint {
    double a;
    double b;
};

struct Gamut {
    std::vector<AbPoint> outline; // around the neutral point, a point for each degree of hue
    double area = 0;              // that the outline encloses
};

/// Throws std::runtime_error, whose text says why there is no gamut to show: a damaged file, a profile of one channel,
/// of more channels than printers have, or of no device at all.
Gamut ReadGamut(const std::filesystem::path& profile);

/// The gamut of sRGB, to compare with.
Gamut StandardGamut();
