// The encoding of a document, by its name.

#include "doctor/document_encoding.h"

#include "platform/document_encoding.h"

std::string EncodingOf(std::string_view bytes) {
    const DocumentEncoding encoding = FindEncoding(bytes.substr(0, kDeclarationBytes));
    switch (encoding.m_form) {
    case EncodingForm::Utf16LittleEndian:
        return "UTF-16LE";
    case EncodingForm::Utf16BigEndian:
        return "UTF-16BE";
    default:
        return encoding.m_strDeclared.empty() || encoding.m_form == EncodingForm::MarkedUtf8 ? "UTF-8"
                                                                                             : encoding.m_strDeclared;
    }
}
