// What Little CMS hands out, given back when it is left.

#pragma once

#include <lcms2.h>

#include <memory>

struct CloseProfile {
    void operator()(void* profile) const noexcept { cmsCloseProfile(profile); }
};
using ProfileHandle = std::unique_ptr<void, CloseProfile>;

struct DeleteTransform {
    void operator()(void* transform) const noexcept { cmsDeleteTransform(transform); }
};
using TransformHandle = std::unique_ptr<void, DeleteTransform>;
