#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/ProgramState.h"
#include "preview/VRMLOps.h"
#include "shell/IniOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

// Lines joined with CR LF, each line ended.
std::string Lines(std::initializer_list<std::string> lines) {
    std::string s;
    for (const std::string& l : lines) s += l + "\r\n";
    return s;
}

// An expected file of tests/data/vrml, written there with LF line ends.
std::string Expected(const std::string& name) {
    std::string crlf;
    for (char c : ReadText(std::string(TM_TEST_DATA) + "/vrml/" + name)) crlf += c == '\n' ? "\r\n" : std::string(1, c);
    return crlf;
}

OIFPart Part(const std::string& texture, std::vector<OIFVertex> vertices, std::vector<std::int16_t> indices) {
    OIFPart p;
    p.Header.Name = "p";
    p.Header.Texture = texture;
    p.Vertices = std::move(vertices);
    p.Indices = std::move(indices);
    p.Header.VertexCount = static_cast<std::int32_t>(p.Vertices.size());
    p.Header.IndexCount = static_cast<std::int32_t>(p.Indices.size());
    return p;
}

PreviewScene OneViewpointScene() {
    PreviewScene s;
    return AddViewpoint("Top", 0, 30000, 0, -1, 0, 0, -1.57f, s);
}

}  // namespace

TEST(ViewpointText, TheSixStartingViewpointsInBindingOrder) {
    const PreviewScene s = DefaultPreviewScene();
    EXPECT_TRUE(s.ColourR == 0 && s.ColourG == 0 && s.ColourB == 255 && s.RotateAngle == 0.f);
    EXPECT_EQ(s.RotateX | s.RotateY | s.RotateZ, 0);
    ASSERT_EQ(s.ViewpointCount, 6);
    std::string text;
    for (const PreviewViewpoint& v : s.Viewpoints) text += ViewpointText(v);
    EXPECT_EQ(text, Expected("default_viewpoints.wrl"));
}

TEST(WirePreview, WritesShownPartsAsLinesOfTheirTriangles) {
    // 0 1 2 and 1 2 3 are triangles; 2 3 3, 3 3 0 are stitches; 3 0 1 and 0 1 2 again.
    const OIFPart quad =
        Part("tp00", {{0, 0, 0, 0, 0, 0}, {1.5f, 0, 0, 0, 0, 0}, {0, 2, 0, 0, 0, 0}, {1, 1, 10000000, 0, 0, 0}},
             {0, 1, 2, 3, 3, 0, 1, 2});
    const OIFPart hidden = Part("tp01", {{9, 9, 9, 0, 0, 0}}, {});
    PreviewSelection sel;
    sel.shown = {true, false};
    EXPECT_EQ(WirePreviewText({quad, hidden}, OneViewpointScene(), sel), Expected("wire.wrl"));
    // Small parts and empty selections still make valid files.
    const OIFPart one = Part("tp00", {{1, 2, 3, 0, 0, 0}}, {0, 0});
    EXPECT_NE(WirePreviewText({one}, OneViewpointScene(), {})
                  .find(Lines({"               point [", "                  1 2 3", "               ]", "            }",
                               "            coordIndex [", "            ]"})),
              std::string::npos);
    sel.shown = {false};
    EXPECT_EQ(WirePreviewText({one}, OneViewpointScene(), sel), Expected("empty_wire.wrl"));
}

TEST(WirePreview, MarksTheSelectedVertexAndOpensOnIt) {
    const OIFPart p = Part("tp00", {{1, 2, 3, 0, 0, 0}, {4, 5, 6, 0, 0, 0}}, {});
    PreviewSelection sel;
    sel.part = 0;
    sel.vertex = 1;
    const std::string text = WirePreviewText({p}, DefaultPreviewScene(), sel);
    EXPECT_NE(text.find(Expected("vertex_marker.wrl")), std::string::npos);
    EXPECT_LT(text.find("\"Vertex\""), text.find("\"Top\""));
    // A part row without a vertex row marks nothing; neither does a vertex that is not there.
    for (int vertex : {-1, 7}) {
        sel.vertex = vertex;
        EXPECT_EQ(WirePreviewText({p}, DefaultPreviewScene(), sel).find("Sphere"), std::string::npos) << vertex;
    }
}

// A quad list names one quad more than it has points; a view header counts all parts and nests
// three turns; a part file negates V and comments its stitches in both blocks.
TEST(PreviewText, QuadListViewHeaderAndPartFileAreTheHandWorkedOnes) {
    PolygonPart poly{"rwh0", {}, 1};
    for (int i = 0; i < 4; ++i) poly.Vertices.push_back({static_cast<float>(i), 0, 0, 0, 0, 0});
    EXPECT_EQ(QuadPreviewText({poly}, OneViewpointScene()), Expected("quad.wrl"));
    const OIFFile doc = AddPart(Part("tp01", {}, {}), AddPart(Part("tp00", {}, {}), NewOIFFile()));
    EXPECT_EQ(ViewHeaderText(doc, StartPreviewViews()[0]), Expected("view_header.wrl"));
    const OIFPart p = Part("ab", {{0, 0, 0, 0, 0.5f, 0.25f}, {1, 0, 0, 0, 1, 0}, {0, 1, 0, 0, 0, 1}}, {0, 1, 2, 2});
    EXPECT_EQ(PartFileText(p, 3), Expected("part.wrl"));
}

