#pragma once
// The crowd generator: rows stepped up a plane, dealt at random to four crowd parts that merge
// with the crowd parts already there, and Import Crowds. A crowd must not visibly repeat: each
// row starts at a random place in the texture, neighbouring rows run it in opposite directions,
// and rows land in one of four textures. Its U range follows its length, so it never stretches.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/oif.h"
#include "exchange/RAVOps.h"
#include "exchange/mdl3DS.h"

// World length of a row that takes the crowd texture once.
inline constexpr float CrowdTileWidth = 520.0f;
// The shadow colour of every vertex of the rows the wizard makes.
inline constexpr std::uint32_t CrowdRowShadow = 0xFFD0D0DAu;
// The group name of the home rows the wizard makes; AwayCrowdGroup is the other.
inline constexpr const char* HomeCrowdGroup = "rowa";

inline constexpr const char* ImportCrowdTitle = "Import crowd polygons...";
inline constexpr const char* ImportCrowdFilter =
    "All Supported Files|*.txt;*.3ds|RAV Exported Text (*.txt)|*.txt|Autodesk 3DS (*.3ds)|*.3ds";
inline constexpr const char* RowHeightQuestion = "Do you wish to use the row height fixing algorithm?   ";
inline constexpr const char* ShortTitle = "Terramason";

// Rows filling the plane from its bottom edge up, each `rowHeight` high. With a `spacing` the
// count comes from the horizontal length of the left edge, rounded up, and is given back in
// `rows`; with spacing 0 `rows` is taken as it is. The left and right edges are stepped on
// their own, so top and bottom need not be parallel. Throws std::runtime_error when the count
// is below 1 or beyond 16 bits.
std::vector<CrowdRow> MakeCrowdRows(const CrowdRow& plane, std::int16_t& rows, float rowHeight, float tileWidth,
                                    float spacing);

void AddPartVertex(OIFPart& part, const OIFVertex& vertex);
void AddPartIndex(OIFPart& part, std::int16_t index);

// The document with four new parts "Part N [rwh0]" to "[rwh3]" (or rwa for away), the rows
// dealt to them at random, 1/6, 1/3, 1/3 and 1/6 of them, each row bridged onto its part's strip
// by two degenerate triangles, and then every crowd part merged with the others of its texture.
OIFFile AddCrowdParts(const OIFFile& doc, const std::vector<CrowdRow>& rows, bool home);

// The document with the list's crowd rows dealt out to the crowd parts (AddCrowdParts): first
// the home rows, then the away rows. With `fixRows` every row goes through FixCrowdPolygons
// first. Only polygons of exactly one group are rows; one of fewer than four vertices is passed
// over.
OIFFile BuildCrowdParts(const OIFFile& doc, RAVFile list, bool fixRows);

// The quad of a four-vertex 3DS mesh: its vertices 0 to 3 as V[2], V[1], V[0], V[3] in game
// axes and units, the texture once across it, colour 0.
CrowdRow QuadFrom3DSMesh(const Mesh3DS& mesh);
// The meshes of exactly four vertices, in load order.
std::vector<const Mesh3DS*> FourVertexMeshes(const Model3DS& model);

// Import Crowds of one file with the crowd height in force `height` (0: keep the file's
// heights); the height goes back to 0 afterwards. A .txt is RAV text, a .3ds a model whose
// four-vertex meshes are rows, away when their material's texture file is "rowb". Returns false
// when the file was refused (reported in a box) or is of another kind (nothing happens).
bool ImportCrowdFile(const std::string& path, float height);
// The command: asks for the file, then whether to fix the row heights to "Import"/"CrowdHeight".
void importcrowd();

// What the Crowd Building Wizard's controls hold, as text, the way it reads them: no field is
// checked, and a text without a number counts as 0.
struct CrowdWizardInput {
    bool fromFile = false;
    std::string file;
    // Bottom Left, Bottom Right, Top Right, Top Left, in game units.
    std::array<std::string, 4> x, y, z;
    bool bySpacing = false;
    std::string rows = "10", spacing = "150.00", rowHeight = "300.00";
    bool home = true;
    bool operator==(const CrowdWizardInput&) const = default;
};

// The wizard's crowds: one plane from the corners, or every four-vertex mesh of the 3DS file,
// filled with rows and dealt to the crowd parts without fixing their heights. A refused model
// has been reported and changes nothing; `modelRead`, when given, tells whether it was read.
OIFFile MakeCrowds(const OIFFile& doc, const CrowdWizardInput& input, bool* modelRead = nullptr);
