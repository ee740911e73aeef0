// What the doctor mends by itself: findings that have one right answer.

#pragma once

#include "doctor/finding.h"
#include "document/document.h"

bool IsMendable(const Finding& finding);

/// Mends what can be of these findings.
void MendDocument(CDocument& document, const Findings& findings);