TEST(TexturedPreview, APartFileDescribesItsNumbersAsTheyReadBack) {
    const OIFPart p = Part("tp01", {{1234.5678f, 0.1f, -3e-8f, 0, 1 / 3.0f, 0.1f}, {1e7f, -2, 0, 0, 1, 0}}, {0, 1, 1});
    PartShape shape;
    EXPECT_EQ(PartFileText(p, 5, &shape), PartFileText(p, 5));
    // Seven digits: 1234.568, 0.1, -3E-08, 1E+07; 0.3333333 and -0.1.
    EXPECT_EQ(shape,
              (PartShape{5, "tp01.png", {1234.568f, 0.1f, -3e-8f, 1e7f, -2, 0}, {0.3333333f, -0.1f, 1, 0}, {0, 1, 1}}));
    EXPECT_TRUE(!IsFace(0, 1, 1) && !IsFace(2, 1, 2) && IsFace(0, 1, 2));
}

namespace {
struct RecordingViews : Views {
    std::vector<std::string> calls;
    void ReleaseView(const std::string& d) override { calls.push_back("release " + d); }
    void LoadView(const std::string& d, const std::string& path) override {
        calls.push_back("load " + d + " " + std::filesystem::path(path).filename().string());
    }
};

class PreviewFiles : public ::testing::Test {
protected:
    void SetUp() override {
        AppFolder = dir.path();
        std::filesystem::create_directories(AppPath("temp"));
        WriteConfig("Terramason", "Previews", "1");
        InstallViews(&views);
        PreviewViews = StartPreviewViews();
        doc = AddPart(Part("tp00", {{0, 0, 0, 0, 0, 0}}, {}), doc);
        doc = AddPart(Part("tp01", {{1, 1, 1, 0, 0, 0}}, {}), doc);
    }
    void TearDown() override {
        InstallViews(nullptr);
        ResetProgramState();
        AppFolder.clear();
    }
    ScratchFolder dir;
    ScriptedDesktop desktop;
    RecordingViews views;
    OIFFile doc = NewOIFFile();
    std::string Temp(const std::string& name) { return ReadText(AppPath("temp/" + name)); }
};
}  // namespace

TEST_F(PreviewFiles, RebuildWritesHeadsPartsAndJoinsTheShownOnesAndTheViewFilesTellWhatTheyHold) {
    PreviewSelection sel;
    sel.shown = {false, true};
    RebuildPreviews(doc, sel);
    const std::string closing = Lines({"   ]", "}", "   ]", "}", "   ]", "}"});
    EXPECT_EQ(Temp("Parts.tmp"), PartFileText(doc.Parts[1], 1) + closing);
    EXPECT_EQ(Temp("Part_0.tmp"), PartFileText(doc.Parts[0], 0)) << "hidden parts are written too";
    for (const PreviewViewpoint& v : PreviewViews)
        EXPECT_EQ(Temp(v.Description + ".wrl"), ViewHeaderText(doc, v) + Temp("Parts.tmp")) << v.Description;
    ASSERT_EQ(views.calls.size(), 8u);
    EXPECT_TRUE(views.calls[0] == "release Top" && views.calls[1] == "load Top Top.wrl");
    EXPECT_EQ(desktop.loadingTexts, (std::vector<std::string>{"Loading stadium previews..."}));
    EXPECT_FALSE(desktop.loadingShown);
    const auto top = WrittenViewFile(AppPath("temp/Top.wrl"));
    ASSERT_TRUE(top);
    EXPECT_EQ(top->Head, PreviewViews[ViewTop]);
    PartShape second;
    PartFileText(doc.Parts[1], 1, &second);
    ASSERT_EQ(top->Parts->size(), 1u);
    EXPECT_EQ(*top->Parts->front(), second);
    // A view change rewrites one head: behind it stand the parts of the other three files.
    PreviewViews[ViewTop].PositionZ -= 1000;
    WriteViewHeader(doc, PreviewViews[ViewTop]);
    InstallView(PreviewViews[ViewTop]);
    const auto moved = WrittenViewFile(AppPath("temp/Top.wrl"));
    ASSERT_TRUE(moved);
    EXPECT_TRUE(moved->Head == PreviewViews[ViewTop] && moved->Parts == top->Parts);
    EXPECT_EQ(WrittenViewFile(AppPath("temp/Back.wrl"))->Parts, top->Parts);
    // Showing other parts only rejoins them.
    sel.shown = {true, true};
    ReloadPreviews(doc, sel);
    EXPECT_EQ(WrittenViewFile(AppPath("temp/Top.wrl"))->Parts->size(), 2u);
    // Files changed by anything else, and files the writers never made, are not vouched for.
    std::ofstream(AppPath("temp/Back.wrl"), std::ios::app) << "#";
    EXPECT_FALSE(WrittenViewFile(AppPath("temp/Back.wrl")));
    std::ofstream(AppPath("temp/Right.tmp"), std::ios::app) << "#";
    InstallView(PreviewViews[ViewRight]);
    EXPECT_FALSE(WrittenViewFile(AppPath("temp/Right.wrl")));
    EXPECT_TRUE(WrittenViewFile(AppPath("temp/Perspective.wrl")));
    EXPECT_FALSE(WrittenViewFile(AppPath("temp/Parts.tmp")));
    std::filesystem::remove(AppPath("temp/Top.tmp"));
    ASSERT_THROW(ReloadPreviews(doc, sel), std::runtime_error) << "a rejoin needs the heads of the last rebuild";
    sel.shown = {false, false};
    RebuildPreviews(doc, sel);
    EXPECT_EQ(Temp("Perspective.wrl"), ViewHeaderText(doc, PreviewViews[3]) + closing);
}

