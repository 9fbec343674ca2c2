#pragma once
// The outside modelling tools of the Tools menu: where the registry says they are, whether they
// are installed, and the command lines that start them.
#include <string>

inline constexpr const char* OEditRegistryValue = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Problems Inc\\OEdit\\Install Path";
inline constexpr const char* ZModelerRegistryValue = "HKEY_CURRENT_USER\\Software\\Zanoza Productions\\path";

enum class OutsideTool { OEdit, OIFTool, ZModeler, Rhinoceros, ConvRav };

// The program file of a tool, built from its registry value; "" when the value is missing.
// Whether the file is there is not checked here.
std::string ToolProgram(OutsideTool tool);
// The tool's program file exists: the test behind the Enabled state of its Tools entry.
bool ToolInstalled(OutsideTool tool);
// The command line that starts the tool from the Tools menu; "" when its program is unknown.
std::string ToolCommandLine(OutsideTool tool);
// Starts the tool without waiting. A tool that is not there, or a Windows program where Wine
// is missing, is passed over without a word.
void StartTool(OutsideTool tool);
