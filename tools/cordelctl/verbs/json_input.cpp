// JSON that a verb reads.

#include "verbs/json_input.h"

#include "failure.h"
#include "json.h"
#include "system/system.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

Value ReadJsonInput(const std::string& file, const std::string& what, const std::string& shape) {
    try {
        if (file == "-") {
            std::istringstream input(host::StandardInput());
            return ParseJson(input);
        }
        std::ifstream stream(host::PathOf(file), std::ios::binary);
        if (!stream) {
            throw CFailure(ExitCode::Refused, what + " " + file + " cannot be opened");
        }
        return ParseJson(stream);
    } catch (const CFailure&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw CFailure(ExitCode::Refused, what + " is no JSON that can be read: " + error.what(), shape);
    }
}
