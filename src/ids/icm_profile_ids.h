// The slots for ICM profiles.
//
// The slots of a kind are the characters of one text, the first for slot 1: "0" and "1" may be used, "2" is in use.

#pragma once

#include "cordelbox.h"

#include <optional>
#include <string>

/// The slots of a kind of profiles, those of the listed profiles marked as in use. None for a kind that does not exist.
std::optional<std::string> ReadIcmSlots(CXmlObject* document, uint32_t kind);

/// The lowest slot that may be used, from 1; 0 when there is none.
int32_t FindFreeSlot(const std::string& slots);
