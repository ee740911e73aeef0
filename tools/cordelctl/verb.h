// What a verb is: one entry of a table, from which the command line, the help, the manual and the completion are made.
//
// To add a verb: write its function, Result Name(Context&), in a source of verbs/, put an entry with its options into
// that source's table, and add the table to verbs/verbs.cpp when the source is new. Nothing else needs to know it:
// loading, locking, saving, undo, --dry-run, JSON and help come with it.

#pragma once

#include "result.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class Context;

/// What completion offers for the value of an option.
enum class Offer {
    Nothing,
    Files,
    Folders,
    Printers,
    Languages,
    Documents,
    Containers,
    Attributes,
    FileKeys,
    JobKeys,
    PartitionKeys,
    VolumeKeys,
    States,
    Choices
};

/// One option or operand.
struct Option {
    enum class Kind {
        Operand,  // stands by its place
        Operands, // the rest of the line
        Flag,     // --name
        Text,     // --name VALUE
        Texts     // --name VALUE, as often as one likes
    };
    Kind kind;
    std::string_view name;  // "--name", or the operand's name in capitals
    std::string_view value; // what stands for its value in the help; empty for a flag or an operand
    std::string_view help;
    bool required = false;
    Offer offer = Offer::Nothing;
    std::string_view choices = {}; // the values that are allowed, parted by blanks; empty for any
};

/// What a verb does with documents.
enum class Effect {
    None,   // opens none, or looks after them itself
    Reads,  // reads the current document; may be asked for several printers
    Changes // changes the current document: takes part in a transaction, and may be tried with --dry-run
};

struct Verb {
    std::string_view name; // "files add"
    std::string_view summary;
    Effect effect;
    Result (*run)(Context& context);
    std::vector<Option> options = {};
    std::string_view details = {}; // more about it, for the help of this verb and the manual; lines of at most 78 bytes
    std::string_view examples = {}; // lines "cordelctl ..." with a comment each
    bool hidden = false;
    bool tries = false; // looks after documents itself, and knows --dry-run
};

/// The options that stand for every verb.
struct Globals {
    std::vector<std::string> printers; // file names of the printer documents to work on; none for the main document
    bool allPrinters = false;
    std::string language = "English"; // folder of the strings document
    bool json = false;
    bool quiet = false;
    bool dryRun = false;
    bool zero = false;   // part records by a zero byte
    std::string columns; // which columns, parted by commas
    std::string format;  // a line for each row, with {COLUMN}
    int wait = 10;       // seconds for which another cordelctl is waited for
};

/// The options and operands of a verb as they were given. Texts are UTF-8.
class Arguments {
public:
    bool Has(std::string_view name) const { return m_values.count(name) != 0; }

    /// The value; empty when it was not given.
    std::string Text(std::string_view name) const {
        const auto found = m_values.find(name);
        return found != m_values.end() && !found->second.empty() ? found->second.front() : std::string();
    }

    /// All values, of Texts and Operands.
    std::vector<std::string> Texts(std::string_view name) const {
        const auto found = m_values.find(name);
        return found != m_values.end() ? found->second : std::vector<std::string>();
    }

    void Set(std::string_view name, std::vector<std::string> values) {
        m_values.insert_or_assign(std::string(name), std::move(values));
    }

private:
    std::map<std::string, std::vector<std::string>, std::less<>> m_values;
};

/// A command line that was understood.
struct Command {
    const Verb* verb = nullptr; // null when the help or the version was asked for, and printed by `text`
    Arguments arguments;
    Globals globals;
    std::string text;
};
