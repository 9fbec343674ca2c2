#include "wizards/AdboardOps.h"

#include <array>
#include <functional>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "wizards/CrowdModule.h"

namespace {

void SetUVs(RAVPolygon& polygon, const std::array<std::array<float, 2>, 4>& uv) {
    for (std::size_t i = 0; i < 4; ++i) {
        polygon.vertices[i].U = uv[i][0];
        polygon.vertices[i].V = uv[i][1];
    }
}

void AddQuad(PolygonPart& quads, const RAVPolygon& polygon) {
    if (quads.Count == INT16_MAX) throw std::runtime_error("A part of boards or banners holds at most 32767 quads.");
    const std::vector<OIFVertex>& v = polygon.vertices;
    quads.Vertices.insert(quads.Vertices.end(), {v[2], v[1], v[0], v[3]});
    quads.Count += 1;
}

// Adds a part of each non-empty list, named after the part count and its texture.
OIFFile AddQuadParts(OIFFile doc, const std::vector<PolygonPart>& lists) {
    for (const PolygonPart& quads : lists) {
        if (quads.Count == 0) continue;
        OIFPart part = MakePartFromQuads(quads);
        part.Header.Name = "Part " + std::to_string(doc.Parts.size()) + " [" + quads.Texture.str() + "]";
        doc = AddPart(part, doc);
    }
    return doc;
}

bool IsQuad(const RAVPolygon& polygon) { return polygon.groups.size() == 1 && polygon.vertices.size() >= 4; }

RAVFile ListOfMeshes(const Model3DS& model, const std::function<std::string(int)>& groupOf) {
    RAVFile list;
    int n = 0;
    for (const Mesh3DS* mesh : FourVertexMeshes(model))
        list = AppendCrowdRows({QuadFrom3DSMesh(*mesh)}, groupOf(n++), std::move(list));
    return list;
}

// The file a command was given, or "" when it ends here: cancelled, missing, or not a 3DS file.
std::string ChosenModel(const char* title) {
    const std::string path = TheDesktop().OpenFile(title, AdboardFilter, "", "");
    return path.empty() || !FileExists(path) || !Is3DSModel(path) ? std::string() : path;
}

void ShowChange(const OIFFile& doc) {
    CurrentProject.OIF = doc;
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
}

}  // namespace

bool Is3DSModel(const std::string& path) {
    if (FileExtension(path) == "3ds") return true;
    ShowMessage(UnknownExtensionMessage, MessageIcon::Exclamation, ShortTitle);
    return false;
}

RAVFile AdboardList(const Model3DS& model) {
    return ListOfMeshes(model, [](int n) { return std::string("adb") + static_cast<char>('a' + n % 3); });
}

RAVFile BannerList(const Model3DS& model, const std::string& team) {
    return ListOfMeshes(model, [&](int n) {
        const int k = n % 6;
        return team + (k % 2 == 0 ? "bn" : "fl") + static_cast<char>('a' + k / 2);
    });
}

OIFFile BuildAdboardParts(const OIFFile& doc, RAVFile list) {
    // Three boards to a texture's height, in single-float thirds.
    static constexpr float bands[3][2] = {{0.0f, 0.33f}, {0.33f, 0.66f}, {0.66f, 1.0f}};
    std::vector<PolygonPart> boards(3);
    for (int i = 0; i < 3; ++i)
        boards[static_cast<std::size_t>(i)].Texture = std::string("adb") + static_cast<char>('a' + i);
    int band = 0;
    for (RAVPolygon& polygon : list.polygons) {
        if (!IsQuad(polygon)) continue;
        const float top = bands[band][0], bottom = bands[band][1];
        SetUVs(polygon, {{{0, bottom}, {1, bottom}, {1, top}, {0, top}}});
        band = (band + 1) % 3;
        const std::string& group = polygon.groups[0].name;
        AddQuad(boards[group == "adba" ? 0 : group == "adbb" ? 1 : 2], polygon);
    }
    return AddQuadParts(doc, boards);
}

OIFFile BuildBannerParts(const OIFFile& doc, RAVFile list) {
    static constexpr const char* names[6] = {"bna", "bnb", "bnc", "fla", "flb", "flc"};
    std::vector<PolygonPart> lists(6);
    std::string team;
    for (RAVPolygon& polygon : list.polygons) {
        if (!IsQuad(polygon)) continue;
        SetUVs(polygon, {{{0, 1}, {1, 1}, {1, 0}, {0, 0}}});
        const std::string& group = polygon.groups[0].name;
        // The last group read names the team of them all.
        team = group.substr(0, 1);
        const bool banner = group.size() >= 3 && group.compare(1, 2, "bn") == 0;
        const char last = group.empty() ? '\0' : group.back();
        const std::size_t which = last == 'a' ? 0 : last == 'b' ? 1 : 2;
        AddQuad(lists[(banner ? 0 : 3) + which], polygon);
    }
    for (std::size_t i = 0; i < 6; ++i) lists[i].Texture = team + names[i];
    return AddQuadParts(doc, lists);
}

bool ImportAdboardFile(const std::string& path) {
    if (!Read3DSFile(path)) return false;
    ShowChange(BuildAdboardParts(CurrentProject.OIF, AdboardList(Table3DS)));
    return true;
}

bool ImportBannerFile(const std::string& path, bool home) {
    if (!Read3DSFile(path)) return false;
    ShowChange(BuildBannerParts(CurrentProject.OIF, BannerList(Table3DS, home ? "h" : "a")));
    return true;
}

void importadboard() {
    const std::string path = ChosenModel(ImportAdboardTitle);
    if (!path.empty()) ImportAdboardFile(path);
}

void importbanner() {
    const std::string path = ChosenModel(ImportBannerTitle);
    if (path.empty()) return;
    const bool home = AskQuestion(HomeBannersQuestion, MessageButtons::YesNo, MessageIcon::Question, ShortTitle) ==
                      MessageAnswer::Yes;
    ImportBannerFile(path, home);
}
