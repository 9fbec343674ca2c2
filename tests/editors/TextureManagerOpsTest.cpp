#include <gtest/gtest.h>

#include <filesystem>

#include "core/ProgramState.h"
#include "editors/TextureManagerOps.h"
#include "shell/StadiumCatalogue.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {
std::vector<TextureSlot> ProjectSlots() {
    std::vector<TextureSlot> slots;
    for (const char* name : ProjectTextureNames) slots.push_back(TextureSlot{name, 0, {}});
    return slots;
}
}  // namespace

TEST(TextureManagerPoints, AddAppendsNewItemsAndRowsWithoutSlotGetNone) {
    std::vector<TextureSlot> slots = ProjectSlots();
    EXPECT_TRUE(AddTexturePart(slots, 2));
    EXPECT_TRUE(AddTexturePart(slots, 2));
    ASSERT_EQ(slots[2].Parts.size(), 2u);
    EXPECT_EQ(slots[2].PartCount, 2);
    EXPECT_EQ(slots[2].Parts[1], (TexturePart{"[New Item]", 0, 0})) << "names need not be unique";

    for (int row : {-1, 35, 38}) EXPECT_FALSE(AddTexturePart(slots, row)) << row;
    std::vector<TextureSlot> none;
    EXPECT_FALSE(AddTexturePart(none, 0)) << "no project, no slots";
    EXPECT_EQ(TexturePointAt(slots, 2, 1), &slots[2].Parts[1]);
    EXPECT_EQ(TexturePointAt(slots, 2, 2), nullptr);
    EXPECT_EQ(TexturePointAt(slots, 3, 0), nullptr);
}

TEST(TextureManagerPoints, UVFieldOneIsVAndAnyOtherU) {
    TexturePart p;
    StoreUVText(p, 0, "0.25x");
    StoreUVText(p, 1, "0.5");
    EXPECT_EQ(p.U, 0.25f);
    EXPECT_EQ(p.V, 0.5f);
    StoreUVText(p, 7, "");
    EXPECT_EQ(p.U, 0.0f);
}

TEST(TextureManagerPick, FarEdgeGivesExactlyOneAndOriginZero) {
    TexturePart p;
    ImagePick pick = PickOnImage(p, 63, 31, 64, 32);
    EXPECT_EQ(p.U, 1.0f);
    EXPECT_EQ(p.V, 1.0f);
    EXPECT_EQ(pick.uText, "1");
    EXPECT_EQ(pick.vText, "1");

    pick = PickOnImage(p, 0, 0, 64, 32);
    EXPECT_EQ(p.U, 0.0f);
    EXPECT_EQ(p.V, 0.0f);
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
    EXPECT_EQ(p.U, 0.0f);
    EXPECT_EQ(p.V, 1.0f);

    TexturePart tall;
    PickOnImage(tall, 5, 0, 10, 1);
    EXPECT_EQ(tall.V, 0.0f);
    EXPECT_EQ(tall.U, 0.5555556f);
}

TEST(TextureManagerWindow, FollowsThePictureAndKeepsRoomUnderTheVField) {
    EXPECT_EQ(TextureWindowSize(512, 512, 200), (WindowPixels{769, 571})) << "the designed size";
    EXPECT_EQ(TextureWindowSize(1024, 256, 200), (WindowPixels{1281, 315}));
    // An empty picture: the height comes from the V field, 1000 twips under it.
    EXPECT_EQ(TextureWindowSize(0, 0, 250), (WindowPixels{257, 317}));
    EXPECT_EQ(TextureWindowSize(512, 512, 504), (WindowPixels{769, 571})) << "exactly 1000 twips of room";
    EXPECT_EQ(TextureWindowSize(512, 512, 505), (WindowPixels{769, 572}));
}

TEST(TextureManagerWindow, PointerPositionIsInParentheses) { EXPECT_EQ(PointerPositionText(12, 0), "(12, 0)"); }

TEST(TextureManagerImport, OnlyPNGIsCopied) {
    EXPECT_TRUE(ImportCopiesFile("/a/Grass.PNG"));
    EXPECT_FALSE(ImportCopiesFile("/a/grass.jpg"));
    EXPECT_FALSE(ImportCopiesFile("/a.png/grass"));
}

TEST(TextureNaming, CopiesThePNGUnderTheNameAndRefusesAnEmptyName) {
    ScratchFolder dir;
    ScriptedDesktop desktop;
    AppFolder = dir.path();
    std::filesystem::create_directories(TempFolder());
    const std::string source = dir.file("chosen.png");
    WriteFile(source, {1, 2, 3});

    EXPECT_FALSE(NameTextureForPreview(source, ""));
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "Enter a texture name.");
    EXPECT_EQ(desktop.messages[0].title, "Terramason");
    EXPECT_EQ(desktop.messages[0].icon, MessageIcon::Exclamation);

    WriteFile(TempFolder() + "/rwa1.png", {9});
    EXPECT_TRUE(NameTextureForPreview(source, "rwa1"));
    EXPECT_EQ(ReadFile(TempFolder() + "/rwa1.png"), (std::vector<std::uint8_t>{1, 2, 3}));
    AppFolder.clear();
}
