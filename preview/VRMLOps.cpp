#include "preview/VRMLOps.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "core/Desktop.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "shell/IniOps.h"
#include "shell/fileOps.h"

std::vector<PreviewViewpoint> PreviewViews = StartPreviewViews();

namespace {

const std::string Blanks15(15, ' ');
const std::string Blanks18(18, ' ');

void WriteTextFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out) out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out) throw std::runtime_error("Cannot write \"" + path + "\": " + std::strerror(errno) + ".");
}

void AppendTextFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::app);
    if (out) out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out) throw std::runtime_error("Cannot write \"" + path + "\": " + std::strerror(errno) + ".");
}

std::string Flag(std::int16_t flag) { return flag ? "1" : "0"; }

std::string Point(float x, float y, float z) { return SingleText(x) + " " + SingleText(y) + " " + SingleText(z); }

// The per-vertex and per-index lines are built in place: no text is made per number.
void AddPointLine(std::string& b, float x, float y, float z, bool comma) {
    b.append(18, ' ');
    AppendSingleText(b, x);
    b += ' ';
    AppendSingleText(b, y);
    b += ' ';
    AppendSingleText(b, z);
    if (comma) b += ',';
    b += "\r\n";
}

void AppendIndex(std::string& b, long value) {
    char buf[24];
    b.append(buf, std::to_chars(buf, buf + sizeof buf, value).ptr);
}

// The head both single-file writers share: comments and the outer transform.
void AddFileHead(std::string& b, const PreviewScene& scene) {
    AddLine(b, "#VRML V2.0 utf8");
    AddLine(b, "#VORN Terramason Generated VRML File");
    AddLine(b, "");
    AddLine(b, "Transform {");
    AddLine(b, "   rotation ");
    AddLine(b, Flag(scene.RotateX) + " " + Flag(scene.RotateY) + " " + Flag(scene.RotateZ) + " " +
                   DoubleText(static_cast<double>(scene.RotateAngle) * 3.14159265358979 / 180));
    AddLine(b, "   children [");
}

// Lines 1-10 of a wire shape: everything up to the opening of its point list.
void AddWireShapeHead(std::string& b, const PreviewScene& scene) {
    AddLine(b, "");
    AddLine(b, "      Shape {");
    AddLine(b, "         appearance Appearance {");
    AddLine(b, "            material Material {");
    AddLine(b, "               emissiveColor " + DoubleText(scene.ColourR / 255.0) + " " +
                   DoubleText(scene.ColourG / 255.0) + " " + DoubleText(scene.ColourB / 255.0));
    AddLine(b, "            }");
    AddLine(b, "         }");
    AddLine(b, "         geometry IndexedLineSet {");
    AddLine(b, "            coord Coordinate {");
    AddLine(b, "               point [");
}

void AddSceneViewpoints(std::string& b, const PreviewScene& scene) {
    const std::size_t count = std::min<std::size_t>(
        scene.Viewpoints.size(), scene.ViewpointCount > 0 ? static_cast<std::size_t>(scene.ViewpointCount) : 0);
    for (std::size_t i = 0; i < count; ++i) {
        AddLine(b, ViewpointText(scene.Viewpoints[i]));
        AddLine(b, "");
    }
}

bool Stitch(std::int16_t a, std::int16_t b, std::int16_t c) { return a == b || b == c || a == c; }

// The strip walk of the textured files: every window of three is a triangle or a comment.
void AddFaceStrip(std::string& b, const std::vector<std::int16_t>& indices) {
    for (std::size_t i = 0; i + 2 < indices.size(); ++i) {
        PumpEvents();
        const std::int16_t x = indices[i], y = indices[i + 1], z = indices[i + 2];
        if (Stitch(x, y, z)) {
            AddLine(b, "              ## Not a triangle ##");
            continue;
        }
        b.append(15, ' ');
        AppendIndex(b, x);
        b += ' ';
        AppendIndex(b, y);
        b += ' ';
        AppendIndex(b, z);
        b += " -1\r\n";
    }
}

std::string TempPath(const std::string& name) { return TempFolder() + "/" + name; }

}  // namespace

void AddLine(std::string& buffer, const std::string& text) {
    buffer += text;
    buffer += "\r\n";
}

void AddText(std::string& buffer, const std::string& text) { buffer += text; }

