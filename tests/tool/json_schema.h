// Holds JSON against a JSON schema: as much of the language as the tool's schemas use.

#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// What does not fit, with its place; empty when all does. `root` is the whole schema, which references lead into.
std::string Misfit(const nlohmann::json& value, const nlohmann::json& schema, const nlohmann::json& root);
