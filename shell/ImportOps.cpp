#include "shell/ImportOps.h"

#include <filesystem>

#include "core/Desktop.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "shell/fileOps.h"
#include "shell/mdlOIFToolAuto.h"

int importoif(const std::string& path) {
    const OIFFile imported = LoadOIF(path);
    OIFFile doc = CurrentProject.OIF;
    for (const OIFPart& part : imported.Parts) doc = AddPart(part, doc);
    CurrentProject.OIF = doc;
    TheViews().RefreshPartsList();
    TheViews().loadviews();
    return static_cast<int>(imported.Parts.size());
}

int importo(const std::string& path) {
    const std::string handOver = AppPath("tempoif.oif");
    std::error_code ec;
    std::filesystem::remove(handOver, ec);
    ToolPath = ReadRegistry(OIFToolRegistryValue);
    ToolConvertToOIF(path, handOver);
    if (!FileExists(handOver)) {
        // What a load of the missing hand-over file comes to; the converter's log says why.
        std::string text = InvalidOIFMessage;
        if (!ToolStatusLog.empty()) text += "\r\n\r\n" + ToolStatusLog;
        ShowMessage(text, MessageIcon::Exclamation);
        return 0;
    }
    const int added = importoif(handOver);
    std::filesystem::remove(handOver, ec);
    return added;
}

bool ImportByExtension(const std::string& path) {
    const std::string extension = FileExtension(path);
    if (extension == "oif") {
        importoif(path);
        return true;
    }
    if (extension == "o") {
        importo(path);
        return true;
    }
    ShowMessage(UnsupportedFileMessage, MessageIcon::Exclamation);
    return false;
}

void importfile() {
    std::string path;
    do {
        path = TheDesktop().OpenFile(ImportTitle, ImportFilter, "", "");
        if (path.empty()) return;
    } while (!FileExists(path));
    ImportByExtension(path);
}
