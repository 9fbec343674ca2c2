#pragma once
// Saving the stadium as .oif, or as the game's .o through the converter.
#include <string>

inline constexpr const char* ExportTitle = "Export OIF file...";
inline constexpr const char* ExportFilter = "O Intermediate Files (*.oif)|*.oif|EA Sports O Files (*.o)|*.o";

// The question before a save replaces a file, asked with Yes and No under the title "Save As".
std::string ReplaceFileQuestion(const std::string& path);

// Asks for a path and saves CurrentProject.OIF there. Like every save of the live document it
// leaves the document's texture names blank.
void exportoif();
