// How long the Perspective window takes to draw a large stadium: the 1,000,000-vertex bowl,
// untextured and textured, in a 640 by 480 viewer, as the previews show it (shared parts, drawn
// from buffers) and, as the reference, as a viewer that reads the whole file shows it. Frames of
// one view again (the faces that reach a pixel kept from the last frame) and frames of a view
// that turns a little each time, as while a drag turns it. Needs a display; under Xvfb this is
// Mesa's software renderer, so the figure is what a user without a graphics card sees.
#include <QApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <cstdio>
#include <filesystem>

#include "BowlStadium.h"
#include "FastestReporter.h"
#include "core/ProgramState.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "preview/ui/CoinRuntime.h"
#include "preview/ui/VrmlView.h"

namespace fs = std::filesystem;

namespace {

class MeasuredView : public VrmlView {
public:
    // One whole frame: drawn, then waited for, as the screen would get it.
    void drawFrame() {
        makeCurrent();
        paintGL();
        context()->functions()->glFinish();
        doneCurrent();
    }
};

struct Fixture {
    std::string folder, file;
    std::size_t indices = 0;
    MeasuredView* view = nullptr;
    Fixture() {
        folder = (fs::temp_directory_path() / "terramason-frame-bench").string();
        fs::create_directories(folder);
        TempFolderOverride = folder;
        const OIFFile doc = BowlStadium(40, 250, 100);
        for (const OIFPart& p : doc.Parts) indices += p.Indices.size();
        WriteBowlPictures(folder);
        PreviewViews = StartPreviewViews();
        WritePreviewFiles(doc, {});
        file = ViewFilePath("Perspective");
        EnsureCoin();
        view = new MeasuredView;
        view->resize(640, 480);
        view->show();
        for (int i = 0; i < 50 && !view->isValid(); ++i) QApplication::processEvents();
    }
    ~Fixture() {
        delete view;
        std::error_code ec;
        fs::remove_all(folder, ec);
    }
    void showShared() { view->showPreview(QString::fromStdString(file), *WrittenViewFile(file)); }
};

Fixture* TheFixture = nullptr;

void Frames(benchmark::State& state, int flags, bool read, bool turning) {
    Fixture& f = *TheFixture;
    f.view->setScene(QString::fromLatin1(VrmlView::NoScene));
    f.view->setRenderFlags(flags);
    if (read) f.view->setScene(QString::fromStdString(f.file));
    else f.showShared();
    f.view->drawFrame();  // the first frame fills the buffers and reads the textures
    PreviewViewpoint turned = PreviewViews[ViewPerspective];
    for (auto _ : state) {
        if (turning) {
            turned.SceneRotationY += 0.01f;
            f.view->showPose(HeadPose(turned));
        }
        f.view->drawFrame();
    }
}

void BM_Untextured(benchmark::State& s) { Frames(s, RenderUntextured, false, false); }
void BM_Textured(benchmark::State& s) { Frames(s, RenderTextured, false, false); }
void BM_UntexturedTurning(benchmark::State& s) { Frames(s, RenderUntextured, false, true); }
void BM_TexturedTurning(benchmark::State& s) { Frames(s, RenderTextured, false, true); }
void BM_ReadUntextured(benchmark::State& s) { Frames(s, RenderUntextured, true, false); }
void BM_ReadTextured(benchmark::State& s) { Frames(s, RenderTextured, true, false); }

void FiveFrames(benchmark::internal::Benchmark* b) {
    b->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
    b->ComputeStatistics("min", Fastest);
}

BENCHMARK(BM_Untextured)->Apply(FiveFrames);
BENCHMARK(BM_Textured)->Apply(FiveFrames);
BENCHMARK(BM_UntexturedTurning)->Apply(FiveFrames);
BENCHMARK(BM_TexturedTurning)->Apply(FiveFrames);
BENCHMARK(BM_ReadUntextured)->Apply(FiveFrames);
BENCHMARK(BM_ReadTextured)->Apply(FiveFrames);

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    Fixture fixture;
    if (!WrittenViewFile(fixture.file)) {
        std::fprintf(stderr, "the writers do not vouch for the Perspective file\n");
        return 1;
    }
    TheFixture = &fixture;
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    const auto ms = [&](const char* name) { return reporter.Seconds(name) * 1000; };
    std::printf("\nPerspective window, 640x480, 40 parts, 1,000,000 vertices, %zu indices:\n", fixture.indices);
    std::printf(
        "frame: %.0f ms untextured, %.0f ms textured; while turning %.0f ms and %.0f ms (target: under 60 ms)\n",
        ms("BM_Untextured"), ms("BM_Textured"), ms("BM_UntexturedTurning"), ms("BM_TexturedTurning"));
    std::printf("the same file read whole, as before: %.0f ms untextured, %.0f ms textured\n", ms("BM_ReadUntextured"),
                ms("BM_ReadTextured"));
    return 0;
}
