#pragma once
// JSON as the verbs print it. Structure and strings go through nlohmann; numbers are written
// here, because nlohmann widens a single-precision value to double on output (0.1f prints as
// 0.10000000149011612) and writes 1e7 as 10000000.0.
#include <ostream>
#include <string>
#include <string_view>

#include "core/oif.h"
#include "exchange/RAVOps.h"
#include "exchange/mdl3DS.h"

// The shortest decimal text that reads back to the same float. JSON has no NaN or infinity, so
// those print as null rather than as a number that would misstate the file.
std::string JsonFloat(float value);

// A quoted, escaped JSON string of UTF-8 text.
std::string JsonString(std::string_view utf8);

// A document text field, held as Windows-1252 bytes, as a JSON string.
std::string JsonDocumentText(std::string_view cp1252);

// Writes the document in the layout of the dump verb. Output is streamed, because a stadium
// can run to hundreds of megabytes of JSON.
void WriteOIFJson(std::ostream& out, const OIFFile& doc);

// Writes RAV text as the dump-rav verb prints it: version, then each polygon's name, vertices
// in the layout of the dump verb, and groups with their names and indices.
void WriteRAVJson(std::ostream& out, const RAVFile& file);

// Writes the 3DS tables as the dump-3ds verb prints them: each mesh with its name, vertices,
// faces with their flags, texture vertices and material name, then the materials.
void Write3DSJson(std::ostream& out, const Model3DS& model);
