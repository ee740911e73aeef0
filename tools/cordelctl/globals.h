// The options that stand for every verb.

#pragma once

#include <string>

struct Globals {
    std::string printer;              // file name of the printer document to work on; empty for the main document
    std::string language = "English"; // folder of the strings document
    bool json = false;                // print data as JSON
};
