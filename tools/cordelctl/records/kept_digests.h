// The digests of the files that a document lists, kept beside it and never in it.

#pragma once

#include "digests/digest_list.h"
#include "document/places.h"
#include "transaction/session.h"

/// None when none are kept.
DigestList KeptDigests(const DocumentPlace& place);

/// Keeps these beside those that are kept already: in a transaction when it has saved its changes, else at once. Throws
/// CFailure (NotKept).
void KeepDigests(CSession& session, const DocumentPlace& place, const DigestList& digests);

/// Of these files, those whose content is another than the digest that is kept tells, with their present digests.
/// Throws std::runtime_error for a file that cannot be read.
DigestList ChangedDigests(const DocumentPlace& place, const std::vector<std::string>& localPaths);

/// Takes the digests along when a document gets another name.
void MoveDigests(const DocumentPlace& from, const DocumentPlace& to);

/// Forgets the digests of a document that is removed. False when there are none.
bool ForgetDigests(const DocumentPlace& place);
