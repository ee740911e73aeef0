// Calls that a test watches and decides on.

#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

/// While it lives, every call is put to a judge, with its number from 0 on, and noted. One watch lives at a time.
template <class Call, class Fate>
class CCallWatch {
public:
    using Judge = std::function<Fate(std::size_t number, const Call& call)>;
    explicit CCallWatch(Judge judge = {}) : m_judge(std::move(judge)) { s_pWatch = this; }
    ~CCallWatch() { s_pWatch = nullptr; }
    CCallWatch(const CCallWatch&) = delete;
    CCallWatch& operator=(const CCallWatch&) = delete;

    const std::vector<Call>& Calls() const noexcept { return m_calls; }

    /// Whether the next call counts: one does that is made during a watch, but not by its judge.
    static bool IsOn() noexcept { return s_pWatch != nullptr && !s_pWatch->m_bInside; }

    /// The fate of the next call, as the judge says; an ordinary one when the call does not count. The call is put
    /// together from its parts only where it counts, since a test may allow it no memory.
    template <class... Parts>
    static Fate FateOf(Parts&&... parts) {
        return IsOn() ? s_pWatch->Ask(Call{std::forward<Parts>(parts)...}) : Fate{};
    }

private:
    Fate Ask(Call call) {
        m_calls.push_back(std::move(call));
        if (!m_judge) {
            return {};
        }
        m_bInside = true;
        const Fate fate = m_judge(m_calls.size() - 1, m_calls.back());
        m_bInside = false;
        return fate;
    }

    static inline CCallWatch* s_pWatch = nullptr;

    const Judge m_judge;
    std::vector<Call> m_calls;
    bool m_bInside = false;
};
