// JSON that a verb reads.

#include "verbs/json_input.h"

#include "failure.h"
#include "json.h"
#include "verbs/reply_input.h"

#include <sstream>
#include <stdexcept>

Value ReadJsonInput(const std::string& file, const std::string& what, const std::string& shape) {
    try {
        std::istringstream input(ReadInput(file, what, kMostJsonBytes));
        return ParseJson(input);
    } catch (const CFailure&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw CFailure(ExitCode::Refused, what + " is no JSON that can be read: " + error.what(), shape);
    }
}
