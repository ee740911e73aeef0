// What the tags of a colour profile hold: whether those are there that its class and colour space require, and whether
// each is what it has to be.

#pragma once

#include "file_finding.h"
#include "profile_tags.h"

void CheckRequiredTags(const CProfileTags& profile, FileFindings& findings);

/// The white point, curves, colorants and tables.
void CheckTagContent(const CProfileTags& profile, FileFindings& findings);
