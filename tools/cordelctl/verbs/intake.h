// Files that are taken into the project one by one, of which some may be refused: then none is taken, unless the others
// are wanted all the same.

#pragma once

#include "context.h"
#include "result.h"
#include "verb.h"

#include <string>
#include <vector>

class CIntake {
public:
    /// `key` and `done` are the members of a row that name the file and say whether it was taken: "file", "added".
    CIntake(const Context& context, std::string key, std::string done);

    void Took(Value row, const std::vector<std::string>& said, const std::vector<std::string>& notes = {});
    /// Returns its row, for more to be told in it.
    Value& Refused(const std::string& name, const std::string& reason, const std::string& advice = {});
    void PassedOver() noexcept { ++m_nPassedOver; }

    /// A row for each that was taken or refused.
    Result Finish();

private:
    const std::string m_strKey;
    const std::string m_strDone;
    const bool m_bKeepsGoing;
    Value::List m_rows;
    std::vector<std::string> m_said;
    std::vector<std::string> m_notesOnTaken;
    std::vector<std::string> m_notesOnRefused;
    std::size_t m_nTaken = 0;
    std::size_t m_nRefused = 0;
    std::size_t m_nPassedOver = 0;
};

/// "--keep-going", as verbs take it that fill an intake.
Option KeepGoingOption();
