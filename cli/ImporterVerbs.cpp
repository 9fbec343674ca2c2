#include "cli/ImporterVerbs.h"

#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "cli/JsonOut.h"
#include "core/Cp1252.h"
#include "core/FileOps.h"
#include "core/ProgramState.h"
#include "core/binaryOps.h"
#include "importer/AtlasLayout.h"
#include "importer/LayoutFile.h"
#include "importer/image/AtlasImage.h"
#include "importer/stmapOps.h"

namespace {

void RequireFile(const std::string& path) {
    if (!FileExists(path)) throw std::runtime_error("Cannot open \"" + path + "\": no such file.");
}

// The importer's load. The dialog for a missing texture has no one to answer it here, so the
// texture it asked for is told instead.
bool Load(const std::string& model, const std::string& folder, CliDesktop& desktop) {
    RequireFile(model);
    const std::size_t asked = desktop.cancelledDialogs().size();
    if (LoadImportModel(model, folder, ReadPictureSize) == LoadResult::Loaded) return true;
    const std::string missing = MissingTextureTitle;
    for (std::size_t i = asked; i < desktop.cancelledDialogs().size(); ++i)
        if (desktop.cancelledDialogs()[i].rfind(missing, 0) == 0)
            PrintMessageLines(std::cerr, "The texture file \"" + desktop.cancelledDialogs()[i].substr(missing.size()) +
                                             "\" is not in \"" + Importer.TexturesPath + "\".");
    return false;
}

int Textures(const std::string& model, const std::string& folder, CliDesktop& desktop) {
    if (!Load(model, folder, desktop)) return ExitFailed;
    std::string s = "[";
    for (std::size_t i = 0; i < Importer.ImportTextures.size(); ++i) {
        const ImportTexture& t = Importer.ImportTextures[i];
        s += i == 0 ? "\n  " : ",\n  ";
        s += "{\"name\": " + JsonDocumentText(t.Name) + ", \"path\": " + JsonString(t.Path) +
             ", \"width\": " + std::to_string(t.Picture.Width) + ", \"height\": " + std::to_string(t.Picture.Height) +
             "}";
    }
    s += Importer.ImportTextures.empty() ? "]\n" : "\n]\n";
    std::cout << s;
    std::cout.flush();
    if (!std::cout) throw std::runtime_error("Cannot write the JSON to the standard output.");
    return ExitDone;
}

struct AtlasOptions {
    std::string model, folder, layout, bitmap, into, out;
    std::string texture = "tp00";
    std::string sheet = SheetSizeTexts[0];
    std::optional<int> flipU, flipV, shade, merge;
    std::optional<float> mergeDist;
};

// The settings of a first run for this kind of model, with the options over them.
ImportSettings Settings(const AtlasOptions& o) {
    ImportSettings s = DefaultImportSettings(ImportKindOf(o.model));
    auto flag = [](const std::optional<int>& option, std::int16_t& value) {
        if (option) value = static_cast<std::int16_t>(*option);
    };
    flag(o.flipU, s.FlipU);
    flag(o.flipV, s.FlipV);
    flag(o.shade, s.Shade);
    flag(o.merge, s.Merge);
    if (o.mergeDist) s.MergeDist = *o.mergeDist;
    return s;
}

int Atlas(const AtlasOptions& o, CliDesktop& desktop) {
    OIFFile doc;
    if (!StartDocument(o.into, doc)) return ExitFailed;
    RequireFile(o.layout);
    const ByteBuffer layoutBytes = binaryOps::ReadFileBytes(o.layout);
    const LayoutFile layout =
        ParseLayoutFile(std::string_view(reinterpret_cast<const char*>(layoutBytes.data()), layoutBytes.size()));
    if (!layout.error.empty()) throw std::runtime_error(layout.error);
    if (!Load(o.model, o.folder, desktop)) return ExitFailed;
    Importer.Settings = Settings(o);

    const ImportSheet sheet{SheetWidthFor(o.sheet == SheetSizeTexts[1] ? 1 : 0), SheetHeight};
    std::vector<TextureBox> boxes;
    for (const ImportTexture& t : Importer.ImportTextures)
        boxes.push_back(NaturalBox(t.Picture, sheet.Width, sheet.Height));
    if (const std::string error = ApplyLayout(layout, Importer.ImportTextures, boxes); !error.empty())
        throw std::runtime_error(error);

    // The window as designed around this sheet, in twips, as the bounds check measures it.
    const std::int32_t windowWidth =
        WindowWidthForSheet(DesignClientWidth, SheetLeft, 512, sheet.Width) * TwipsPerPixel;
    const std::int32_t windowHeight = DesignClientHeight * TwipsPerPixel;
    if (!CheckBounds(boxes, Importer.ImportTextures, windowWidth, windowHeight, false)) {
        ShowMessage(CannotMakeTextureMessage, MessageIcon::Exclamation);
        CheckBounds(boxes, Importer.ImportTextures, windowWidth, windowHeight, true);
        return ExitFailed;
    }

    std::vector<QImage> pictures;
    for (const ImportTexture& t : Importer.ImportTextures) pictures.push_back(ReadPicture(t.Path));
    const auto paint = [&](const std::vector<ImportTexture>& textures) {
        SaveBitmap(PaintAtlas(sheet.Width, sheet.Height, textures, pictures), o.bitmap);
        NoteWrittenFile(o.bitmap);
    };
    CurrentProject.OIF = doc;
    if (ExportAtlas(boxes, sheet, Utf8ToCp1252(o.texture), paint) == AtlasExport::Failed) return ExitFailed;
    return SaveDocument(CurrentProject.OIF, o.out);
}

}  // namespace

