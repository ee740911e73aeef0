// How a command ends: the exit statuses, and the one exception that carries a reason and what to do about it.

#pragma once

#include <stdexcept>
#include <string>

enum class ExitCode : int {
    Done = 0,
    No = 1,         // the answer is no: two files have one ID, the project does not fit
    Usage = 2,      // the command line was not understood
    Missing = 3,    // what was asked for, or was to be changed, is not in the document
    NotKept = 4,    // the change could not be saved
    NoDocument = 5, // a document could not be opened
    Refused = 6,    // a file or a value cannot be taken
    NoOutput = 7,   // standard output could not be written
    Interrupted = 130
};

/// Ends the command. `advice` says what to do, and may be empty. All texts are UTF-8.
class CFailure : public std::runtime_error {
public:
    CFailure(ExitCode code, const std::string& reason, std::string advice = {})
        : std::runtime_error(reason), m_eCode(code), m_strAdvice(std::move(advice)) {}
    ExitCode Code() const noexcept { return m_eCode; }
    const std::string& Advice() const noexcept { return m_strAdvice; }

private:
    ExitCode m_eCode;
    std::string m_strAdvice;
};
