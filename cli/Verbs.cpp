#include "cli/Verbs.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/ImporterVerbs.h"
#include "cli/JsonOut.h"
#include "cli/WizardVerbs.h"
#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/binaryOps.h"
#include "editors/ImportOps.h"
#include "editors/PartOps.h"
#include "exchange/RAVOps.h"
#include "exchange/RhinoScriptOps.h"
#include "exchange/mdl3DS.h"
#include "preview/VRMLOps.h"

bool QuietRun = false;

namespace {
std::vector<std::string> written;

// 5120 as "5,120", as the line is read by people.
std::string Grouped(std::uintmax_t n) {
    std::string digits = std::to_string(n);
    for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) digits.insert(static_cast<std::size_t>(i), ",");
    return digits;
}
}  // namespace

void NoteWritten(const std::string& what) { written.push_back(what); }

void NoteWrittenFile(const std::string& path) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    NoteWritten(ec ? path : path + " (" + Grouped(size) + " bytes)");
}

std::string WrittenLine() {
    std::string line;
    for (const std::string& w : written) line += (line.empty() ? "wrote " : ", ") + w;
    return line;
}

namespace {

int Dump(const std::string& path) {
    bool ok = false;
    const OIFFile doc = LoadOIF(path, &ok);
    if (!ok) return ExitFailed;
    WriteOIFJson(std::cout, doc);
    std::cout.flush();
    // A full disk or a closed pipe must not pass for a complete dump.
    if (!std::cout) throw std::runtime_error("Cannot write the JSON to the standard output.");
    return ExitDone;
}

int DumpRAV(const std::string& path) {
    bool ok = false;
    const RAVFile file = ReadRAVFile(path, &ok);
    if (!ok) return ExitFailed;
    WriteRAVJson(std::cout, file);
    std::cout.flush();
    if (!std::cout) throw std::runtime_error("Cannot write the JSON to the standard output.");
    return ExitDone;
}

int Dump3DS(const std::string& path) {
    if (!Read3DSFile(path)) return ExitFailed;
    Write3DSJson(std::cout, Table3DS);
    std::cout.flush();
    if (!std::cout) throw std::runtime_error("Cannot write the JSON to the standard output.");
    return ExitDone;
}

int RAVScript(const std::string& rav, const std::string& script, const std::string& texturePath) {
    if (!makescript(rav, script, texturePath)) return ExitFailed;
    NoteWrittenFile(script);
    return ExitDone;
}

int Resave(const std::string& in, const std::string& out) {
    bool ok = false;
    OIFFile doc = LoadOIF(in, &ok);
    if (!ok) return ExitFailed;
    return SaveDocument(doc, out);
}

}  // namespace

// Shared with the verbs of the generators and wizards.
// The document a changing verb starts from: --into, or the empty stadium. False when refused.
bool StartDocument(const std::string& into, OIFFile& doc) {
    if (into.empty()) {
        doc = NewOIFFile();
        return true;
    }
    bool ok = false;
    doc = LoadOIF(into, &ok);
    return ok;
}

int SaveDocument(OIFFile& doc, const std::string& out) {
    binaryOps::WriteBytesFile(SaveOIF(doc), out);
    std::size_t vertices = 0;
    for (const OIFPart& part : doc.Parts) vertices += part.Vertices.size();
    NoteWritten(out + ": " + Grouped(doc.Parts.size()) + (doc.Parts.size() == 1 ? " part, " : " parts, ") +
                Grouped(vertices) + (vertices == 1 ? " vertex" : " vertices"));
    return ExitDone;
}

std::vector<std::size_t> PartIndices(const std::string& list, const char* option) {
    std::vector<std::size_t> indices;
    if (list.empty()) return indices;
    std::size_t start = 0;
    while (start <= list.size()) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        const std::string item = list.substr(start, end - start);
        std::size_t used = 0;
        long index = -1;
        try {
            index = std::stol(item, &used);
        } catch (const std::exception&) { used = 0; }
        if (used != item.size() || item.empty() || index < 0)
            throw CLI::ValidationError(option, "\"" + item + "\" is not a part index");
        indices.push_back(static_cast<std::size_t>(index));
        start = end + 1;
    }
    return indices;
}