std::string ViewpointText(const PreviewViewpoint& v) {
    std::string b;
    AddLine(b, "Viewpoint {");
    AddLine(b, "   position " + Point(v.PositionX, v.PositionY, v.PositionZ));
    AddLine(b,
            "   orientation " + Flag(v.AxisX) + " " + Flag(v.AxisY) + " " + Flag(v.AxisZ) + " " + SingleText(v.Angle));
    AddLine(b, "   description \"" + v.Description + "\"");
    AddLine(b, "}");
    AddLine(b, "");
    return b;
}

std::string WirePreviewText(const std::vector<OIFPart>& parts, const PreviewScene& scene,
                            const PreviewSelection& selection) {
    std::string b;
    AddFileHead(b, scene);
    for (std::size_t p = 0; p < parts.size(); ++p) {
        PumpEvents();
        if (!selection.Shows(p)) continue;
        const OIFPart& part = parts[p];
        AddWireShapeHead(b, scene);
        for (std::size_t v = 0; v < part.Vertices.size(); ++v) {
            PumpEvents();
            const OIFVertex& x = part.Vertices[v];
            AddPointLine(b, x.X, x.Y, x.Z, v + 1 < part.Vertices.size());
        }
        AddLine(b, "               ]");
        AddLine(b, "            }");
        AddLine(b, "            coordIndex [");
        const std::vector<std::int16_t>& idx = part.Indices;
        for (std::size_t i = 0; i + 2 < idx.size(); ++i) {
            PumpEvents();
            const std::string a = IndexText(idx[i]), bb = IndexText(idx[i + 1]), c = IndexText(idx[i + 2]);
            if (Stitch(idx[i], idx[i + 1], idx[i + 2])) continue;
            AddLine(b, Blanks15 + a + " " + bb + " -1");
            AddLine(b, Blanks15 + bb + " " + c + " -1");
            AddLine(b, Blanks15 + a + " " + c + " -1");
        }
        AddLine(b, "            ]");
        AddLine(b, "         }");
        AddLine(b, "      }");
    }
    AddLine(b, "   ]");
    AddLine(b, "}");
    AddLine(b, "");
    const bool marked =
        selection.part >= 0 && selection.vertex >= 0 && static_cast<std::size_t>(selection.part) < parts.size() &&
        static_cast<std::size_t>(selection.vertex) < parts[static_cast<std::size_t>(selection.part)].Vertices.size();
    if (marked) {
        const OIFVertex& v =
            parts[static_cast<std::size_t>(selection.part)].Vertices[static_cast<std::size_t>(selection.vertex)];
        for (const char* line : {"Transform {"}) AddLine(b, line);
        AddLine(b, "   translation " + Point(v.X, v.Y, v.Z));
        for (const char* line : {"   children [", "      Shape {", "         geometry Sphere {", "            radius 1",
                                 "         }", "      }", "   ]", "}", ""})
            AddLine(b, line);
        PreviewViewpoint vp;
        vp.Description = "Vertex";
        vp.PositionX = v.X;
        vp.PositionY = v.Y;
        vp.PositionZ = v.Z + 100;
        // Ahead of the scene's viewpoints, so that the viewer opens on the selected vertex.
        AddLine(b, ViewpointText(vp));
        AddLine(b, "");
    }
    AddSceneViewpoints(b, scene);
    return b;
}

void WriteWirePreview(const std::vector<OIFPart>& parts, const PreviewScene& scene, const PreviewSelection& selection) {
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading("Loading stadium preview...");
    const std::string path = TempPath("stad1.wrl");
    try {
        const std::string text = WirePreviewText(parts, scene, selection);
        std::error_code ec;
        std::filesystem::create_directories(TempFolder(), ec);
        WriteTextFile(path, text);
    } catch (...) {
        desktop.HideLoading();
        throw;
    }
    TheViews().ShowWirePreview(path);
    desktop.HideLoading();
}

