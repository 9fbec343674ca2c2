#pragma once
// Conversions between the game's .o models and .oif files. On Linux the conversion is done by a
// converter program kept in the OIFTool folder:
//   "<OIFTool folder>/oifconvert" --to-oif "<source.o>" "<target.oif>"
//   "<OIFTool folder>/oifconvert" --to-o "<source.oif>" "<target.o>"
// (oifconvert.exe is run through Wine). It succeeds when it exits with 0 and the target file
// exists; what it prints is the status log shown on failure.
#include <string>

inline constexpr const char* OIFToolRegistryValue = "HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath";
inline constexpr const char* OIFToolMissingMessage = "OIFTool has not been installed properly!";
// A conversion that has not ended after this long is stopped and counts as failed.
inline constexpr long ConverterTimeoutMs = 10 * 60 * 1000;

// The converter in ToolPath, or "" when there is none.
std::string ConverterProgram();
// Starts OIFTool itself, hidden, from ToolPath.
void ToolStart();
// Ends the OIFTool that ToolStart started, and nothing else the user may have started.
void CloseToolWindows();
// Two paths in, success out; on failure ToolStatusLog holds the converter's log.
bool ToolConvertToOIF(const std::string& oPath, const std::string& oifPath);
bool ToolConvertToO(const std::string& oifPath, const std::string& oPath);
// The same with the checks and messages of the editor's commands.
void ConvertOToOIF(const std::string& oPath, const std::string& oifPath);
void ConvertOIFToO(const std::string& oifPath, const std::string& oPath);
