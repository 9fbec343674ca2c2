#pragma once
// config.ini: sections and keys of text. Every read goes to the file, so a value written is
// seen by the next read; a missing key, file or section reads as empty text.
#include <string>

std::string ReadIniValue(const std::string& section, const std::string& key, const std::string& path);
// Creates the file or section as needed; a file that cannot be written is passed over silently.
void WriteIniValue(const std::string& section, const std::string& key, const std::string& path,
                   const std::string& value);

std::string ConfigPath();  // config.ini in AppFolder
std::string ReadConfig(const std::string& section, const std::string& key);
void WriteConfig(const std::string& section, const std::string& key, const std::string& value);

// Booleans in config.ini are "1" for true; anything else, a missing key included, is false.
bool ReadConfigFlag(const std::string& section, const std::string& key);
// A number key read with the program's lenient parser: text without a leading number is 0.
double ReadConfigNumber(const std::string& section, const std::string& key);

// Writes the first-run config.ini into AppFolder when there is none. Returns true if it did.
bool EnsureConfigFile();
