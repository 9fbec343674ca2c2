#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "core/ProgramState.h"
#include "editors/TextureManagerOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

TEST(TextureManagerPoints, OnlyRowsWithASlotTakeAPoint) {
    std::vector<TextureSlot> slots(35);
    EXPECT_TRUE(AddTexturePart(slots, 34));
    EXPECT_EQ(slots[34].PartCount, 1);
    EXPECT_EQ(slots[34].Parts[0], (TexturePart{"[New Item]", 0, 0}));
    for (int row : {-1, 35, 38}) EXPECT_FALSE(AddTexturePart(slots, row)) << row;
    std::vector<TextureSlot> none;
    EXPECT_FALSE(AddTexturePart(none, 0)) << "no project, no slots";
    EXPECT_EQ(TexturePointAt(slots, 34, 1), nullptr);
}

// 1/7 is read back from its seven-digit text, not 1/8; an image one pixel across keeps x / w.
TEST(TextureManagerPick, StoresTheSevenDigitTextOfTheEdgeRule) {
    TexturePart p, narrow, flat;
    const ImagePick pick = PickOnImage(p, 1, 2, 8, 4);
    EXPECT_TRUE(pick.uText == "0.1428571" && pick.vText == "0.6666667");
    EXPECT_TRUE(p.U == 0.1428571f && p.V == 0.6666667f);
    EXPECT_EQ(PickOnImage(narrow, 0, 3, 1, 4).uText, "");
    EXPECT_EQ(narrow.V, 1.0f);
    PickOnImage(flat, 5, 0, 10, 1);
    EXPECT_TRUE(flat.V == 0.0f && flat.U == 0.5555556f);
}

TEST(TextureManagerWindow, FollowsThePictureAndKeepsRoomUnderTheVField) {
    // The designed size; exactly 1000 twips of room under the field at 504.
    const std::tuple<int, int, int, WindowPixels> cases[] = {{512, 512, 200, {769, 571}},
                                                             {1024, 256, 200, {1281, 315}},
                                                             {0, 0, 250, {257, 317}},
                                                             {512, 512, 504, {769, 571}},
                                                             {512, 512, 505, {769, 572}}};
    for (const auto& [w, h, field, size] : cases) EXPECT_EQ(TextureWindowSize(w, h, field), size) << w << " " << field;
}

TEST(TextureManagerImport, OnlyPNGIsCopied) {
    EXPECT_TRUE(ImportCopiesFile("/a/Grass.PNG"));
    EXPECT_FALSE(ImportCopiesFile("/a/grass.jpg"));
    EXPECT_FALSE(ImportCopiesFile("/a.png/grass"));
}

TEST(TextureManagerImport, ANameThatWouldLeaveTheScratchFolderIsRefused) {
    ScratchFolder dir;
    AppFolder = dir.file("app");
    std::filesystem::create_directories(TempFolder());
    WriteFile(dir.file("in.png"), {'P', 'N', 'G'});
    ScriptedDesktop desktop;
    for (const char* name : {"../tp00", "a/b", "a\\b", "..", "x..y"}) {
        EXPECT_FALSE(NameTextureForPreview(dir.file("in.png"), name)) << name;
        EXPECT_FALSE(std::filesystem::exists(dir.file("app/tp00.png")));
    }
    EXPECT_EQ(desktop.messages.size(), 5u);
    EXPECT_TRUE(NameTextureForPreview(dir.file("in.png"), "rwh0"));
    EXPECT_EQ(ReadFile(TexturePngPath("rwh0")), ReadFile(dir.file("in.png")));
    AppFolder.clear();
}
