#include "cli/WizardVerbs.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "core/myOps.h"
#include "wizards/AdboardOps.h"
#include "wizards/CrowdModule.h"
#include "wizards/LightingOps.h"
#include "wizards/TransformOps.h"

namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(separator, start)) != std::string::npos; start = end + 1)
        pieces.push_back(text.substr(start, end - start));
    pieces.push_back(text.substr(start));
    return pieces;
}

// "X,Y,Z" as the three texts of a row of boxes.
std::array<std::string, 3> Triple(const std::string& text, const std::string& option) {
    const std::vector<std::string> xyz = Split(text, ',');
    if (xyz.size() != 3) throw CLI::ValidationError(option, "\"" + text + "\" is not X,Y,Z");
    return {xyz[0], xyz[1], xyz[2]};
}

void RequireFile(const std::string& path) {
    if (!FileExists(path)) throw std::runtime_error("Cannot open \"" + path + "\": no such file.");
}

// Runs `change` on the document of --into as the current project and saves the result.
int ChangeDocument(const std::string& into, const std::string& out, const std::function<bool()>& change) {
    OIFFile doc;
    if (!StartDocument(into, doc)) return ExitFailed;
    CurrentProject.OIF = doc;
    if (!change()) return ExitFailed;
    return SaveDocument(CurrentProject.OIF, out);
}

// --seed: one seeding before the run, so that the run can be repeated.
void AddSeed(CLI::App& verb, std::shared_ptr<std::optional<std::uint64_t>> seed) {
    verb.add_option_function<std::uint64_t>(
        "--seed", [seed](std::uint64_t n) { *seed = n; }, "Seed the random draws, so that a run can be repeated");
}

void Seed(const std::optional<std::uint64_t>& seed) {
    if (seed) SeedRandom(*seed);
}

struct DocumentOptions {
    std::string into, out;
};

std::shared_ptr<DocumentOptions> AddDocumentOptions(CLI::App& verb) {
    auto options = std::make_shared<DocumentOptions>();
    verb.add_option("--into", options->into, "The document to add to (default: an empty stadium)");
    verb.add_option("-o", options->out, "Where to save the result")->required();
    return options;
}

}  // namespace

void DeclareCrowds(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto file = std::make_shared<std::string>();
    auto height = std::make_shared<std::string>();
    auto seed = std::make_shared<std::optional<std::uint64_t>>();
    verb.add_option("FILE", *file, "The crowd rows: RAV exported text (.txt) or a 3DS model (.3ds)")->required();
    auto doc = AddDocumentOptions(verb);
    verb.add_option("--fix-height", *height, "Fix the row heights to H (the row height question answered Yes)");
    AddSeed(verb, seed);
    verb.callback([=, &run] {
        const std::string extension = FileExtension(*file);
        if (extension != "txt" && extension != "3ds") throw CLI::ValidationError("FILE", "must be a .txt or .3ds file");
        run = [=] {
            RequireFile(*file);
            Seed(*seed);
            const auto h = static_cast<float>(LeadingNumber(*height));
            return ChangeDocument(doc->into, doc->out, [&] { return ImportCrowdFile(*file, h); });
        };
    });
}

void DeclareCrowdWizard(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto corners = std::make_shared<std::string>();
    auto input = std::make_shared<CrowdWizardInput>();
    auto spacing = std::make_shared<std::string>();
    auto away = std::make_shared<bool>(false);
    auto seed = std::make_shared<std::optional<std::uint64_t>>();
    CLI::Option* byCorners =
        verb.add_option("--corners", *corners, "The plane: Bottom Left;Bottom Right;Top Right;Top Left, each X,Y,Z");
    CLI::Option* byPlanes = verb.add_option("--planes", input->file, "A 3DS model whose four-vertex meshes are planes");
    byCorners->excludes(byPlanes);
    verb.add_option("--rows", input->rows, "The number of rows (\"Fixed\")");
    verb.add_option("--spacing", *spacing, "Count the rows by this crowd spacing instead");
    verb.add_option("--row-height", input->rowHeight, "How high each row is");
    verb.add_flag("--away", *away, "An away crowd (default: home)");
    auto doc = AddDocumentOptions(verb);
    AddSeed(verb, seed);
    verb.callback([=, &run] {
        if (!byCorners->count() && !byPlanes->count()) throw CLI::ValidationError("--corners", "or --planes is needed");
        input->fromFile = byPlanes->count() > 0;
        if (!input->fromFile) {
            const std::vector<std::string> points = Split(*corners, ';');
            if (points.size() != 4) throw CLI::ValidationError("--corners", "needs four corners separated by ;");
            for (std::size_t i = 0; i < 4; ++i) {
                const std::array<std::string, 3> xyz = Triple(points[i], "--corners");
                input->x[i] = xyz[0];
                input->y[i] = xyz[1];
                input->z[i] = xyz[2];
            }
        }
        input->bySpacing = !spacing->empty();
        if (input->bySpacing) input->spacing = *spacing;
        input->home = !*away;
        run = [=] {
            if (input->fromFile) RequireFile(input->file);
            Seed(*seed);
            return ChangeDocument(doc->into, doc->out, [&] {
                bool read = true;
                CurrentProject.OIF = MakeCrowds(CurrentProject.OIF, *input, &read);
                return read;
            });
        };
    });
}

