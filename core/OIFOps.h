#pragma once
// Reading and writing .oif files.
#include <string>

#include "core/binaryOps.h"
#include "core/oif.h"

inline constexpr const char* InvalidOIFMessage = "Invalid OIF file!";
inline constexpr const char* InvalidOIFTypeMessage = "Invalid OIF file type!\r\n\r\nNot a stadium OIF file.";

struct OIFParse {
    OIFFile doc;        // on a refusal: Label and what of the header was read, no parts
    std::string error;  // empty when the bytes are a stadium OIF file
};

// Parses a whole file held in memory. Every count is checked against what remains before it is
// read, so no input reads outside the buffer.
OIFParse ParseOIF(const ByteBuffer& bytes);

// Reads the file at path with the progress window up and reports a refusal in a message box.
// `ok`, when given, tells whether the file was accepted.
OIFFile LoadOIF(const std::string& path, bool* ok = nullptr);

// Builds the complete file. By design this stores each part's texture back from
// a consumed temporary, so every Texture of `doc` reads blank afterwards although the bytes hold
// the right names; callers that must keep their names pass a copy.
ByteBuffer EncodeOIF(OIFFile& doc);

// EncodeOIF with the progress window up.
ByteBuffer SaveOIF(OIFFile& doc);
