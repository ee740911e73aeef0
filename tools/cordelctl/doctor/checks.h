// The checks of the doctor, a family in each source. Each adds what it finds.

#pragma once

#include "doctor/finding.h"
#include "document/document.h"
#include "document/document_tree.h"
#include "document/places.h"

#include <string_view>

/// Which file is loaded and which is saved.
void CheckPlace(const DocumentPlace& place, DocumentKind kind, Findings& findings);

/// What is wrong with the bytes of a file that is no document: what the reader said of it, and what that comes from.
void CheckForm(std::string_view bytes, const DocumentError& error, Findings& findings);

/// Another encoding than UTF-8.
void CheckEncoding(std::string_view bytes, Findings& findings);

/// Containers that are missing or repeated, nodes that stop reads, and what holds for every attribute.
void CheckStructure(const DocumentNode& root, DocumentKind kind, Findings& findings);

void CheckFiles(const DocumentNode& root, Findings& findings);
/// The files on this computer: gone, or other than they were recorded.
void CheckLocalFiles(const DocumentNode& root, Findings& findings);

void CheckStorage(const DocumentNode& root, Findings& findings);
void CheckIds(const DocumentNode& root, Findings& findings);
void CheckProfileSlots(const DocumentNode& root, Findings& findings);
void CheckJobs(const DocumentNode& root, Findings& findings);
void CheckPartitions(const DocumentNode& root, Findings& findings);
void CheckSettings(const DocumentNode& root, Findings& findings);
void CheckStrings(const DocumentNode& root, Findings& findings);
