#pragma once
// Small file helpers: a name's extension, whether a file is there, its lines, and appending one
// file to another.
#include <string>
#include <vector>

// The lower-case text behind the last point of the last path element; "" when there is none.
std::string FileExtension(const std::string& path);

// All lines of a text file without their line ends; a missing file gives no lines.
std::vector<std::string> ReadAllLines(const std::string& path);
// Adds the bytes of source at the end of target.
void AppendFile(const std::string& source, const std::string& target);
bool FileExists(const std::string& path);
