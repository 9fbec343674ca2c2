#include "shell/ToolsOps.h"

#include <exception>

#include "core/FileOps.h"
#include "core/ProgramState.h"
#include "shell/Processes.h"
#include "shell/RegistryOps.h"
#include "shell/mdlOIFToolAuto.h"

namespace {

// Registry folders come with or without their closing separator, and a program installed for
// Windows may spell its file in any case.
std::string InFolder(const std::string& folder, const std::string& file) {
    if (folder.empty()) return {};
    return FindNoCase(folder, file);
}

std::string Quoted(const std::string& path) { return "\"" + path + "\""; }

}  // namespace

std::string ToolProgram(OutsideTool tool) {
    switch (tool) {
    case OutsideTool::OEdit: return ReadRegistry(OEditRegistryValue);
    case OutsideTool::OIFTool: return InFolder(ReadRegistry(OIFToolRegistryValue), "oiftool.exe");
    case OutsideTool::ZModeler: return InFolder(ReadRegistry(ZModelerRegistryValue), "zmodeler.exe");
    case OutsideTool::Rhinoceros: return RhinoExecutable();
    case OutsideTool::ConvRav: return AppPath("Tools/convrav.exe");
    }
    return {};
}

bool ToolInstalled(OutsideTool tool) { return FileExists(ToolProgram(tool)); }

std::string ToolCommandLine(OutsideTool tool) {
    const std::string program = ToolProgram(tool);
    if (program.empty()) return {};
    switch (tool) {
    case OutsideTool::OEdit: return Quoted(program) + " /rgbemulation";
    case OutsideTool::OIFTool: return Quoted(program) + " /run";
    default: return Quoted(program);
    }
}

void StartTool(OutsideTool tool) {
    try {
        if (!ToolInstalled(tool)) return;
        const std::string command = ToolCommandLine(tool);
        if (PlatformCommand(command).empty()) return;
        StartProcess(command, WindowMode::Normal);
    } catch (const std::exception&) {
        // The Tools entries pass over whatever goes wrong: the user sees the tool or nothing.
    }
}