std::string QuadPreviewText(const std::vector<PolygonPart>& polygons, const PreviewScene& scene) {
    std::string b;
    AddFileHead(b, scene);
    for (const PolygonPart& poly : polygons) {
        PumpEvents();
        AddWireShapeHead(b, scene);
        const int count = poly.Count > 0 ? poly.Count : 0;
        for (int q = 0; q < count; ++q) {
            for (int k = 0; k < 4; ++k) {
                const std::size_t at = static_cast<std::size_t>(4 * q + k);
                const OIFVertex v = at < poly.Vertices.size() ? poly.Vertices[at] : OIFVertex{};
                const bool lastCorner = q == count - 1 && k == 3;
                AddLine(b, Blanks18 + Point(v.X, v.Y, v.Z) + (lastCorner ? "" : ","));
            }
        }
        AddLine(b, "               ]");
        AddLine(b, "            }");
        AddLine(b, "            coordIndex [");
        for (int q = 0; q <= count; ++q) {
            const std::int32_t k = 4 * q;
            auto n = [](std::int32_t value) { return std::to_string(value); };
            AddLine(b, Blanks15 + n(k) + " " + n(k + 1) + " -1");
            AddLine(b, Blanks15 + n(k + 1) + " " + n(k + 2) + " -1");
            AddLine(b, Blanks15 + n(k + 2) + " " + n(k + 3) + " -1");
            AddLine(b, Blanks15 + n(k) + " " + n(k + 3) + " -1");
        }
        AddLine(b, "            ]");
        AddLine(b, "         }");
        AddLine(b, "      }");
    }
    AddLine(b, "   ]");
    AddLine(b, "}");
    AddLine(b, "");
    AddSceneViewpoints(b, scene);
    return b;
}

void WriteQuadPreview(const std::vector<PolygonPart>& polygons, const PreviewScene& scene) {
    WriteTextFile(AppPath("stad2.wrl"), QuadPreviewText(polygons, scene));
}

std::vector<PreviewViewpoint> StartPreviewViews() {
    auto view = [](const char* name, float y, float z, float rx, float ry) {
        PreviewViewpoint v;
        v.Description = name;
        v.PositionY = y;
        v.PositionZ = z;
        v.SceneRotationX = rx;
        v.SceneRotationY = ry;
        return v;
    };
    return {view("Top", 0, 30000, 1.57f, 0), view("Right", 1500, 20000, 0, 1.57f), view("Back", 1500, 20000, 0, -3.14f),
            view("Perspective", 1500, 30000, 0.74f, -0.74f)};
}

bool PreviewsOn() { return PreviewRefreshOn && ReadConfigFlag("Terramason", "Previews"); }

std::string ViewFilePath(const std::string& description) { return TempPath(description + ".wrl"); }

std::string ViewHeaderText(const OIFFile& doc, const PreviewViewpoint& view) {
    std::string b;
    AddLine(b, "#VRML V2.0 utf8");
    AddLine(b, "#VORN Terramason Generated VRML File");
    AddLine(b, std::string(41, '#'));
    AddLine(b, "");
    AddLine(b, "## Number of parts = " + std::to_string(doc.Header.PartCount));
    AddLine(b, "");
    AddText(b, ViewpointText(view));
    AddLine(b, "Transform {");
    AddLine(b, "   rotation 0 0 1 " + SingleText(view.SceneRotationZ));
    AddLine(b, "   children [");
    AddLine(b, "Transform {");
    AddLine(b, "   rotation 1 0 0 " + SingleText(view.SceneRotationX));
    AddLine(b, "   children [");
    AddLine(b, "Transform {");
    AddLine(b, "   rotation 0 1 0 " + SingleText(view.SceneRotationY));
    AddLine(b, "   children [");
    return b;
}

std::string PartFileText(const OIFPart& part, int index) {
    std::string b;
    // About 60 bytes a vertex and 20 an index: one allocation for the whole part.
    b.reserve(512 + part.Vertices.size() * 64 + part.Indices.size() * 40);
    AddLine(b, "## Part Number = " + std::to_string(index));
    AddLine(b, "## Number of Vertices = " + std::to_string(part.Header.VertexCount));
    AddLine(b, "## Number of Indices = " + std::to_string(part.Header.IndexCount));
    AddLine(b, "");
    for (const char* line : {"      Shape {", "         appearance Appearance {", "            texture ImageTexture {"})
        AddLine(b, line);
    AddLine(b, "               url \"" + part.Header.Texture.str() + ".png\"");
    for (const char* line : {"            }", "         }", "         geometry IndexedFaceSet {",
                             "            coord Coordinate {", "               point ["})
        AddLine(b, line);
    const std::size_t n = part.Vertices.size();
    for (std::size_t v = 0; v < n; ++v) {
        PumpEvents();
        const OIFVertex& x = part.Vertices[v];
        AddPointLine(b, x.X, x.Y, x.Z, v + 1 < n);
    }
    AddLine(b, "               ]");
    AddLine(b, "            }");
    AddLine(b, "            coordIndex [");
    AddFaceStrip(b, part.Indices);
    AddLine(b, "            ]");
    AddLine(b, "            texCoord TextureCoordinate {");
    AddLine(b, "               point [");
    for (std::size_t v = 0; v < n; ++v) {
        PumpEvents();
        const OIFVertex& x = part.Vertices[v];
        // The image's rows run downward; the texture's V runs upward.
        b.append(18, ' ');
        AppendSingleText(b, x.U);
        b += ' ';
        AppendSingleText(b, -x.V);
        if (v + 1 < n) b += ',';
        b += "\r\n";
    }
    AddLine(b, "               ]");
    AddLine(b, "            }");
    AddLine(b, "            texCoordIndex [");
    AddFaceStrip(b, part.Indices);
    for (const char* line : {"            ]", "         solid FALSE", "         }", "      }", ""}) AddLine(b, line);
    return b;
}

