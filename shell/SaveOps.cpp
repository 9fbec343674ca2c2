#include "shell/SaveOps.h"

#include <cctype>
#include <filesystem>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "shell/mdlOIFToolAuto.h"

namespace {
std::string Trim(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}

// A failed write is told, not passed over: the user must know the file was not saved.
bool WriteReported(const ByteBuffer& bytes, const std::string& path) {
    try {
        binaryOps::WriteBytesFile(bytes, path);
        return true;
    } catch (const std::exception& e) {
        ShowMessage(e.what(), MessageIcon::Critical);
        return false;
    }
}
}  // namespace

std::string ReplaceFileQuestion(const std::string& path) {
    return path + " already exists.   \r\nDo you want to replace it?   ";
}

void exportoif() {
    std::string path;
    for (;;) {
        path = TheDesktop().SaveFile(ExportTitle, ExportFilter, "", "");
        if (Trim(path).empty()) return;
        if (!FileExists(path)) break;
        const MessageAnswer answer =
            AskQuestion(ReplaceFileQuestion(path), MessageButtons::YesNo, MessageIcon::Exclamation, "Save As");
        if (answer == MessageAnswer::Yes) break;
    }
    const std::string extension = FileExtension(path);
    if (extension == "oif") {
        WriteReported(SaveOIF(CurrentProject.OIF), path);
    } else if (extension == "o") {
        const std::string handOver = AppPath("temp.oif");
        std::error_code ec;
        if (std::filesystem::exists(handOver, ec)) {
            std::filesystem::remove(handOver, ec);
            // Only an OIFTool of ours may hold the hand-over file; an editor the user started
            // from the Tools menu is left alone.
            CloseToolWindows();
            if (std::filesystem::exists(handOver, ec)) {
                ShowMessage("Cannot remove the earlier hand-over file \"" + handOver + "\".", MessageIcon::Critical);
                return;
            }
        }
        if (WriteReported(SaveOIF(CurrentProject.OIF), handOver)) ConvertOIFToO(handOver, path);
    }
}
