// What verbs on rows share: which rows are meant, and checked changes of them.

#pragma once

#include "context.h"
#include "document/document.h"
#include "schema/schema.h"
#include "verb.h"

#include <string>
#include <vector>

/// The container of the table with this name, which is in it.
const ContainerSchema& Schema(std::string_view container);

/// The values of --where, each NAME=VALUE. Throws for one of another form.
Filter FilterOf(const std::vector<std::string>& texts);

/// "--where NAME=VALUE", as verbs that pick rows take it.
Option WhereOption(std::string_view help);

/// The rows that the keys, --where and --all of the verb name, each once and in order. Throws when they name none, and
/// for a key that no row has.
std::vector<Row> ChosenRows(const Context& context, CDocument& document, const ContainerSchema& container,
                            std::string_view operand);

/// The name of the option that sets an attribute: "--local-path" for LocalPath.
std::string OptionNameOf(std::string_view attribute);

/// An option for each attribute that a person may change, but for those in `without`.
std::vector<Option> EditOptions(const ContainerSchema& container, const std::vector<std::string_view>& without);

/// The values of those options that were given, checked and in the form in which they are stored.
std::vector<Pair> GivenValues(const Arguments& arguments, const ContainerSchema& container);

/// The value as it is stored: sizes may have a unit. Throws when the attribute takes no such value.
std::string StoredValue(const AttributeSchema& attribute, const std::string& value);

/// Sets values of rows. Throws when a new key is that of another row.
void EditRows(CDocument& document, const ContainerSchema& container, std::vector<Row>& rows,
              const std::vector<Pair>& values);

/// A row as data: every attribute a member.
Value DataOf(const Row& row);

/// The attributes that rows of a container of the schema can have.
std::vector<std::string> AttributeNames(const ContainerSchema& container);

/// The rows as a table with a column for each attribute that one of them has.
Result TableOf(const std::vector<Row>& rows);

/// "1 file", "2 files".
std::string Counted(std::size_t count, const std::string& what);