void DeclareTextures(CLI::App& verb, CliDesktop& desktop, VerbWork& run) {
    auto model = std::make_shared<std::string>();
    auto folder = std::make_shared<std::string>();
    verb.add_option("MODEL", *model, "The 3DS model or RAV exported text")->required();
    verb.add_option("--textures", *folder, "The folder of the model's texture files")->required();
    verb.callback([=, &desktop, &run] { run = [=, &desktop] { return Textures(*model, *folder, desktop); }; });
}

void DeclareAtlas(CLI::App& verb, CliDesktop& desktop, VerbWork& run) {
    auto o = std::make_shared<AtlasOptions>();
    verb.add_option("MODEL", o->model, "The 3DS model or RAV exported text")->required();
    verb.add_option("--textures", o->folder, "The folder of the model's texture files")->required();
    verb.add_option("--layout", o->layout, "JSON: each texture's name to {left, top, width, height, mapped}")
        ->required();
    verb.add_option("--bitmap", o->bitmap, "Where to write the atlas bitmap")->required();
    verb.add_option("--into", o->into, "The document to add the part to (default: an empty stadium)");
    verb.add_option("-o", o->out, "Where to save the result")->required();
    verb.add_option("--texture", o->texture, "The part's four-character texture name (default tp00)");
    verb.add_option("--sheet", o->sheet, "The sheet's size (default 512x512)")
        ->check(CLI::IsMember({SheetSizeTexts[0], SheetSizeTexts[1]}));
    const auto onOff = CLI::IsMember({0, 1});
    verb.add_option("--flip-u", o->flipU, "1 flips U (default 0)")->check(onOff);
    verb.add_option("--flip-v", o->flipV, "1 flips V (default 1 for 3DS, 0 for RAV text)")->check(onOff);
    verb.add_option("--shade", o->shade, "1 shades by distance from the origin (default 1)")->check(onOff);
    verb.add_option("--merge", o->merge, "1 merges near vertices (default 0)")->check(onOff);
    verb.add_option("--merge-dist", o->mergeDist, "The merge distance in metres (default 0.5)");
    verb.callback([=, &desktop, &run] { run = [=, &desktop] { return Atlas(*o, desktop); }; });
}
