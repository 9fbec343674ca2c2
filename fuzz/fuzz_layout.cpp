// The Stadium Importer's layout files over arbitrary bytes. Besides memory safety: a refused file
// places nothing; an accepted one holds whole, bounded places with no size below zero, puts each
// named texture at its last place, and the sheet's rules (bounds, snaps, handles, keys, the
// rectangles of the atlas) run on what it placed without overflowing.
#include <cmath>
#include <cstdint>
#include <string_view>

#include "FuzzCheck.h"
#include "importer/AtlasLayout.h"
#include "importer/LayoutFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const LayoutFile layout = ParseLayoutFile(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!layout.error.empty()) {
        FUZZ_CHECK(layout.entries.empty(), "a refused layout places nothing");
        return 0;
    }
    // The model's textures: every name the file gives, and one it leaves out.
    std::vector<ImportTexture> textures(1);
    textures[0].Name = "\x01left out";
    textures[0].Picture = {16, 8};
    for (const LayoutEntry& e : layout.entries) {
        FUZZ_CHECK(e.box.Width >= 0 && e.box.Height >= 0, "no size below zero");
        for (const std::int32_t v : {e.box.Left, e.box.Top, e.box.Width, e.box.Height})
            FUZZ_CHECK(std::abs(static_cast<double>(v)) <= LayoutLimit, "places stay within the limit");
        bool known = false;
        for (const ImportTexture& t : textures) known = known || t.Name == e.name;
        if (!known) {
            textures.emplace_back();
            textures.back().Name = e.name;
        }
    }
    std::vector<TextureBox> boxes;
    for (const ImportTexture& t : textures) boxes.push_back(NaturalBox(t.Picture, 512, 512));
    FUZZ_CHECK(ApplyLayout(layout, textures, boxes).empty(), "a layout of the model's own names applies");
    FUZZ_CHECK(boxes.size() == textures.size(), "one box a texture");
    FUZZ_CHECK(boxes[0] == NaturalBox(textures[0].Picture, 512, 512), "a texture left out keeps its box");
    for (std::size_t i = 1; i < textures.size(); ++i) {
        const LayoutEntry* last = nullptr;
        for (const LayoutEntry& e : layout.entries)
            if (e.name == textures[i].Name) last = &e;
        FUZZ_CHECK(last && boxes[i] == last->box, "each texture stands at the layout's last place for it");
    }

    const BoundsReport report = CheckBoundsOf(boxes, textures, 688 * 15, 577 * 15);
    FUZZ_CHECK(report.ok == (report.message == BoundsFineMessage), "the bounds check passes exactly when it says so");
    CopyRectangles(boxes, textures);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        FUZZ_CHECK(textures[i].Right - textures[i].Left == boxes[i].Width, "a rectangle is as wide as its box");
        const auto handles = HandlePlaces(boxes[i], HandleSize);
        FUZZ_CHECK(handles[7].Left == boxes[i].Left + boxes[i].Width, "the last handle touches the right edge");
        const BoxPlace place = DragPlace(boxes, i, 3.5, -2.5, 1, 1, 512, 512, {true, true});
        (void)place;
        TextureBox b = boxes[i];
        ResizeByHandle(b, static_cast<int>(i % 8) + 1, -7.0, 9.0);
        ArrowKeyStep(b, ArrowKey::Left, i % 2 == 0, true);
        FUZZ_CHECK(b.Width >= 0 && b.Height >= 0, "handles and keys never make a size below zero");
    }
    return 0;
}