TEST_F(PreviewFiles, NothingIsWrittenWhilePreviewsAreOff) {
    PreviewRefreshOn = false;
    RebuildPreviews(doc, {});
    EXPECT_FALSE(std::filesystem::exists(AppPath("temp/Parts.tmp")));
    PreviewRefreshOn = true;
    WriteConfig("Terramason", "Previews", "0");
    RebuildPreviews(doc, {});
    ReloadPreviews(doc, {});
    EXPECT_FALSE(std::filesystem::exists(AppPath("temp/Parts.tmp")));
    EXPECT_TRUE(views.calls.empty());
}

TEST_F(PreviewFiles, WirePreviewGoesToTheScratchFolderAndTheWireWindow) {
    struct WireViews : Views {
        std::string shown;
        void ShowWirePreview(const std::string& path) override { shown = path; }
    } wire;
    InstallViews(&wire);
    WriteWirePreview(doc.Parts, DefaultPreviewScene(), {});
    EXPECT_EQ(wire.shown, AppPath("temp/stad1.wrl"));
    EXPECT_EQ(ReadText(wire.shown), WirePreviewText(doc.Parts, DefaultPreviewScene(), {}));
    EXPECT_EQ(desktop.loadingTexts, (std::vector<std::string>{"Loading stadium preview..."}));
    WriteQuadPreview({}, DefaultPreviewScene());
    EXPECT_TRUE(std::filesystem::exists(AppPath("stad2.wrl")));
}

// Whether Previews reads 1 and refresh is on: start puts the views back, and writes the files.
TEST_F(PreviewFiles, StartPreviewsRunsOnlyWhenPreviewsReadsOne) {
    const struct {
        const char* previews;
        bool refresh, started, written;
    } cases[] = {{"1", true, true, true},  {"1", false, true, false},  {"0", true, false, false},
                 {"", true, false, false}, {"1 ", true, false, false}, {"true", true, false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string("\"") + c.previews + "\" refresh " + std::to_string(c.refresh));
        std::filesystem::remove_all(AppPath("temp"));
        std::filesystem::create_directories(AppPath("temp"));
        views.calls.clear();
        WriteConfig("Terramason", "Previews", c.previews);
        PreviewRefreshOn = c.refresh;
        PreviewViews[ViewBack].PositionX = 77;
        EXPECT_EQ(StartPreviews(doc, {}), c.started);
        EXPECT_EQ(PreviewViews == StartPreviewViews(), c.started);
        EXPECT_EQ(std::filesystem::exists(AppPath("temp/Top.wrl")), c.written);
        EXPECT_EQ(views.calls.size(), c.written ? 8u : 0u);
        if (c.written) {
            EXPECT_EQ(Temp("Top.wrl"), ViewHeaderText(doc, StartPreviewViews()[ViewTop]) + Temp("Parts.tmp"));
        }
    }
}

TEST_F(PreviewFiles, OnlyThePerspectiveWindowIsTexturedAndOnlyByAOne) {
    constexpr int U = RenderUntextured;
    for (const char* value : {"", "1", "0", "01"}) {
        if (*value) WriteConfig("Previews", "PerspectiveTex", value);
        const int last = value == std::string("1") ? RenderTextured : U;
        EXPECT_EQ(PreviewRenderFlags(), (std::array<int, 4>{U, U, U, last})) << '"' << value << '"';
    }
}
