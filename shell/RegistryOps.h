#pragma once
// Registry values on Linux: a per-user file of values, then the registry files of a Wine prefix.
#include <string>

// A registry value by its full path ("HKEY_LOCAL_MACHINE\SOFTWARE\...\Install Dir"), as the
// desktop finds it; "" when it is missing.
std::string ReadRegistry(const std::string& valuePath);

// The game's folder with a separator at the end; "/" when the game is not installed.
std::string FifaInstallDir();
// The Rhinoceros program if it exists, else "".
std::string RhinoExecutable();

// The per-user file of registry values in AppFolder: one "full value path=value" per line,
// '#' or ';' starting a comment.
std::string RegistryFilePath();

// The Wine prefix used when none is given: WINEPREFIX, else ~/.wine.
std::string DefaultWinePrefix();

// A value by its full path: first the per-user file, then the prefix's system.reg (for
// HKEY_LOCAL_MACHINE) or user.reg (HKEY_CURRENT_USER), also under Wow6432Node. Windows paths
// in values come back as paths inside the prefix. Missing everywhere: "".
std::string LinuxRegistryValue(const std::string& valuePath, const std::string& registryFile,
                               const std::string& winePrefix);

// A value of one .reg file's text: key without the hive ("Software\\EA SPORTS\\FIFA 2003"),
// value name ("" or "@" for the default value). Strings are unescaped, dwords given in decimal.
// Found: true and `value` set.
bool FindRegValue(const std::string& regText, const std::string& key, const std::string& name, std::string& value);

// `base` joined with the elements of `relative` ("data/stad1.big", "\\" or "/" between them), each
// element matched without regard to case where the exact name does not exist, as files installed
// for Windows programs are spelled any way ("Data/Stad1.BIG"). What matches nothing stays as given.
std::string FindNoCase(const std::string& base, const std::string& relative);

// "C:\\Program Files\\x" as a path inside the Wine prefix; where the exact path does not exist,
// each element is matched without regard to case, as Windows would. Other text is unchanged.
std::string WindowsPathToLocal(const std::string& windowsPath, const std::string& winePrefix);

// The other way: a local path as the Windows programs of the prefix see it, through the drives in
// its dosdevices folder; the drive whose folder holds the path most closely wins ("C:\\users\\x"
// rather than "Z:\\home\\...\\drive_c\\users\\x"). A path no drive holds gives "".
std::string LocalPathToWindows(const std::string& localPath, const std::string& winePrefix);
