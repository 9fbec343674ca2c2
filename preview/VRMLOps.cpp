#include "preview/VRMLOps.h"

#include <cerrno>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/ProgramState.h"
#include "shell/IniOps.h"

std::vector<PreviewViewpoint> PreviewViews = StartPreviewViews();

namespace {

const std::string Blanks15(15, ' ');

std::string TempPath(const std::string& name) { return TempFolder() + "/" + name; }
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

// A point line whose numbers are also kept as a reader of the line gets them.
void AddPointLineRead(std::string& b, const OIFVertex& v, bool comma, std::vector<float>& points) {
    b.append(18, ' ');
    points.push_back(AppendSingleTextRead(b, v.X));
    b += ' ';
    points.push_back(AppendSingleTextRead(b, v.Y));
    b += ' ';
    points.push_back(AppendSingleTextRead(b, v.Z));
    if (comma) b += ',';
    b += "\r\n";
}

// What the writers know of the preview files they wrote, so that a window can be told what a view
// file holds without reading it. A file is vouched for only while its size and time are those it
// had when written: anything else that touches it turns the record off.
struct FileStamp {
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;
    bool operator==(const FileStamp&) const = default;
};

std::optional<FileStamp> StampOf(const std::string& path) {
    std::error_code ec, ec2;
    FileStamp stamp{std::filesystem::file_size(path, ec), std::filesystem::last_write_time(path, ec2)};
    if (ec || ec2) return std::nullopt;
    return stamp;
}

struct WrittenHead {
    PreviewViewpoint view;
    std::optional<FileStamp> stamp;
};
struct InstalledFile {
    ViewFileContents contents;
    std::optional<FileStamp> stamp;
};
std::map<std::string, WrittenHead> writtenHeads;  // by description
PartShapes writtenParts;                          // by part index, from the last WritePartFiles
std::shared_ptr<const PartShapes> joinedParts;    // Parts.tmp, null when not known
std::optional<FileStamp> joinedStamp;
std::map<std::string, InstalledFile> installedViews;  // by path

// The contents InstallView just wrote to `file` from the head file `head` and Parts.tmp, when
// both are as the writers left them.
std::optional<ViewFileContents> ContentsOfInstall(const std::string& description, const std::string& head) {
    const auto written = writtenHeads.find(description);
    if (written == writtenHeads.end() || !written->second.stamp || StampOf(head) != written->second.stamp)
        return std::nullopt;
    if (!joinedParts || !joinedStamp || StampOf(TempPath("Parts.tmp")) != joinedStamp) return std::nullopt;
    return ViewFileContents{written->second.view, joinedParts};
}

// The writer of the view files of zoom, pan and turn. The thread only writes files; what the
// writers know of them is kept on the window thread, which takes the finished writes in at its
// next call. A write starts once the views have rested a moment: while the wheel turns, only the
// last of its views is written, and the frames are not drawn against a copy of the parts.
class ViewFileQueue {
public:
    struct Job {
        std::string file, head, parts;
        std::optional<ViewFileContents> contents;
    };
    struct Done {
        std::string file;
        std::optional<ViewFileContents> contents;
    };

    ~ViewFileQueue() {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stopping_ = true;
        }
        wake_.notify_all();
        if (thread_.joinable()) thread_.join();
    }
    void Add(Job job) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
        lastAdd_ = std::chrono::steady_clock::now();
        for (Job& waiting : jobs_)
            if (waiting.file == job.file) {
                waiting = std::move(job);
                return;
            }
        jobs_.push_back(std::move(job));
        wake_.notify_all();
    }
    void Wait() {
        std::unique_lock<std::mutex> lock(mutex_);
        ++waiting_;
        wake_.notify_all();
        idle_.wait(lock, [this] { return jobs_.empty() && !busy_; });
        --waiting_;
    }
    // The writes finished since the last call, and the first failure among them.
    std::vector<Done> Take(std::string& failure) {
        std::lock_guard<std::mutex> lock(mutex_);
        failure = std::exchange(failure_, std::string());
        return std::exchange(done_, {});
    }

private:
    void Run() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            wake_.wait(lock, [this] { return !jobs_.empty() || stopping_; });
            if (jobs_.empty()) return;
            while (!stopping_ && waiting_ == 0 && std::chrono::steady_clock::now() < lastAdd_ + Rest)
                wake_.wait_until(lock, lastAdd_ + Rest);
            Job job = std::move(jobs_.front());
            jobs_.pop_front();
            busy_ = true;
            lock.unlock();
            std::string failure;
            try {
                const std::string temporary = job.file + ".new";
                WriteTextFile(temporary, job.head);
                AppendFile(job.parts, temporary);
                std::filesystem::rename(temporary, job.file);
            } catch (const std::exception& e) { failure = e.what(); }
            lock.lock();
            busy_ = false;
            if (failure.empty()) done_.push_back({job.file, std::move(job.contents)});
            else if (failure_.empty()) failure_ = failure;
            if (jobs_.empty()) idle_.notify_all();
        }
    }
    static constexpr std::chrono::milliseconds Rest{250};
    std::mutex mutex_;
    std::condition_variable wake_, idle_;
    std::chrono::steady_clock::time_point lastAdd_;
    int waiting_ = 0;
    std::deque<Job> jobs_;
    std::vector<Done> done_;
    std::string failure_;
    bool busy_ = false, stopping_ = false;
    std::thread thread_;
};

