// One case run by both engines, step by step.

#pragma once

#include "random_case.h"
#include "store/xml_object.h"
#include "store/xml_query.h"

#include <string>

int32_t RunEngine(Operation operation, CXmlObject& document, CXmlQuery& query);

/// Makes the query of a step out of the one of the step before.
void PrepareQuery(const Step& step, RefQuery& query);
void PrepareQuery(const Step& step, CXmlQuery& query);

/// How the query differs from the reference, in words, or nothing.
std::string QueryDifference(const RefQuery& expected, const CXmlQuery& actual);

/// The first difference between the engine and the reference engine, in words, or nothing. After every step their
/// statuses, their queries and their documents are compared; and after the last one, when a path of a file is given,
/// what the library saves there and loads again.
std::string FindDifference(const Case& wanted, const char* savedTo = nullptr);

/// A part of the case that differs too, in which nothing can be left out any more.
Case Shrink(Case failed, const char* savedTo = nullptr);
