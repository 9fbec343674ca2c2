// How long the Perspective window takes to draw a large stadium: 40 parts, 1,000,000 vertices
// and about 2,000,000 indices, untextured and textured, in a 640 by 480 viewer. Needs a display;
// under Xvfb this is Mesa's software renderer, so the figure is the floor a user without a
// graphics card sees.
#include <QApplication>
#include <QColor>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <cmath>
#include <cstdio>
#include <filesystem>

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
    std::string folder;
    std::size_t indices = 0;
    MeasuredView* view = nullptr;
    Fixture() {
        folder = (fs::temp_directory_path() / "terramason-frame-bench").string();
        fs::create_directories(folder);
        TempFolderOverride = folder;
        // A bowl of 40 stand sections around the pitch, each a grid of 250 by 100 vertices drawn
        // as one strip row by row: 1,000,000 vertices and about 2,000,000 indices, with
        // triangles the size a real stand has, so that the figure is about geometry and not
        // about filling the screen 1.7 million times.
        OIFFile doc = NewOIFFile();
        const int columns = 250, rows = 100;
        for (int p = 0; p < 40; ++p) {
            OIFPart part;
            part.Header.Texture = p % 2 ? "tp01" : "rwh0";
            const double from = p * 2 * 3.14159265358979 / 40, width = 2 * 3.14159265358979 / 40;
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < columns; ++c) {
                    const double angle = from + width * c / (columns - 1), radius = 9000 + 60.0 * r;
                    part.Vertices.push_back({static_cast<float>(radius * std::cos(angle)), static_cast<float>(40.0 * r),
                                             static_cast<float>(radius * std::sin(angle)), 0xFFFFFFFFu,
                                             static_cast<float>(c % 2), static_cast<float>(r % 2)});
                }
            for (int r = 0; r + 1 < rows; ++r) {
                if (r > 0) part.Indices.push_back(static_cast<std::int16_t>(r * columns));  // join to the next row
                for (int c = 0; c < columns; ++c) {
                    part.Indices.push_back(static_cast<std::int16_t>(r * columns + c));
                    part.Indices.push_back(static_cast<std::int16_t>((r + 1) * columns + c));
                }
                part.Indices.push_back(static_cast<std::int16_t>((r + 1) * columns + columns - 1));
            }
            part.Header.VertexCount = static_cast<std::int32_t>(part.Vertices.size());
            part.Header.IndexCount = static_cast<std::int32_t>(part.Indices.size());
            indices += part.Indices.size();
            doc = AddPart(part, doc);
        }
        for (const char* name : {"tp01", "rwh0"}) {
            QImage image(256, 256, QImage::Format_RGB32);
            image.fill(QColor(name[0] == 't' ? 40 : 200, 120, 60));
            image.save(QString::fromStdString(folder + "/" + name + ".png"));
        }
        PreviewViews = StartPreviewViews();
        WritePreviewFiles(doc, {});
        EnsureCoin();
        view = new MeasuredView;
        view->resize(640, 480);
        view->show();
        for (int i = 0; i < 50 && !view->isValid(); ++i) QApplication::processEvents();
        view->setScene(QString::fromStdString(ViewFilePath("Perspective")));
    }
    ~Fixture() {
        delete view;
        std::error_code ec;
        fs::remove_all(folder, ec);
    }
};

Fixture* TheFixture = nullptr;

void Frames(benchmark::State& state, int flags) {
    MeasuredView& view = *TheFixture->view;
    view.setRenderFlags(flags);
    view.drawFrame();  // the first frame builds the caches
    for (auto _ : state) view.drawFrame();
}

void BM_PerspectiveFrame_Untextured(benchmark::State& state) { Frames(state, RenderUntextured); }
void BM_PerspectiveFrame_Textured(benchmark::State& state) { Frames(state, RenderTextured); }

void FiveFrames(benchmark::internal::Benchmark* b) {
    b->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1)->Repetitions(5)->ReportAggregatesOnly(true);
    b->ComputeStatistics("min", Fastest);
}

BENCHMARK(BM_PerspectiveFrame_Untextured)->Apply(FiveFrames);
BENCHMARK(BM_PerspectiveFrame_Textured)->Apply(FiveFrames);

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    Fixture fixture;
    if (!fixture.view->hasWorld()) {
        std::fprintf(stderr, "the Perspective file did not load\n");
        return 1;
    }
    TheFixture = &fixture;
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    std::printf(
        "\nPerspective window, 640x480, 40 parts, 1,000,000 vertices, %zu indices: "
        "%.0f ms a frame untextured, %.0f ms textured\n",
        fixture.indices, reporter.Seconds("BM_PerspectiveFrame_Untextured") * 1000,
        reporter.Seconds("BM_PerspectiveFrame_Textured") * 1000);
    return 0;
}
