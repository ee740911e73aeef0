// Computes gamuts with Little CMS.
//
// The gamut of n channels is the picture of an n-dimensional cube in Lab. What can lie on its border are the pictures
// of the cube's two-dimensional faces; each is drawn as a grid, and along every hue the farthest point of all grids
// counts. The lines of a grid are straight between its points, so only they need looking at.

#include "page/gamut.h"

#include "facts/lcms_handles.h"

#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <type_traits>

namespace {

constexpr int kHues = 360;
constexpr int kGridSteps = 24;
constexpr cmsUInt32Number kMostChannels = 8;

double Cross(const AbPoint& left, const AbPoint& right) noexcept { return left.a * right.b - left.b * right.a; }

/// The farthest points so far, by hue.
class COutline {
public:
    /// Takes the line between two points into account.
    void AddLine(const AbPoint& from, const AbPoint& to) noexcept {
        const double turn = Cross(from, to);
        const AbPoint& first = turn >= 0 ? from : to; // counter-clockwise around the neutral point
        const AbPoint& last = turn >= 0 ? to : from;
        const AbPoint along{last.a - first.a, last.b - first.b};
        const int start = static_cast<int>(std::ceil(Hue(first)));
        int end = static_cast<int>(std::floor(Hue(last)));
        if (end < start - 1) {
            end += kHues;
        }
        for (int hue = start; hue <= end; ++hue) {
            const AbPoint direction = Direction(hue);
            const double slope = Cross(direction, along);
            if (slope > 0) {
                double& radius = m_radii[static_cast<std::size_t>(hue % kHues)];
                radius = std::max(radius, std::abs(turn) / slope);
            }
        }
    }

    Gamut Result() const {
        Gamut gamut;
        for (int hue = 0; hue < kHues; ++hue) {
            const double radius = m_radii[static_cast<std::size_t>(hue)];
            gamut.outline.push_back({radius * Direction(hue).a, radius * Direction(hue).b});
        }
        for (std::size_t index = 0; index < gamut.outline.size(); ++index) {
            gamut.area += Cross(gamut.outline[index], gamut.outline[(index + 1) % gamut.outline.size()]) / 2;
        }
        return gamut;
    }

private:
    /// In degrees, from 0 up to kHues.
    static double Hue(const AbPoint& point) noexcept {
        const double degrees = std::atan2(point.b, point.a) * 180 / std::numbers::pi;
        return degrees < 0 ? degrees + kHues : degrees;
    }

    static AbPoint Direction(int hue) noexcept {
        const double angle = hue * std::numbers::pi / 180;
        return {std::cos(angle), std::sin(angle)};
    }

    std::vector<double> m_radii = std::vector<double>(kHues, 0.0);
};

/// From device values between 0 and 1 to Lab.
class CDevice {
public:
    explicit CDevice(cmsHPROFILE profile) : m_nChannels(cmsChannelsOf(cmsGetColorSpace(profile))) {
        const cmsColorSpaceSignature space = cmsGetColorSpace(profile);
        if (space == cmsSigLabData || space == cmsSigXYZData || space == cmsSigLuvData || space == cmsSigYxyData) {
            throw std::runtime_error("it describes a colour space of no device");
        }
        const cmsProfileClassSignature kind = cmsGetDeviceClass(profile);
        if (kind == cmsSigLinkClass || kind == cmsSigAbstractClass || kind == cmsSigNamedColorClass) {
            throw std::runtime_error("it leads from colours to colours and describes no device of its own");
        }
        if (m_nChannels < 2) {
            throw std::runtime_error("it knows greys only");
        }
        if (m_nChannels > kMostChannels) {
            throw std::runtime_error("it has more channels than can be drawn");
        }
        const bool bInk = space == cmsSigCmykData || space == cmsSigCmyData || m_nChannels > 4;
        m_full = bInk ? 100.0 : 1.0; // how the library writes a full channel
        const ProfileHandle lab(cmsCreateLab4Profile(nullptr));
        const auto encoding = static_cast<cmsUInt32Number>(
            FLOAT_SH(1) | COLORSPACE_SH(static_cast<cmsUInt32Number>(_cmsLCMScolorSpace(space))) |
            CHANNELS_SH(m_nChannels) | BYTES_SH(0));
        m_transform.reset(cmsCreateTransform(profile, encoding, lab.get(), TYPE_Lab_DBL, INTENT_RELATIVE_COLORIMETRIC,
                                             cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
        if (m_transform == nullptr) {
            throw std::runtime_error("no colours can be computed with it");
        }
    }

    cmsUInt32Number Channels() const noexcept { return m_nChannels; }

    AbPoint Colour(std::vector<double> values) const {
        for (double& value : values) {
            value *= m_full;
        }
        cmsCIELab lab{};
        cmsDoTransform(m_transform.get(), values.data(), &lab, 1);
        if (!std::isfinite(lab.a) || !std::isfinite(lab.b)) {
            throw std::runtime_error("the colours that it describes are no numbers");
        }
        return {lab.a, lab.b};
    }

private:
    cmsUInt32Number m_nChannels;
    double m_full = 1;
    TransformHandle m_transform;
};

/// One face of the cube: two channels vary, the others are empty or full as the bits of `corner` say.
void AddFace(const CDevice& device, cmsUInt32Number first, cmsUInt32Number second, unsigned corner, COutline& outline) {
    std::vector<double> values(device.Channels());
    for (cmsUInt32Number channel = 0; channel < device.Channels(); ++channel) {
        values[channel] = (corner >> channel) & 1U ? 1.0 : 0.0;
    }
    std::vector<AbPoint> before;
    for (int row = 0; row <= kGridSteps; ++row) {
        std::vector<AbPoint> points;
        for (int column = 0; column <= kGridSteps; ++column) {
            values[first] = static_cast<double>(row) / kGridSteps;
            values[second] = static_cast<double>(column) / kGridSteps;
            points.push_back(device.Colour(values));
        }
        for (std::size_t column = 0; column < points.size(); ++column) {
            if (column > 0) {
                outline.AddLine(points[column - 1], points[column]);
            }
            if (!before.empty()) {
                outline.AddLine(before[column], points[column]);
            }
        }
        before = std::move(points);
    }
}

Gamut GamutOf(cmsHPROFILE profile) {
    const CDevice device(profile);
    COutline outline;
    for (cmsUInt32Number first = 0; first < device.Channels(); ++first) {
        for (cmsUInt32Number second = first + 1; second < device.Channels(); ++second) {
            const unsigned varying = (1U << first) | (1U << second);
            for (unsigned corner = 0; corner < (1U << device.Channels()); ++corner) {
                if ((corner & varying) == 0) {
                    AddFace(device, first, second, corner, outline);
                }
            }
        }
    }
    return outline.Result();
}

} // namespace

Gamut ReadGamut(const std::filesystem::path& profile) {
    const ProfileHandle handle(cmsOpenProfileFromFile(profile.string().c_str(), "r"));
    if (handle == nullptr) {
        throw std::runtime_error("it is damaged, or is no ICC profile");
    }
    return GamutOf(handle.get());
}

Gamut StandardGamut() {
    const ProfileHandle handle(cmsCreate_sRGBProfile());
    if (handle == nullptr) {
        throw std::runtime_error("there is no memory for a colour profile");
    }
    return GamutOf(handle.get());
}