void DeclareAdboards(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto file = std::make_shared<std::string>();
    verb.add_option("FILE.3ds", *file, "The 3DS model whose four-vertex meshes are boards")->required();
    auto doc = AddDocumentOptions(verb);
    verb.callback([=, &run] {
        run = [=] {
            RequireFile(*file);
            return ChangeDocument(doc->into, doc->out, [&] { return Is3DSModel(*file) && ImportAdboardFile(*file); });
        };
    });
}

void DeclareBanners(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto file = std::make_shared<std::string>();
    auto away = std::make_shared<bool>(false);
    verb.add_option("FILE.3ds", *file, "The 3DS model whose four-vertex meshes are banners and flags")->required();
    verb.add_flag("--away", *away, "The away team's (the home question answered No)");
    auto doc = AddDocumentOptions(verb);
    verb.callback([=, &run] {
        run = [=] {
            RequireFile(*file);
            return ChangeDocument(doc->into, doc->out,
                                  [&] { return Is3DSModel(*file) && ImportBannerFile(*file, !*away); });
        };
    });
}

void DeclareLight(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto origin = std::make_shared<std::string>("80");
    auto out = std::make_shared<std::string>();
    verb.add_option("DOC", *in, "The document to light")->required();
    verb.add_option("--origin", *origin, "The brightness at the origin in percent (default 80)");
    verb.add_option("-o", *out, "Where to save the result")->required();
    verb.callback([=, &run] {
        run = [=]() -> int {
            OIFFile doc;
            if (!StartDocument(*in, doc)) return ExitFailed;
            OIFFile lit = ApplyLighting(doc, *origin);
            return SaveDocument(lit, *out);
        };
    });
}

void DeclareTransform(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    auto parts = std::make_shared<std::string>();
    auto scale = std::make_shared<std::string>("100,100,100");
    auto rotate = std::make_shared<std::string>("0.00,0.00,0.00");
    auto translate = std::make_shared<std::string>("0.00,0.00,0.00");
    auto mirror = std::make_shared<std::string>();
    auto settings = std::make_shared<TransformSettings>();
    verb.add_option("DOC", *in, "The document to transform")->required();
    verb.add_option("--parts", *parts, "The parts to transform, e.g. 0,3 (default: all)");
    verb.add_option("--scale", *scale, "Percent in x, y, z");
    verb.add_option("--rotate", *rotate, "Degrees about x, y, z (turned about Y, then X, then Z)");
    verb.add_option("--translate", *translate, "Game units in x, y, z");
    verb.add_option("--mirror", *mirror, "The axes to negate, any of x, y, z");
    verb.add_flag("--flip-u", settings->flipU, "u becomes 1 - u");
    verb.add_flag("--flip-v", settings->flipV, "v becomes 1 - v");
    verb.add_option("-o", *out, "Where to save the result")->required();
    verb.callback([=, &run] {
        PartIndices(*parts, "--parts");
        settings->scale = Triple(*scale, "--scale");
        settings->rotate = Triple(*rotate, "--rotate");
        settings->translate = Triple(*translate, "--translate");
        for (char axis : *mirror) {
            if (axis < 'x' || axis > 'z') throw CLI::ValidationError("--mirror", "takes the letters x, y and z");
            settings->mirror[static_cast<std::size_t>(axis - 'x')] = true;
        }
        run = [=]() -> int {
            OIFFile doc;
            if (!StartDocument(*in, doc)) return ExitFailed;
            // All parts are ticked unless a list names some.
            settings->parts = ListedParts(*parts, doc.Parts.size(), "--parts");
            if (parts->empty()) settings->parts.assign(doc.Parts.size(), true);
            OIFFile moved = TransformParts(doc, *settings);
            return SaveDocument(moved, *out);
        };
    });
}
