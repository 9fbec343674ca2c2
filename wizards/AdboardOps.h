#pragma once
// Adboards and banners from the four-vertex meshes of a 3DS model. The meshes are dealt in turn
// to a fixed set of textures, so nothing needs naming in the model: three boards share one
// texture's height, and banners alternate with flags. Each import adds new parts; nothing merges.
#include <string>

#include "core/oif.h"
#include "exchange/RAVOps.h"
#include "exchange/mdl3DS.h"

inline constexpr const char* ImportAdboardTitle = "Import adboard polygons...";
inline constexpr const char* ImportBannerTitle = "Import banner polygons...";
inline constexpr const char* AdboardFilter = "All Supported Files|*.3ds|Autodesk 3DS (*.3ds)|*.3ds";
inline constexpr const char* UnknownExtensionMessage = "Unknown file extension!";
inline constexpr const char* HomeBannersQuestion = "Are these banners for the home team?";

// One polygon per four-vertex mesh, grouped "adba", "adbb", "adbc" in turn.
RAVFile AdboardList(const Model3DS& model);
// One polygon per four-vertex mesh, grouped team + bna, fla, bnb, flb, bnc, flc in turn; `team`
// is "h" or "a".
RAVFile BannerList(const Model3DS& model, const std::string& team);

// The document with a part "adba", "adbb" and "adbc" for the boards of each group that has any;
// board n of the list takes the n mod 3rd band of its texture's height.
OIFFile BuildAdboardParts(const OIFFile& doc, RAVFile list);
// The document with a part per banner and flag group that has any, each quad taking the whole
// texture, in the order bna, bnb, bnc, fla, flb, flc.
OIFFile BuildBannerParts(const OIFFile& doc, RAVFile list);

// True for a path ending in ".3ds"; otherwise the user is told "Unknown file extension!".
bool Is3DSModel(const std::string& path);
// The imports of a chosen .3ds file into the current document, refreshing the lists and
// previews. False when the model was refused (reported in a box).
bool ImportAdboardFile(const std::string& path);
bool ImportBannerFile(const std::string& path, bool home);
// The commands: ask for the file (and for banners whether they are the home team's).
void importadboard();
void importbanner();
