#pragma once
// The game's stadiums a project can start from, the project's texture names, and MakeProject.
#include <array>
#include <string>
#include <vector>

#include "core/oif.h"

// The captions of the "Based on:" list; entry 0 is "None [No template]", entry r + 1 is row r.
extern const std::array<const char*, 30> StadiumCaptions;
std::vector<StadiumRow> BuildStadiumCatalogue();

// The 35 texture names of a project, in list order.
extern const std::array<const char*, 35> ProjectTextureNames;

// Bases that the model converter cannot read.
bool BaseUnsupported(int captionIndex);
inline constexpr const char* UnsupportedBaseMessage =
    "This stadium cannot be chosen as base, as it is not supported by OIFTool.   \r\n\r\nPlease choose another one.";

// The number of the game's archive "stadN.big" of catalogue row basedOn (0 gives 1, 28 gives 58).
int StadiumNumber(int basedOn);

// Empties the scratch folder and fills the project: an empty document for index 0, otherwise
// the stadium unpacked from the game and converted. A failed step is passed over and the next
// runs; the messages of the conversion tell the user what went wrong.
StadiumProject MakeProject(StadiumProject& project, int index, const std::string& name);
