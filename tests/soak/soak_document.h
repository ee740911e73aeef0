// Documents that show whether they are whole, and that somebody wrote them: a stamp with a checksum, and rows that
// nobody changes.

#pragma once

#include "file_bytes.h"

#include <filesystem>
#include <random>
#include <string>

/// A text that no accident makes; now and then one so long that the document is written in several pieces.
std::string NewStamp(std::mt19937& random, int writer);

std::string StampedDocument(const std::string& stamp);

/// What is wrong with the bytes of such a document; empty when nothing is.
std::string FaultOf(const std::string& bytes);

/// Documents that are malformed, endless, deep, or not what they declare.
std::string HostileDocument(std::mt19937& random);

inline std::size_t Below(std::mt19937& random, std::size_t limit) { return random() % limit; }
inline bool OneIn(std::mt19937& random, unsigned count) { return random() % count == 0; }
