// A host of the soak: a process with random habits and troubles that works on the documents.

#pragma once

#include <sys/types.h>

#include <chrono>
#include <random>

inline constexpr int kDocuments = 3; // Soak-0.xml and so on
inline constexpr uid_t kUnprivilegedUser = 65534;

/// Works for so long; the exit status of its process. Unprivileged: as a user who may write to the documents and not to
/// their folder.
int RunHost(std::mt19937& random, int writer, std::chrono::milliseconds duration, bool bUnprivileged);

inline constexpr int kStreamTaken = 3; // the exit status when what it printed to a closed stream was taken by a file
