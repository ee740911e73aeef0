#include "parsers.h"

#include <expat.h>
#include <libxml/parser.h>

bool IsWellFormedForExpat(std::string_view bytes) {
    const XML_Parser parser = XML_ParserCreate("UTF-8");
    const XML_Status status = XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
    XML_ParserFree(parser);
    return status == XML_STATUS_OK;
}

Libxml2Tree ReadByLibxml2(const std::filesystem::path& file) {
    return Libxml2Tree(xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS));
}
