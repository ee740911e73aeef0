// The library's calls to the DOM, watched and answered otherwise. The tables of functions of the DOM's objects lead
// here as soon as the library has got the object; outside a watch every call does what it always does.

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

enum class DomAnswer {
    ItsOwn,
    Failure, // an error, and nothing done
    Nothing, // S_FALSE, and nothing done
    Success, // S_OK, and nothing done
    Itself   // the node that was asked, for a call that gives a node
};

/// While it lives, every call is put to a judge, with its number from 0 on, and noted.
class CDomCallWatch {
public:
    using Judge = std::function<DomAnswer(std::size_t number, const std::string& name)>;
    explicit CDomCallWatch(Judge judge = {});
    ~CDomCallWatch();
    CDomCallWatch(const CDomCallWatch&) = delete;
    CDomCallWatch& operator=(const CDomCallWatch&) = delete;

    const std::vector<std::string>& Calls() const noexcept { return m_calls; }

    /// The answer to the next call, as the judge says.
    DomAnswer Note(const char* name);

private:
    const Judge m_judge;
    std::vector<std::string> m_calls;
};
