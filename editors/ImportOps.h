#pragma once
// "&Import to OIF...": adding the parts of another stadium file to the current document.
#include <string>

inline constexpr const char* ImportTitle = "Import";
inline constexpr const char* ImportFilter =
    "All Supported Files|*.oif;*.o;*.3ds|O Intermediate Files (*.oif)|*.oif|Stadium O Files (*.o)|*.o|"
    "Autodesk 3DS (*.3ds)|*.3ds|All Files|*.*";
inline constexpr const char* PolygonImportFilter =
    "All Supported Files|*.oif;*.o;*.csv;*.txt|O Intermediate Files (*.oif)|*.oif|EA Sports O Files (*.o)|*.o|"
    "Rhino Generated CSV File (*.csv)|*.csv|RAV formatted text (*.txt)|*.txt|All Files|*.*";
inline constexpr const char* UnsupportedFileMessage = "File type not supported!";

// Loads the .oif at path and appends each of its parts to CurrentProject.OIF; a refused file
// adds nothing. Returns false when the file was refused.
bool importoif(const std::string& path);
// Converts a .o through the converter into the hand-over file and imports that.
bool importo(const std::string& path);
// Reads a 3DS model and adds it as one new part, shaded by distance and stripped.
bool import3ds(const std::string& path);
// Imports one file by its extension; an extension it cannot read is told and changes nothing.
// Returns false when the file was refused or its type is not supported.
bool ImportByExtension(const std::string& path);
// A Rhinoceros point table as one new part of quads; the wireframe preview shows the result.
bool importcsv(const std::string& path);
// A Rhinoceros point table added to the project's polygon list, drawn into the quad preview;
// the document's parts stay as they are.
bool importcsvtopolygonpart(const std::string& path);
// Asks for a point table (again while the chosen file does not exist) and adds its quads to
// the polygon list. Only .csv is read, whatever else the dialog offers.
void importpolygonpart();
// The command: asks for a file (again while the chosen one does not exist) and imports it.
void importfile();
