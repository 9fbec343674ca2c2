#include <gtest/gtest.h>

#include <filesystem>

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

TEST(TextureManagerPick, StoresTheSevenDigitTextOfTheEdgeRule) {
    TexturePart p;
    const ImagePick pick = PickOnImage(p, 1, 2, 8, 4);
    EXPECT_EQ(pick.uText, "0.1428571");
    EXPECT_EQ(p.U, 0.1428571f) << "1/7 read back from its text, not 1/8";
    EXPECT_EQ(pick.vText, "0.6666667");
    EXPECT_EQ(p.V, 0.6666667f);
}

TEST(TextureManagerPick, AnImageOnePixelAcrossKeepsXOverW) {
    TexturePart p;
    const ImagePick pick = PickOnImage(p, 0, 3, 1, 4);
    EXPECT_EQ(pick.uText, "");
    EXPECT_EQ(p.V, 1.0f);
    TexturePart flat;
    PickOnImage(flat, 5, 0, 10, 1);
    EXPECT_EQ(flat.V, 0.0f);
    EXPECT_EQ(flat.U, 0.5555556f);
}

TEST(TextureManagerWindow, FollowsThePictureAndKeepsRoomUnderTheVField) {
    EXPECT_EQ(TextureWindowSize(512, 512, 200), (WindowPixels{769, 571})) << "the designed size";
    EXPECT_EQ(TextureWindowSize(1024, 256, 200), (WindowPixels{1281, 315}));
    EXPECT_EQ(TextureWindowSize(0, 0, 250), (WindowPixels{257, 317}));
    EXPECT_EQ(TextureWindowSize(512, 512, 504), (WindowPixels{769, 571})) << "exactly 1000 twips of room";
    EXPECT_EQ(TextureWindowSize(512, 512, 505), (WindowPixels{769, 572}));
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
