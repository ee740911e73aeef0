#include "catalogue/project_files.h"

#include "nodes/node_writers.h"
#include "store/module_state.h"

#include <cstring>

namespace {

void AddDetail(CXmlQuery& query, const TrueTypeDetail& detail) {
    query.AddPair("FontFamilyName", detail.fontFamilyName);
    query.AddPair("TrueTypeTontName", detail.trueTypeFontName);
    query.AddPair("FontStyle", detail.fontStyle);
    query.AddPair("Copyright", detail.copyright);
    query.AddPair("PostScriptName", detail.postScriptName);
    query.AddPair("SymbolSet", detail.symbolSet);
}

void AddDetail(CXmlQuery& query, const BitmapFontDetail& detail) {
    query.AddPair("BitMapFontName", detail.bitMapFontName);
    query.AddPair("Format", detail.format);
    query.AddPair("Xresolution", detail.xResolution);
    query.AddPair("Yresolution", detail.yResolution);
    query.AddPair("FontType", detail.fontType);
    query.AddPair("SymbolSet", detail.symbolSet);
    query.AddPair("Proportional", detail.proportional);
    query.AddPair("PitchWidth", detail.pitchWidth);
    query.AddPair("Height", detail.height);
    query.AddPair("Style", detail.style);
    query.AddPair("StrokeWeight", detail.strokeWeight);
    query.AddPair("TypeFace", detail.typeFace);
    query.AddPair("EscapeSequence", detail.escapeSequence);
}

/// In the order of the document, which is not the record's.
void AddDetail(CXmlQuery& query, const IcmProfileDetail& detail) {
    query.AddPair("ICMType", detail.icmType);
    query.AddPair("ProfileType", detail.profileType);
    query.AddPair("ColorSpace", detail.colorSpace);
    query.AddPair("Description", detail.description);
    query.AddPair("DeviceClass", detail.deviceClass);
    query.AddPair("Copyright", detail.copyright);
    query.AddPair("Comment", detail.comment);
}

template <class Detail>
void AddDetail(CXmlQuery& query, const void* detail) {
    static const Detail empty{};
    AddDetail(query, detail != nullptr ? *static_cast<const Detail*>(detail) : empty);
}

} // namespace

COutcome AddProjectFile(CXmlObject* document, const FileItem& file) {
    // The first ten attributes are read back by position (GetFiles): their order is part of the format.
    CXmlQuery query("Files", {});
    query.AddPair("FileID", file.FileID);
    query.AddPair("Component", file.Component);
    query.AddPair("ID", file.ID);
    query.AddPair("Type", file.Type);
    query.AddPair("Volume", file.Volume);
    query.AddPair("Path", file.Path);
    query.AddPair("LocalPath", file.LocalPath);
    query.AddPair("Size", file.Size);
    query.AddPair("CreateDate", file.CreateDate);
    query.AddPair("checked", "0");
    if (std::strcmp(file.Type, "5") == 0) {
        AddDetail<TrueTypeDetail>(query, file.detail);
    } else if (std::strcmp(file.Type, "1") == 0) {
        AddDetail<BitmapFontDetail>(query, file.detail);
    } else if (std::strcmp(file.Type, "6") == 0) {
        AddDetail<IcmProfileDetail>(query, file.detail);
    }
    COutcome outcome;
    WriteItem(document, &query, &outcome);
    return outcome;
}

COutcome AddTestFileName(CXmlObject* document, AnsiString element, AnsiString id, AnsiString value) {
    CXmlQuery query(std::move(element), {});
    query.AddPair("ID", std::move(id));
    query.AddPair("Value", std::move(value));
    COutcome outcome;
    WriteItem(document, &query, &outcome);
    return outcome;
}

uint32_t WritePrjFile(const FileItem* file) noexcept {
    if (file != nullptr) {
        AddProjectFile(State().currentDocument, *file);
        SaveCurrentDocument();
    }
    return 1;
}

void WriteTestFileName(AnsiString element, AnsiString id, AnsiString value) noexcept {
    AddTestFileName(State().currentDocument, std::move(element), std::move(id), std::move(value));
    SaveCurrentDocument();
}
