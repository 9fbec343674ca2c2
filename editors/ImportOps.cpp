#include "editors/ImportOps.h"

#include <filesystem>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "exchange/RAVOps.h"
#include "exchange/mdl3DS.h"
#include "preview/VRMLOps.h"
#include "shell/mdlOIFToolAuto.h"

bool importoif(const std::string& path) {
    bool ok = false;
    const OIFFile imported = LoadOIF(path, &ok);
    OIFFile doc = CurrentProject.OIF;
    for (const OIFPart& part : imported.Parts) doc = AddPart(part, doc);
    CurrentProject.OIF = doc;
    TheViews().RefreshPartsList();
    TheViews().loadviews();
    return ok;
}

bool importo(const std::string& path) {
    const std::string handOver = AppPath("tempoif.oif");
    std::error_code ec;
    std::filesystem::remove(handOver, ec);
    ToolPath = OIFToolFolder();
    ToolConvertToOIF(path, handOver);
    if (!FileExists(handOver)) {
        // What a load of the missing hand-over file comes to; the converter's log says why.
        std::string text = InvalidOIFMessage;
        if (!ToolStatusLog.empty()) text += "\r\n\r\n" + ToolStatusLog;
        ShowMessage(text, MessageIcon::Exclamation);
        return false;
    }
    const bool ok = importoif(handOver);
    std::filesystem::remove(handOver, ec);
    return ok;
}

bool import3ds(const std::string& path) {
    if (!Read3DSFile(path)) return false;
    std::optional<OIFPart> part = Make3DSPart({.doProcess = true, .shadeMode = 1, .weldMode = 0, .weldDistance = 0});
    if (!part) return false;
    CurrentProject.OIF = AddPart(*part, CurrentProject.OIF);
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
    return true;
}

bool ImportByExtension(const std::string& path) {
    const std::string extension = FileExtension(path);
    if (extension == "oif") return importoif(path);
    if (extension == "o") return importo(path);
    if (extension == "3ds") return import3ds(path);
    ShowMessage(UnsupportedFileMessage, MessageIcon::Exclamation);
    return false;
}

bool importcsv(const std::string& path) {
    bool ok = false;
    const PolygonPart quads = ReadPointTable(path, &ok);
    if (!ok) return false;
    CurrentProject.OIF = AddPart(MakePartFromQuads(quads), CurrentProject.OIF);
    WriteWirePreview(CurrentProject.OIF.Parts, CurrentProject.Scene, TheViews().Selection());
    return true;
}

bool importcsvtopolygonpart(const std::string& path) {
    bool ok = false;
    const PolygonPart quads = ReadPointTable(path, &ok);
    if (!ok) return false;
    CurrentProject.Polygons = AddPolygonPart(quads, CurrentProject.Polygons);
    WriteQuadPreview(CurrentProject.Polygons.Items, CurrentProject.Scene);
    return true;
}

void importpolygonpart() {
    std::string path;
    do {
        path = TheDesktop().OpenFile(ImportTitle, PolygonImportFilter, "", "");
        if (path.empty()) return;
    } while (!FileExists(path));
    if (FileExtension(path) == "csv") importcsvtopolygonpart(path);
    else ShowMessage(UnsupportedFileMessage, MessageIcon::Exclamation);
}

void importfile() {
    std::string path;
    do {
        path = TheDesktop().OpenFile(ImportTitle, ImportFilter, "", "");
        if (path.empty()) return;
    } while (!FileExists(path));
    ImportByExtension(path);
}
