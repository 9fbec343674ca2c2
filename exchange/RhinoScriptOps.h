#pragma once
// The RAV Convertor's script: every crowd row of a RAV export becomes a named, textured 3DFace
// on a crowd layer, in commands that Rhinoceros runs one line at a time.
#include <string>
#include <string_view>

struct RhinoScript {
    std::string text;   // the script, in CR LF lines
    std::string error;  // empty when the RAV text held every polygon it counts
};

// The script of RAV text held in memory. The text is read at the fixed places where the RAV
// exporter puts things, not by its keys: the polygon count after 8 characters on the second line,
// an empty first polygon of four lines, then eleven lines to each row polygon of four vertices and
// one group, vertex values after 2 characters, the group name after 7. Texture files are named
// texturePath + texture + ".bmp", so the path ends in its separator.
RhinoScript RhinoScriptText(std::string_view ravText, const std::string& texturePath);

// Writes the script of the RAV file at ravPath to scriptPath. It goes to a temporary file that
// then replaces scriptPath, so an earlier script stays as it was unless the new one is complete.
// A refused RAV file is shown in a message box and gives false. A file that cannot be read or
// written throws std::runtime_error with a message for the user.
bool makescript(const std::string& ravPath, const std::string& scriptPath, const std::string& texturePath);

// A coordinate as the script writes it: rounded to three decimals, halves away from zero, as
// decimal text without trailing zeros ("-1234.56", "1").
std::string ThreeDecimalText(double value);

// The texture folder as the script joins texture names to it: ending in the path separator "/".
std::string WithTrailingSeparator(const std::string& folder);
// A name chosen without an extension gets `extension`, as a save dialog with a default extension
// gives it: "crowd" becomes "crowd.txt", "crowd.rvb" stays.
std::string WithDefaultExtension(const std::string& path, const std::string& extension);
