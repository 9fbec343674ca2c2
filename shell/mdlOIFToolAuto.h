#pragma once
// Conversions between the game's .o models and .oif files, which only OIFTool can make. OIFTool
// is a Windows program: a conversion runs terramason-oifconvert.exe through Wine in the prefix
// the registry values come from, and that program drives OIFTool's automation server. A Linux
// converter in the OIFTool folder, if there is one, is run instead:
//   "<OIFTool folder>/oifconvert" --to-oif "<source.o>" "<target.oif>"
//   "<OIFTool folder>/oifconvert" --to-o "<source.oif>" "<target.o>"
// Either succeeds when it exits with 0 and the target file exists; what it prints is the status
// log shown on failure.
#include <string>

inline constexpr const char* OIFToolRegistryValue = "HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath";
inline constexpr const char* OIFToolMissingMessage = "OIFTool has not been installed properly!";
inline constexpr const char* OIFToolBridgeName = "terramason-oifconvert.exe";
// A run of OIFTool that has not ended after this long counts as failed. The bridge gives up on
// it by itself, hiding the wizard and printing its log; Wine gets a minute more before it is
// stopped. A Linux converter is stopped at once.
inline constexpr long ConverterTimeoutMs = 10 * 60 * 1000;
inline constexpr long WineGraceMs = 60 * 1000;

// OIFTool's folder from the registry; "" when OIFTool cannot run here: no Wine, and no converter
// of its own in the folder.
std::string OIFToolFolder();
// The bridge beside the program (bin/ of a build tree) or in lib/terramason of the install whose
// programs are in executableFolder; "" when neither has it.
std::string FindOIFToolBridge(const std::string& executableFolder);
// The Linux converter in ToolPath, or "" when there is none.
std::string ConverterProgram();
// Closes the windows of the OIFTool that the last conversion through Wine started.
void CloseToolWindows();
// Two paths in, success out; on failure ToolStatusLog holds the converter's log.
bool ToolConvertToOIF(const std::string& oPath, const std::string& oifPath);
bool ToolConvertToO(const std::string& oifPath, const std::string& oPath);
// The same with the checks and messages of the editor's commands.
void ConvertOToOIF(const std::string& oPath, const std::string& oifPath);
void ConvertOIFToO(const std::string& oifPath, const std::string& oPath);
