#pragma once
// The preview files: the wireframe file of the document, the quad file of an imported point
// table, and the four textured views assembled from per-view heads and per-part bodies, so that
// a change costs only what it has to (a rebuild rewrites all, a change of shown parts rejoins,
// a view change rewrites one head).
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/Views.h"
#include "core/oif.h"
#include "preview/PreviewViewOps.h"

// Buffer helpers of the writers: a line ends in CR LF.
void AddLine(std::string& buffer, const std::string& text);
void AddText(std::string& buffer, const std::string& text);

// One Viewpoint block, its lines ending in CR LF, with an empty line behind the closing brace.
std::string ViewpointText(const PreviewViewpoint& viewpoint);

// The wireframe file of the shown parts, with a marker and a "Vertex" viewpoint on the
// selected vertex.
std::string WirePreviewText(const std::vector<OIFPart>& parts, const PreviewScene& scene,
                            const PreviewSelection& selection);
// Writes it to temp/stad1.wrl and has the wireframe window show it.
void WriteWirePreview(const std::vector<OIFPart>& parts, const PreviewScene& scene, const PreviewSelection& selection);

// The quad file of a list of polygon parts. Its index block names one quad more than there are
// points, as the format has always done.
std::string QuadPreviewText(const std::vector<PolygonPart>& polygons, const PreviewScene& scene);
// Writes it to stad2.wrl in AppFolder. No window shows this file.
void WriteQuadPreview(const std::vector<PolygonPart>& polygons, const PreviewScene& scene);

// The four views of the textured previews: Top, Right, Back, Perspective.
extern std::vector<PreviewViewpoint> PreviewViews;
std::vector<PreviewViewpoint> StartPreviewViews();

// Previews are on when "Terramason"/"Previews" is "1" and PreviewRefreshOn is true.
bool PreviewsOn();

// A part as its file describes it to a VRML reader: every number as its text reads back, and the
// faces as both index blocks list them. The writer keeps it, so that the windows can show the
// files without reading them back.
struct PartShape {
    int Number = 0;                   // the part's index in the document
    std::string Picture;              // the file name of its texture's url, "<texture>.png"
    std::vector<float> Points;        // x y z of each vertex
    std::vector<float> TexPoints;     // u and -v of each vertex
    std::vector<std::int16_t> Strip;  // the index list as printed
    bool operator==(const PartShape&) const = default;
};
// Whether the window of three indices a, b, c of a strip is a face of the part's file; a window
// with two equal indices is a stitch between strip runs.
bool IsFace(std::int16_t a, std::int16_t b, std::int16_t c);
using PartShapes = std::vector<std::shared_ptr<const PartShape>>;

std::string ViewHeaderText(const OIFFile& doc, const PreviewViewpoint& view);
// The file of one part; with `shape` also what that file describes.
std::string PartFileText(const OIFPart& part, int index, PartShape* shape = nullptr);

void WriteViewHeader(const OIFFile& doc, const PreviewViewpoint& view);
void WritePartFiles(const OIFFile& doc);
void AssembleParts(const OIFFile& doc, const PreviewSelection& selection);
void InstallView(const PreviewViewpoint& view);
// WriteViewHeader and InstallView after a zoom, pan or turn, whose picture has moved already: the view file, which
// for a large stadium runs to hundreds of megabytes, is joined by a thread of its own under a
// temporary name that replaces it when whole, so a reader meets the old file or the new one,
// never half of one. A later change of the same view before the write began takes its place.
void InstallViewLater(const OIFFile& doc, const PreviewViewpoint& view);
// Waits until every view file asked for is written. A write that failed is thrown from here
// (and from the next InstallViewLater), where a command can tell it.
void FinishViewFiles();

// Writes every file of the four views and has their windows load them.
void WritePreviewFiles(const OIFFile& doc, const PreviewSelection& selection);
// Full rewrite of the four views with the progress window up; nothing when previews are off.
void RebuildPreviews(const OIFFile& doc, const PreviewSelection& selection);
// Rejoins the part files after a change of the shown parts; nothing when previews are off.
void ReloadPreviews(const OIFFile& doc, const PreviewSelection& selection);

// The file of a view in the scratch folder, e.g. temp/Top.wrl.
std::string ViewFilePath(const std::string& description);

// What a view file holds, as the writers made it: the view its head was written from and the
// shapes of the parts joined behind the head, in order. The four files of a rebuild share one
// Parts, so a window can tell from it alone whether a new file differs from the old in its head.
struct ViewFileContents {
    PreviewViewpoint Head;
    std::shared_ptr<const PartShapes> Parts;
};
// The contents of the file at path as InstallView last wrote it; nothing for a file the writers
// cannot vouch for (not a view file, or its parts file not written by AssembleParts from the part
// files of this program's last WritePartFiles).
std::optional<ViewFileContents> WrittenViewFile(const std::string& path);

// The part of loadviews that needs no window. With "Terramason"/"Previews" other than "1" it
// does nothing and returns false: the windows are not opened. Otherwise every view goes back to
// its start, whatever zoom, pan or turn it had, and the files are rebuilt.
bool StartPreviews(const OIFFile& doc, const PreviewSelection& selection);
// The render flags loadviews gives the windows, by PreviewWindowIndex: only Perspective can
// show textures, and only when "Previews"/"PerspectiveTex" is "1".
std::array<int, PreviewWindowCount> PreviewRenderFlags();

struct ViewerChange {
    int flags;
    bool refresh;
    bool operator==(const ViewerChange&) const = default;
};
// The Perspective preview's render flags after "Apply": textured exactly when
// "Previews"/"PerspectiveTex" is now "1"; a refresh only when the flags differ from `current`.
ViewerChange PerspectiveViewerChange(int current);
