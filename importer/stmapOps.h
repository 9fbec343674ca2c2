#pragma once
// The Stadium Importer's model side: the list of textures a 3DS or RAV model uses, and the one
// part made from the whole model once its textures have rectangles on the atlas. The layout on
// the sheet is AtlasLayout; painting the atlas needs an image library and lives with the window.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/oif.h"
#include "exchange/RAVOps.h"
#include "exchange/mdl3DS.h"

inline constexpr const char* NoTexturesMessage = "There are no textures in this 3ds file!";
inline constexpr const char* NoTexturesTitle = "Terramason";
inline constexpr const char* UnsupportedExtensionMessage = "File extension is not supported!";
inline constexpr const char* MissingTextureTitle = "Select file for ";
inline constexpr const char* MissingTextureFilter = "All (*.*)| *.*";
inline constexpr const char* Processing3DSText = "Processing 3ds file...";
inline constexpr const char* ProcessingRAVText = "Processing RAV file...";
inline constexpr const char* CannotMakeTextureMessage = "Texture cannot be properly made. Please check bounds!";

// The pixel size of a decoded image.
struct PictureSize {
    std::int32_t Width = 0, Height = 0;
    bool operator==(const PictureSize&) const = default;
};

// Decodes the image at a path; nothing when it cannot be decoded. The editor and terramason-cli
// hand in their image library's reader; the model side never decodes pixels itself.
using PictureReader = std::function<std::optional<PictureSize>(const std::string& path)>;

// One source texture. The decoded picture itself is held by whoever paints it; here is its size.
struct ImportTexture {
    std::string Name;  // as the model names it; the key for finding a texture again
    std::string Path;  // TexturesPath + Name, or what the user picked when that file is missing
    PictureSize Picture;
    // The rectangle on the atlas, right and bottom exclusive. Written only by ExportAtlas.
    std::int32_t Left = 0, Top = 0, Right = 0, Bottom = 0;
    bool operator==(const ImportTexture&) const = default;
};

// 1 is on, anything else off, as the settings dialog's check boxes give them.
struct ImportSettings {
    std::int16_t FlipU = 0;
    std::int16_t FlipV = 1;
    std::int16_t Shade = 1;
    std::int16_t Merge = 0;
    float MergeDist = 0.5f;  // metres
    bool operator==(const ImportSettings&) const = default;
};

enum class ImportKind { Model3DS, RAVText, Other };

// By the file's extension, any case: "3ds", "txt", anything else.
ImportKind ImportKindOf(const std::string& file);

// What a first run uses: FlipV is on for 3DS models and off for RAV text, whose UVs already run
// the game's way.
ImportSettings DefaultImportSettings(ImportKind kind);

// The importer's program-wide state: one loaded model at a time, overwritten by every load.
struct ImportState {
    std::vector<ImportTexture> ImportTextures;
    std::string ImportFile;
    std::string TexturesPath;  // always ends in a separator
    RAVFile ImportRAV;         // a 3DS load keeps its model in Table3DS
    ImportSettings Settings;
    std::int32_t ImportTextureCount() const { return static_cast<std::int32_t>(ImportTextures.size()); }
};
extern ImportState Importer;

// Lists the textures of the model's materials in table order, one entry per distinct texture
// file (compared exactly), and writes each material's textureIndex. A texture file that is not
// in the folder is asked for; cancelling that dialog gives false. A model without any texture
// file is told and gives false.
bool Build3DSTextures(Model3DS& model, std::vector<ImportTexture>& textures, const std::string& texturesPath,
                      const PictureReader& read);
// The same from the groups of RAV polygons with exactly one group: the texture of a group "x" is
// "x.bmp", and the index goes to the group.
bool BuildRAVTextures(RAVFile& rav, std::vector<ImportTexture>& textures, const std::string& texturesPath,
                      const PictureReader& read);

// The textureIndex of the first material of that exact name; 0 when there is none.
std::int32_t MeshTextureIndex(const Model3DS& model, const std::string& materialName);
std::int32_t MeshTextureIndex(const std::string& materialName);

// Step 4 of the importer's load: remembers the file and folder in Importer, reads the model and
// builds its texture list. Other extensions are told and leave the list as it was.
enum class LoadResult { Loaded, Refused, Unsupported };
LoadResult LoadImportModel(const std::string& file, const std::string& texturesPath, const PictureReader& read);

// Moves U and V from the texture's own 0 to 1 into its rectangle on a sheet of this size. No
// inset and no clamping: a UV outside 0 to 1 runs into the neighbouring texture.
void RemapUV(OIFVertex& vertex, const ImportTexture& texture, std::int32_t sheetWidth, std::int32_t sheetHeight);

// The whole model before optimising: all meshes end to end and a triangle list into them.
struct ImportMesh {
    std::vector<OIFVertex> WorkVertices;
    std::vector<std::int16_t> WorkIndices;
    bool operator==(const ImportMesh&) const = default;
};

struct ImportMeshResult {
    ImportMesh mesh;
    std::string error;  // a model the importer cannot take; empty when the mesh was made
};

// The most work vertices 16-bit indices can reach.
inline constexpr std::size_t MostImportVertices = 32768;

struct ImportSheet {
    std::int32_t Width = 512, Height = 512;
};

// The work mesh of a 3DS model: game axes and units, flips, and UVs remapped into the rectangle
// of each mesh's texture.
ImportMeshResult Work3DSMesh(const Model3DS& model, const std::vector<ImportTexture>& textures,
                             const ImportSettings& settings, ImportSheet sheet);
// The work mesh of RAV text whose crowd rows are already fixed: two triangles per polygon of one
// group and four vertices, with fixed corner UVs. Polygon s fills slots 4s - 4 to 4s - 1; polygon
// 0, which that leaves without a slot, takes the last four slots when no other polygon reaches
// them, and is left out otherwise.
ImportMeshResult WorkRAVMesh(const RAVFile& rav, const std::vector<ImportTexture>& textures,
                             const ImportSettings& settings, ImportSheet sheet);

// Shading, merging and duplicate removal of a work mesh, then one strip.
struct OptimisedMesh {
    std::vector<OIFVertex> OptVertices;
    std::vector<std::int16_t> WorkIndices;  // rewritten to OptVertices
    std::vector<std::int16_t> StripIndices;
    bool operator==(const OptimisedMesh&) const = default;
};
// The merge in a spatial grid and the duplicate search in a hash, with the outcome of the
// pairwise rules: the same kept vertices in the same order.
OptimisedMesh OptimiseImportMesh(ImportMesh work, const ImportSettings& settings);
// The pairwise rules as they are stated, quadratic; the reference the fast method answers to.
OptimisedMesh OptimiseImportMeshReference(ImportMesh work, const ImportSettings& settings);

// The part: texture from the first four characters of `texture` (Windows-1252 bytes), named
// "Part <partCount> [<texture>]".
OIFPart FinishImportPart(const OptimisedMesh& mesh, const std::string& texture, std::int32_t partCount);

struct ImportPartResult {
    OIFPart part;
    std::string error;
};
// The two makers over the loaded model in Importer, with the progress window up, named after
// CurrentProject's part count. They read the rectangles ExportAtlas wrote. The RAV maker fixes the
// crowd rows of Importer.ImportRAV again at each run.
ImportPartResult Make3DSImportPart(const std::string& texture, ImportSheet sheet);
ImportPartResult MakeRAVImportPart(RAVFile& rav, const std::string& texture, ImportSheet sheet);