ViewFileQueue& LaterViews() {
    static ViewFileQueue queue;
    return queue;
}

// Takes in what the thread has written; a failure is kept for the caller that can tell it.
std::string SettleViewFiles() {
    std::string failure;
    for (ViewFileQueue::Done& done : LaterViews().Take(failure))
        if (done.contents) installedViews[done.file] = {std::move(*done.contents), StampOf(done.file)};
    return failure;
}

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

bool IsFace(std::int16_t a, std::int16_t b, std::int16_t c) { return !Stitch(a, b, c); }

std::string PartFileText(const OIFPart& part, int index, PartShape* shape) {
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
    if (shape) {
        *shape = PartShape{index, part.Header.Texture.str() + ".png", {}, {}, part.Indices};
        shape->Points.reserve(3 * n);
        shape->TexPoints.reserve(2 * n);
    }
    for (std::size_t v = 0; v < n; ++v) {
        PumpEvents();
        const OIFVertex& x = part.Vertices[v];
        if (shape) AddPointLineRead(b, x, v + 1 < n, shape->Points);
        else AddPointLine(b, x.X, x.Y, x.Z, v + 1 < n);
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
        const float u = AppendSingleTextRead(b, x.U);
        b += ' ';
        const float v_ = AppendSingleTextRead(b, -x.V);
        if (shape) {
            shape->TexPoints.push_back(u);
            shape->TexPoints.push_back(v_);
        }
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

void FinishViewFiles() {
    LaterViews().Wait();
    if (const std::string failure = SettleViewFiles(); !failure.empty()) throw std::runtime_error(failure);
}

void InstallViewLater(const OIFFile& doc, const PreviewViewpoint& view) {
    if (const std::string failure = SettleViewFiles(); !failure.empty()) throw std::runtime_error(failure);
    const std::string head = TempPath(view.Description + ".tmp");
    const std::string file = ViewFilePath(view.Description);
    std::string text = ViewHeaderText(doc, view);
    // The head file as WriteViewHeader writes it; a join of the same view still waiting reads no
    // file, so it is free to change.
    writtenHeads.erase(view.Description);
    WriteTextFile(head, text);
    writtenHeads[view.Description] = {view, StampOf(head)};
    installedViews.erase(file);
    LaterViews().Add({file, std::move(text), TempPath("Parts.tmp"), ContentsOfInstall(view.Description, head)});
}

void WriteViewHeader(const OIFFile& doc, const PreviewViewpoint& view) {
    FinishViewFiles();
    const std::string head = TempPath(view.Description + ".tmp");
    writtenHeads.erase(view.Description);
    WriteTextFile(head, ViewHeaderText(doc, view));
    writtenHeads[view.Description] = {view, StampOf(head)};
}

void WritePartFiles(const OIFFile& doc) {
    FinishViewFiles();
    writtenParts.clear();
    PartShapes shapes;
    for (std::size_t p = 0; p < doc.Parts.size(); ++p) {
        PumpEvents();
        auto shape = std::make_shared<PartShape>();
        WriteTextFile(TempPath("Part_" + std::to_string(p) + ".tmp"),
                      PartFileText(doc.Parts[p], static_cast<int>(p), shape.get()));
        shapes.push_back(std::move(shape));
    }
    writtenParts = std::move(shapes);
}

void AssembleParts(const OIFFile& doc, const PreviewSelection& selection) {
    FinishViewFiles();
    const std::string parts = TempPath("Parts.tmp");
    joinedParts.reset();
    auto joined = std::make_shared<PartShapes>();
    bool known = true;
    WriteTextFile(parts, "");
    for (std::size_t p = 0; p < doc.Parts.size(); ++p) {
        if (!selection.Shows(p)) continue;
        AppendFile(TempPath("Part_" + std::to_string(p) + ".tmp"), parts);
        known = known && p < writtenParts.size();
        if (known) joined->push_back(writtenParts[p]);
    }
    std::string tail;
    for (int k = 0; k < 3; ++k) {
        AddLine(tail, "   ]");
        AddLine(tail, "}");
    }
    AppendTextFile(parts, tail);
    if (known) joinedParts = std::move(joined);
    joinedStamp = StampOf(parts);
}

void InstallView(const PreviewViewpoint& view) {
    FinishViewFiles();
    const std::string head = TempPath(view.Description + ".tmp");
    const std::string file = ViewFilePath(view.Description);
    Views& views = TheViews();
    views.ReleaseView(view.Description);
    installedViews.erase(file);
    std::error_code ec;
    std::filesystem::copy_file(head, file, std::filesystem::copy_options::overwrite_existing, ec);
    if (ec) throw std::runtime_error("Cannot write \"" + file + "\": " + ec.message() + ".");
    AppendFile(TempPath("Parts.tmp"), file);
    if (auto contents = ContentsOfInstall(view.Description, head)) installedViews[file] = {*contents, StampOf(file)};
    views.LoadView(view.Description, file);
}

std::optional<ViewFileContents> WrittenViewFile(const std::string& path) {
    SettleViewFiles();
    const auto installed = installedViews.find(path);
    if (installed == installedViews.end() || !installed->second.stamp || StampOf(path) != installed->second.stamp)
        return std::nullopt;
    return installed->second.contents;
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

ViewerChange PerspectiveViewerChange(int current) {
    const int flags = PreviewRenderFlags()[ViewPerspective];
    return {flags, flags != current};
}
