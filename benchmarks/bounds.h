// What the figures are held against.

#pragma once

#include "medians.h"

#include <optional>
#include <vector>

struct Bound {
    enum class Kind {
        AtMost,         // figure / other
        TimesFaster,    // other / figure, at least
        LookupAtMost,   // figure / other, of one lookup each: `figure` has twice the rows
        ExponentAtMost, // of the growth of the time with the number of rows, from `other` to `figure`
    };
    Kind kind;
    double limit;
    std::string figure; // names of workloads
    std::string other;
};

std::vector<Bound> AllBounds();

/// A bound held against the figures of one run.
struct Verdict {
    Bound bound;
    double figure;
    double other;
    double ratio; // what the bound is on
    bool met;
};

/// Empty when the run did not measure what the bound is about.
std::optional<Verdict> Judge(const Bound& bound, const Figures& figures);
