#pragma once
// The document keeps text as the file's 8-bit bytes (Windows-1252). These convert at the edges:
// windows, JSON, messages.
#include <string>
#include <string_view>

std::string Cp1252ToUtf8(std::string_view bytes);
// Characters that Windows-1252 cannot hold become '?'; malformed UTF-8 bytes are taken as Latin-1.
std::string Utf8ToCp1252(std::string_view utf8);
