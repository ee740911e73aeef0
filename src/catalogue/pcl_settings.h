// The PCL filter settings.

#pragma once

#include "cordelbox.h"

inline constexpr const char* kPclSettingsElement = "PCLCurrentSetting";
inline constexpr int kPclSettingCount = 28;

/// Their names, in the order of the host's slots, which is part of the interface.
extern const char* const kPclSettings[kPclSettingCount];

/// Reads all settings, each as a lenient number; 0 for one that is not there.
void ReadPclSettings(CXmlObject* document, int32_t* settings);