void WriteViewHeader(const OIFFile& doc, const PreviewViewpoint& view) {
    WriteTextFile(TempPath(view.Description + ".tmp"), ViewHeaderText(doc, view));
}

void WritePartFiles(const OIFFile& doc) {
    for (std::size_t p = 0; p < doc.Parts.size(); ++p) {
        PumpEvents();
        WriteTextFile(TempPath("Part_" + std::to_string(p) + ".tmp"), PartFileText(doc.Parts[p], static_cast<int>(p)));
    }
}

void AssembleParts(const OIFFile& doc, const PreviewSelection& selection) {
    const std::string parts = TempPath("Parts.tmp");
    WriteTextFile(parts, "");
    for (std::size_t p = 0; p < doc.Parts.size(); ++p)
        if (selection.Shows(p)) AppendFile(TempPath("Part_" + std::to_string(p) + ".tmp"), parts);
    std::string tail;
    for (int k = 0; k < 3; ++k) {
        AddLine(tail, "   ]");
        AddLine(tail, "}");
    }
    AppendTextFile(parts, tail);
}

void InstallView(const PreviewViewpoint& view) {
    const std::string head = TempPath(view.Description + ".tmp");
    const std::string file = ViewFilePath(view.Description);
    Views& views = TheViews();
    views.ReleaseView(view.Description);
    std::error_code ec;
    std::filesystem::copy_file(head, file, std::filesystem::copy_options::overwrite_existing, ec);
    if (ec) throw std::runtime_error("Cannot write \"" + file + "\": " + ec.message() + ".");
    AppendFile(TempPath("Parts.tmp"), file);
    views.LoadView(view.Description, file);
}

void WritePreviewFiles(const OIFFile& doc, const PreviewSelection& selection) {
    std::error_code ec;
    std::filesystem::create_directories(TempFolder(), ec);
    for (const PreviewViewpoint& view : PreviewViews) WriteViewHeader(doc, view);
    WritePartFiles(doc);
    AssembleParts(doc, selection);
    for (const PreviewViewpoint& view : PreviewViews) InstallView(view);
}

void RebuildPreviews(const OIFFile& doc, const PreviewSelection& selection) {
    if (!PreviewsOn()) return;
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading("Loading stadium previews...");
    try {
        WritePreviewFiles(doc, selection);
    } catch (...) {
        desktop.HideLoading();
        throw;
    }
    desktop.HideLoading();
}

void ReloadPreviews(const OIFFile& doc, const PreviewSelection& selection) {
    if (!PreviewsOn()) return;
    Desktop& desktop = TheDesktop();
    desktop.ShowLoading("Loading stadium previews...");
    try {
        AssembleParts(doc, selection);
        for (const PreviewViewpoint& view : PreviewViews) InstallView(view);
        for (const char* name : {"Top", "Right", "Back", "Perspective"}) TheViews().LoadView(name, ViewFilePath(name));
    } catch (...) {
        desktop.HideLoading();
        throw;
    }
    desktop.HideLoading();
}

bool StartPreviews(const OIFFile& doc, const PreviewSelection& selection) {
    if (!ReadConfigFlag("Terramason", "Previews")) return false;
    PreviewViews = StartPreviewViews();
    RebuildPreviews(doc, selection);
    return true;
}

std::array<int, PreviewWindowCount> PreviewRenderFlags() {
    std::array<int, PreviewWindowCount> flags;
    flags.fill(RenderUntextured);
    if (ReadConfigFlag("Previews", "PerspectiveTex")) flags[ViewPerspective] = RenderTextured;
    return flags;
}
