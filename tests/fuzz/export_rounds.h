// Every export once, on whatever the documents hold.

#pragma once

#include <string>

/// Calls all exports that read. Those that stop the process by contract when a value does not fit its record are called
/// only when every value does.
void CallReaders(const std::string& name, const std::string& value);

/// Calls all exports that write.
void CallWriters(const std::string& name, const std::string& value);
