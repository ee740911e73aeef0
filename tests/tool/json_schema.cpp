// Holds JSON against a JSON schema.

#include "json_schema.h"

#include <algorithm>

namespace {

using nlohmann::json;

bool IsOfType(const json& value, const std::string& type) {
    return type == "object"    ? value.is_object()
           : type == "array"   ? value.is_array()
           : type == "string"  ? value.is_string()
           : type == "integer" ? value.is_number_integer()
           : type == "boolean" ? value.is_boolean()
           : type == "null"    ? value.is_null()
                               : false;
}

std::string TypeMisfit(const json& value, const json& types) {
    const json list = types.is_array() ? types : json::array({types});
    const bool fits = std::any_of(list.begin(), list.end(), [&](const json& type) { return IsOfType(value, type); });
    return fits ? "" : "is no " + list.dump() + ": " + value.dump().substr(0, 200);
}

std::string ObjectMisfit(const json& value, const json& schema, const json& root) {
    for (const json& name : schema.value("required", json::array())) {
        if (!value.contains(name.get<std::string>())) {
            return "lacks " + name.dump();
        }
    }
    const json properties = schema.value("properties", json::object());
    for (const auto& [name, member] : value.items()) {
        const json rule =
            properties.contains(name) ? properties[name] : schema.value("additionalProperties", json(true));
        if (rule == false) {
            return "has a member " + name + " too many";
        }
        const std::string misfit = rule.is_object() ? Misfit(member, rule, root) : "";
        if (!misfit.empty()) {
            return "." + name + " " + misfit;
        }
    }
    return {};
}

} // namespace

std::string Misfit(const json& value, const json& schema, const json& root) {
    if (schema.contains("$ref")) {
        const std::string name = schema["$ref"].get<std::string>().substr(std::string("#/$defs/").size());
        return Misfit(value, root["$defs"].at(name), root);
    }
    if (schema.contains("anyOf")) {
        std::string misfits;
        for (const json& form : schema["anyOf"]) {
            const std::string misfit = Misfit(value, form, root);
            if (misfit.empty()) {
                return {};
            }
            misfits += "\n  or " + misfit;
        }
        return misfits;
    }
    if (schema.contains("enum")) {
        const json& allowed = schema["enum"];
        return std::find(allowed.begin(), allowed.end(), value) != allowed.end() ? "" : "is none of " + allowed.dump();
    }
    std::string misfit = schema.contains("type") ? TypeMisfit(value, schema["type"]) : "";
    if (misfit.empty() && value.is_object()) {
        misfit = ObjectMisfit(value, schema, root);
    }
    if (misfit.empty() && value.is_array() && schema.contains("items")) {
        for (std::size_t i = 0; i < value.size() && misfit.empty(); ++i) {
            const std::string inner = Misfit(value[i], schema["items"], root);
            misfit = inner.empty() ? "" : "[" + std::to_string(i) + "] " + inner;
        }
    }
    return misfit;
}
