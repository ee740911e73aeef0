// Files that are taken into the project one by one.

#include "verbs/intake.h"

#include "verbs/rows.h"

#include <utility>

CIntake::CIntake(const Context& context, std::string key, std::string done)
    : m_strKey(std::move(key)), m_strDone(std::move(done)), m_bKeepsGoing(context.Has("--keep-going")) {}

void CIntake::Took(Value row, const std::vector<std::string>& said, const std::vector<std::string>& notes) {
    ++m_nTaken;
    m_rows.push_back(std::move(row));
    m_said.insert(m_said.end(), said.begin(), said.end());
    m_notesOnTaken.insert(m_notesOnTaken.end(), notes.begin(), notes.end());
}

Value& CIntake::Refused(const std::string& name, const std::string& reason, const std::string& advice) {
    ++m_nRefused;
    m_notesOnRefused.push_back(name + " was not " + m_strDone + ": " + reason + (advice.empty() ? "" : "; " + advice));
    return m_rows.emplace_back(Value::Record{{m_strKey, name}, {m_strDone, false}, {"reason", reason}});
}

Result CIntake::Finish() {
    Result result;
    if (m_nRefused > 0) {
        result.status = ExitCode::Refused;
        result.partial = m_bKeepsGoing;
    }
    if (m_nRefused > 0 && !m_bKeepsGoing && m_nTaken > 0) {
        for (Value& row : m_rows) {
            if (row[m_strDone].IsTrue()) {
                row = Value::Record{{m_strKey, row[m_strKey]}, {m_strDone, false}, {"reason", "others were refused"}};
            }
        }
        m_notesOnRefused.push_back("nothing was changed, since " + std::to_string(m_nRefused) + " of " +
                                   Counted(m_rows.size(), "file") + " cannot be " + m_strDone +
                                   "; to take the others: --keep-going");
        m_nTaken = 0;
    } else {
        result.said = std::move(m_said);
        result.notes = std::move(m_notesOnTaken);
    }
    result.notes.insert(result.notes.end(), m_notesOnRefused.begin(), m_notesOnRefused.end());
    result.said.push_back(Counted(m_nTaken, "file") + " " + m_strDone +
                          (m_nRefused == 0 ? "" : ", " + std::to_string(m_nRefused) + " refused") +
                          (m_nPassedOver == 0 ? "" : ", " + std::to_string(m_nPassedOver) + " passed over"));
    result.data = std::move(m_rows);
    return result;
}

Option KeepGoingOption() {
    return {Option::Kind::Flag, "--keep-going", "",
            "Take the others when some are refused; without, nothing is changed then"};
}