std::vector<bool> ListedParts(const std::string& list, std::size_t parts, const char* option) {
    std::vector<bool> listed(parts, false);
    for (const std::size_t index : PartIndices(list, option)) {
        if (index >= parts)
            throw CLI::ValidationError(option, "part " + std::to_string(index) + " is not in the document, which has " +
                                                   std::to_string(parts) + (parts == 1 ? " part" : " parts") +
                                                   " (counted from 0)");
        listed[index] = true;
    }
    return listed;
}

namespace {

int Import(const std::string& file, const std::string& into, const std::string& out) {
    OIFFile doc;
    if (!StartDocument(into, doc)) return ExitFailed;
    if (!FileExists(file)) throw std::runtime_error("Cannot open \"" + file + "\": no such file.");
    CurrentProject.OIF = doc;
    if (!ImportByExtension(file)) return ExitFailed;
    return SaveDocument(CurrentProject.OIF, out);
}

// A scratch folder for the files a command writes beside its result; removed on the way out.
class ScratchPlace {
public:
    ScratchPlace() {
        std::string pattern = (std::filesystem::temp_directory_path() / "terramason-cli-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("Cannot make a scratch folder in " + pattern + ".");
        path = pattern;
    }
    ~ScratchPlace() {
        std::error_code ec;
        std::filesystem::remove_all(path, ec);
    }
    ScratchPlace(const ScratchPlace&) = delete;
    ScratchPlace& operator=(const ScratchPlace&) = delete;
    std::string path;
};

void CopyOut(const std::string& from, const std::string& to) {
    const ByteBuffer bytes = binaryOps::ReadFileBytes(from);
    binaryOps::WriteBytesFile(bytes, to);
    NoteWrittenFile(to);
}

int ImportCSV(const std::string& file, const std::string& into, const std::string& out, const std::string& wire) {
    OIFFile doc;
    if (!StartDocument(into, doc)) return ExitFailed;
    if (!FileExists(file)) throw std::runtime_error("Cannot open \"" + file + "\": no such file.");
    const ScratchPlace scratch;
    TempFolderOverride = scratch.path;
    CurrentProject.OIF = doc;
    if (!importcsv(file)) return ExitFailed;
    if (!wire.empty()) CopyOut(TempFolder() + "/stad1.wrl", wire);
    return SaveDocument(CurrentProject.OIF, out);
}

int Quads(const std::vector<std::string>& files, const std::string& out) {
    for (const std::string& file : files)
        if (!FileExists(file)) throw std::runtime_error("Cannot open \"" + file + "\": no such file.");
    // The quad preview is written beside the program's settings; here that is a scratch folder.
    const ScratchPlace scratch;
    AppFolder = scratch.path;
    for (const std::string& file : files)
        if (!importcsvtopolygonpart(file)) return ExitFailed;
    CopyOut(AppPath("stad2.wrl"), out);
    return ExitDone;
}

int Merge(const std::string& in, bool crowdOnly, const std::string& out) {
    OIFFile doc;
    if (!StartDocument(in, doc)) return ExitFailed;
    MergeSameTexture(doc, crowdOnly);
    return SaveDocument(doc, out);
}

int Previews(const std::string& in, const std::string& dir, const std::string& hide) {
    OIFFile doc;
    if (!StartDocument(in, doc)) return ExitFailed;
    TempFolderOverride = dir;
    std::vector<bool> shown = ListedParts(hide, doc.Parts.size(), "--hide");
    shown.flip();
    PreviewViews = StartPreviewViews();
    WritePreviewFiles(doc, PreviewSelection{shown, -1, -1});
    for (const PreviewViewpoint& view : PreviewViews) NoteWrittenFile(ViewFilePath(view.Description));
    return ExitDone;
}

// "P:V" as a part and a vertex index. Throws CLI::ValidationError on anything else.
std::pair<int, int> VertexChoice(const std::string& text) {
    if (text.empty()) return {-1, -1};
    int part = -1, index = -1;
    char colon = 0, rest = 0;
    if (std::sscanf(text.c_str(), "%d%c%d%c", &part, &colon, &index, &rest) != 3 || colon != ':' || part < 0 ||
        index < 0)
        throw CLI::ValidationError("--vertex", "\"" + text + "\" is not PART:VERTEX");
    return {part, index};
}

int Wire(const std::string& in, const std::string& out, const std::string& hide, const std::string& vertex) {
    OIFFile doc;
    if (!StartDocument(in, doc)) return ExitFailed;
    const auto [part, index] = VertexChoice(vertex);
    if (part >= 0 && (static_cast<std::size_t>(part) >= doc.Parts.size() ||
                      static_cast<std::size_t>(index) >= doc.Parts[static_cast<std::size_t>(part)].Vertices.size()))
        throw CLI::ValidationError("--vertex", "the document has no vertex " + std::to_string(index) + " in part " +
                                                   std::to_string(part) + " (both counted from 0)");
    std::vector<bool> shown = ListedParts(hide, doc.Parts.size(), "--hide");
    shown.flip();
    const std::string text = WirePreviewText(doc.Parts, DefaultPreviewScene(), PreviewSelection{shown, part, index});
    binaryOps::WriteBytesFile(ByteBuffer(text.begin(), text.end()), out);
    NoteWrittenFile(out);
    return ExitDone;
}

void DeclareImport(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto file = std::make_shared<std::string>();
    auto into = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    verb.add_option("FILE", *file, "The .oif, .3ds or .o file to import")->required();
    verb.add_option("--into", *into, "The document to add the parts to (default: an empty stadium)");
    verb.add_option("-o", *out, "Where to save the result")->required();
    verb.callback([=, &run] { run = [=] { return Import(*file, *into, *out); }; });
}

void DeclareImportCSV(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto file = std::make_shared<std::string>();
    auto into = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    auto wire = std::make_shared<std::string>();
    verb.add_option("FILE.csv", *file, "The Rhinoceros point table to import")->required();
    verb.add_option("--into", *into, "The document to add the part to (default: an empty stadium)");
    verb.add_option("-o", *out, "Where to save the result")->required();
    verb.add_option("--wire", *wire, "Where to write the wireframe preview of the result");
    verb.callback([=, &run] { run = [=] { return ImportCSV(*file, *into, *out, *wire); }; });
}

void DeclareQuads(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto files = std::make_shared<std::vector<std::string>>();
    auto out = std::make_shared<std::string>();
    verb.add_option("CSV", *files, "Rhinoceros point tables, added in order")->required();
    verb.add_option("-o", *out, "Where to write the quad preview")->required();
    verb.callback([=, &run] { run = [=] { return Quads(*files, *out); }; });
}

void DeclareDump3DS(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto path = std::make_shared<std::string>();
    verb.add_option("FILE.3ds", *path, "The 3DS model to print")->required();
    verb.callback([path, &run] { run = [path] { return Dump3DS(*path); }; });
}

void DeclareMerge(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    auto crowdOnly = std::make_shared<bool>(false);
    verb.add_option("DOC", *in, "The document whose parts to merge")->required();
    verb.add_flag("--crowd-only", *crowdOnly, "Merge only the crowd textures (rw...)");
    verb.add_option("-o", *out, "Where to save the result")->required();
    verb.callback([=, &run] { run = [=] { return Merge(*in, *crowdOnly, *out); }; });
}

void DeclarePreviews(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto dir = std::make_shared<std::string>();
    auto hide = std::make_shared<std::string>();
    verb.add_option("DOC.oif", *in, "The document to preview")->required();
    verb.add_option("DIR", *dir, "The folder to write the preview files into")->required();
    verb.add_option("--hide", *hide, "Parts not shown, e.g. 0,3");
    verb.callback([=, &run] {
        PartIndices(*hide, "--hide");  // a malformed list is a usage error before anything runs
        run = [=] { return Previews(*in, *dir, *hide); };
    });
}

void DeclareWire(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    auto hide = std::make_shared<std::string>();
    auto vertex = std::make_shared<std::string>();
    verb.add_option("DOC.oif", *in, "The document to draw")->required();
    verb.add_option("OUT.wrl", *out, "The wireframe file to write")->required();
    verb.add_option("--hide", *hide, "Parts not shown, e.g. 0,3");
    verb.add_option("--vertex", *vertex, "Mark vertex V of part P, as P:V");
    verb.callback([=, &run] {
        PartIndices(*hide, "--hide");
        VertexChoice(*vertex);
        run = [=] { return Wire(*in, *out, *hide, *vertex); };
    });
}

void DeclareDump(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto path = std::make_shared<std::string>();
    verb.add_option("DOC.oif", *path, "The OIF file to print")->required();
    verb.callback([path, &run] { run = [path] { return Dump(*path); }; });
}

void DeclareResave(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    verb.add_option("IN.oif", *in, "The OIF file to load")->required();
    verb.add_option("OUT.oif", *out, "The file to save it to")->required();
    verb.callback([in, out, &run] { run = [in, out] { return Resave(*in, *out); }; });
}

void DeclareDumpRAV(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto path = std::make_shared<std::string>();
    verb.add_option("FILE.txt", *path, "The RAV exported text to print")->required();
    verb.callback([path, &run] { run = [path] { return DumpRAV(*path); }; });
}

void DeclareRAVScript(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto rav = std::make_shared<std::string>();
    auto script = std::make_shared<std::string>();
    auto texturePath = std::make_shared<std::string>();
    verb.add_option("RAV.txt", *rav, "The RAV exported text of the crowd rows")->required();
    verb.add_option("SCRIPT.txt", *script, "The Rhinoceros script to write")->required();
    verb.add_option("TEXPATH", *texturePath, "What texture file names start with, e.g. /textures/")->required();
    verb.callback([=, &run] { run = [=] { return RAVScript(*rav, *script, *texturePath); }; });
}

}  // namespace

const std::vector<Verb>& Verbs() {
    static const std::vector<Verb> verbs = {
        {"dump", "DOC.oif", "Print an OIF document as JSON", DeclareDump},
        {"resave", "IN.oif OUT.oif", "Load an OIF file and save it again, as the editor's Save does", DeclareResave},
        {"import", "FILE [--into DOC] -o OUT", "Add the parts of an .oif, .3ds or .o file, as Import to OIF does",
         DeclareImport},
        {"import-csv", "FILE.csv [--into DOC] -o OUT [--wire OUT.wrl]",
         "Add a Rhinoceros point table as one part of quads", DeclareImportCSV},
        {"dump-3ds", "FILE.3ds", "Print the meshes and materials of a 3DS model as JSON", DeclareDump3DS},
        {"merge", "DOC [--crowd-only] -o OUT", "Merge parts with the same texture", DeclareMerge},
        {"previews", "DOC.oif DIR [--hide LIST]", "Write the four textured preview files into DIR", DeclarePreviews},
        {"wire", "DOC.oif OUT.wrl [--hide LIST] [--vertex P:V]", "Write the wireframe preview", DeclareWire},
        {"quads", "CSV... -o OUT.wrl", "Draw Rhinoceros point tables into the quad preview", DeclareQuads},
        {"dump-rav", "FILE.txt", "Print RAV exported text as JSON", DeclareDumpRAV},
        {"rav-script", "RAV.txt SCRIPT.txt TEXPATH",
         "Write the Rhinoceros script of a RAV export, as the RAV Convertor does", DeclareRAVScript},
        {"crowds", "FILE.txt|FILE.3ds [--into DOC] -o OUT [--fix-height H] [--seed N]",
         "Deal crowd rows to the crowd parts, as Import Crowds does", DeclareCrowds},
        {"crowd-wizard",
         "(--corners \"X,Y,Z;X,Y,Z;X,Y,Z;X,Y,Z\" | --planes FILE.3ds) [--rows N] [--spacing S] [--row-height H] "
         "[--away] "
         "[--into DOC] -o OUT [--seed N]",
         "Fill planes with crowd rows, as the Crowd Building Wizard does", DeclareCrowdWizard},
        {"adboards", "FILE.3ds [--into DOC] -o OUT", "Add adboard parts, as Import Adboards does", DeclareAdboards},
        {"banners", "FILE.3ds [--away] [--into DOC] -o OUT", "Add banner and flag parts, as Import Banners does",
         DeclareBanners},
        {"light", "DOC [--origin P] -o OUT", "Light every vertex by its distance, as the Stadium Lighting Wizard does",
         DeclareLight},
        {"transform",
         "DOC [--parts LIST] [--scale X,Y,Z] [--rotate X,Y,Z] [--translate X,Y,Z] [--mirror AXES] [--flip-u] "
         "[--flip-v] -o OUT",
         "Scale, rotate, translate and mirror parts, as the Stadium Transformation Wizard does", DeclareTransform},
        {"textures", "MODEL --textures DIR", "Print the textures of a model, as the Stadium Importer lists them",
         DeclareTextures},
        {"atlas",
         "MODEL --textures DIR --layout LAYOUT.json --bitmap OUT.bmp [--into DOC] -o OUT [--texture NAME] "
         "[--sheet 512x512|256x512] [--flip-u 0|1] [--flip-v 0|1] [--shade 0|1] [--merge 0|1] [--merge-dist M]",
         "Paint a model's textures into one bitmap and add its part, as the Stadium Importer does", DeclareAtlas},
    };
    return verbs;
}
