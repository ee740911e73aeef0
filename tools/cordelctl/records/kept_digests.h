// The digests of the files that a document lists, kept beside it and never in it.

#pragma once

#include "digests/digest_list.h"
#include "document/places.h"

/// None when none are kept.
DigestList KeptDigests(const DocumentPlace& place);

/// Keeps these beside those that are kept already. Throws CFailure (NotKept).
void KeepDigests(const DocumentPlace& place, const DigestList& digests);

/// Brings digests that are kept of these files up to date, and returns the files whose content was another; with
/// `dryRun` nothing is written. Throws CFailure (NotKept), and std::runtime_error for a file that cannot be read.
DigestList RenewKeptDigests(const DocumentPlace& place, const std::vector<std::string>& localPaths, bool dryRun);
