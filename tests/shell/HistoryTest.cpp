#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "core/ProgramState.h"
#include "shell/HistoryOps.h"
#include "shell/JournalOps.h"
#include "shell/Startup.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

StadiumProject ProjectOf(std::mt19937& random, int parts) {
    StadiumProject p;
    p.Name = "Stadium " + std::to_string(random() % 100);
    p.OIF = NewOIFFile();
    for (int i = 0; i < parts; ++i) {
        OIFPart part;
        part.Header.Name = "part" + std::to_string(i);
        part.Header.Texture = random() % 2 ? "tp00" : "rwh0";
        for (int v = 0; v < 4; ++v) part.Vertices.push_back({float(random() % 50), float(v), 0, 0xFF808080u, 0, 1});
        part.Indices = {0, 1, 2, 3};
        part.Header.VertexCount = 4;
        part.Header.IndexCount = 4;
        p.OIF = AddPart(part, p.OIF);
    }
    p.Textures = {TextureSlot{"tp00", 1, {TexturePart{"corner", 0.5f, 0.25f}}}};
    return p;
}

// One edit as a command would make it: a vertex moved, a part added or removed, a renaming.
void Edit(std::mt19937& random, StadiumProject& p) {
    const auto choice = p.OIF.Parts.empty() ? 1 : random() % 4;
    if (choice == 0) {
        p.OIF.Parts[random() % p.OIF.Parts.size()].Vertices[0].X += 1;
    } else if (choice == 1) {
        p.OIF = AddPart(ProjectOf(random, 1).OIF.Parts[0], p.OIF);
    } else if (choice == 2) {
        p.OIF.Parts.erase(p.OIF.Parts.begin() + static_cast<std::ptrdiff_t>(random() % p.OIF.Parts.size()));
        p.OIF.Header.PartCount = static_cast<std::int32_t>(p.OIF.Parts.size());
    } else {
        p.Name += "+";
    }
}

}  // namespace

// Against the plainest history there is: a full copy of the project per step.
TEST(History, UndoAndRedoGiveBackExactlyTheRecordedProjects) {
    std::mt19937 random(7);
    for (int run = 0; run < 20; ++run) {
        StadiumProject live = ProjectOf(random, 5);
        ProjectHistory history;
        StartHistory(history, live);
        std::vector<StadiumProject> copies{live};
        std::vector<std::string> captions{""};
        std::size_t at = 0;
        for (int op = 0; op < 60; ++op) {
            const auto choice = random() % 6;
            if (choice < 3) {
                Edit(random, live);
                const std::string caption = "step " + std::to_string(op);
                ASSERT_TRUE(RecordStep(history, live, caption));
                copies.resize(at + 1);
                captions.resize(at + 1);
                copies.push_back(live);
                captions.push_back(caption);
                ++at;
            } else if (choice == 3) {
                EXPECT_FALSE(RecordStep(history, live, "nothing changed"));
            } else if (choice == 4) {
                EXPECT_EQ(UndoCaption(history), at > 0 ? captions[at] : "");
                const auto back = UndoStep(history);
                ASSERT_EQ(back.has_value(), at > 0);
                if (back) {
                    live = copies[--at];
                    EXPECT_EQ(*back, live);
                }
            } else {
                EXPECT_EQ(RedoCaption(history), at + 1 < copies.size() ? captions[at + 1] : "");
                const auto again = RedoStep(history);
                ASSERT_EQ(again.has_value(), at + 1 < copies.size());
                if (again) {
                    live = copies[++at];
                    EXPECT_EQ(*again, live);
                }
            }
        }
    }
}

TEST(History, AStepKeepsOnlyWhatItChangedAndTheOldestGoBeyondTheLimit) {
    std::mt19937 random(3);
    StadiumProject live = ProjectOf(random, 40);
    ProjectHistory history;
    StartHistory(history, live);
    live.OIF.Parts[7].Vertices[2].Y = 99;
    ASSERT_TRUE(RecordStep(history, live, "Move"));
    const ProjectState& before = *history.Steps[0].State;
    const ProjectState& after = *history.Steps[1].State;
    for (std::size_t i = 0; i < 40; ++i) EXPECT_EQ(before.Parts[i] == after.Parts[i], i != 7) << i;

    // A limit of a little over two states: every new step drops the oldest, never the current.
    history.MemoryLimit = HistoryBytes(history) + 2000;
    for (int i = 0; i < 30; ++i) {
        live.OIF.Parts[static_cast<std::size_t>(i)].Vertices[0].Z = float(i + 1000);
        RecordStep(history, live, "Move " + std::to_string(i));
        EXPECT_LE(HistoryBytes(history), history.MemoryLimit + 4000);
    }
    EXPECT_EQ(UndoCaption(history), "Move 29");
    EXPECT_LT(history.Steps.size(), 10u);
    const StadiumProject back = *UndoStep(history);
    EXPECT_EQ(back, RestoreProject(*history.Steps[history.Cursor].State));
    EXPECT_EQ(back.OIF.Parts[28].Vertices[0].Z, 1028.0f);
}

TEST(History, ATypingRunIsOneStepUntilItEnds) {
    std::mt19937 random(5);
    StadiumProject live = ProjectOf(random, 2);
    const StadiumProject start = live;
    ProjectHistory history;
    StartHistory(history, live);
    for (const char* typed : {"N", "No", "Nor", "Nort"}) {
        live.OIF.Parts[0].Header.Name = typed;
        RecordStep(history, live, "Part name", "name:0");
    }
    EXPECT_EQ(history.Steps.size(), 2u);
    EndTypingRun(history);
    live.OIF.Parts[0].Header.Name = "North";
    RecordStep(history, live, "Part name", "name:0");
    EXPECT_EQ(history.Steps.size(), 3u) << "typing after leaving the field is a step of its own";
    live.OIF.Parts[1].Header.Name = "S";
    RecordStep(history, live, "Part name", "name:1");
    EXPECT_EQ(history.Steps.size(), 4u) << "another part's field is another run";
    // Typing a field back to what it held removes its step.
    live.OIF.Parts[1].Header.Name = start.OIF.Parts[1].Header.Name;
    RecordStep(history, live, "Part name", "name:1");
    EXPECT_EQ(history.Steps.size(), 3u);
    UndoStep(history);
    EXPECT_EQ(*UndoStep(history), start);
}

// ---- the recovery journal

TEST(Journal, KeepsTheProjectThroughTheCodecAndRefusesWhatIsNotWhole) {
    std::mt19937 random(11);
    const StadiumProject project = ProjectOf(random, 3);
    const ByteBuffer bytes = EncodeJournal(*CaptureProject(project, nullptr), 1795000000);
    const JournalParse parsed = ParseJournal(bytes);
    ASSERT_TRUE(parsed.entry) << parsed.error;
    EXPECT_EQ(parsed.entry->ChangedAt, 1795000000);
    EXPECT_EQ(parsed.entry->Project.Name, project.Name);
    EXPECT_EQ(parsed.entry->Project.Textures, project.Textures);
    EXPECT_EQ(parsed.entry->Project.OIF.Parts, project.OIF.Parts);
    // Cut anywhere, or with any bit turned: refused, never read past its end.
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        EXPECT_FALSE(ParseJournal(ByteBuffer(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(n))).entry);
        ByteBuffer flipped = bytes;
        flipped[n] ^= 0x10;
        EXPECT_FALSE(ParseJournal(flipped).entry) << n;
    }
}

TEST(Journal, AnEndedSessionsProjectIsOfferedBackOnceAndABrokenOneIsSetAside) {
    ScratchFolder dir;
    AppFolder = dir.path();
    ScriptedDesktop desktop;
    std::mt19937 random(13);
    const StadiumProject project = ProjectOf(random, 4);
    std::string path;
    {
        JournalWriter writer(RecoveryFolder(), std::chrono::milliseconds(0));
        EXPECT_TRUE(OrphanedJournals().empty()) << "a live session's journal is its own";
        writer.Offer(CaptureProject(project, nullptr), 1795000000);
        writer.Flush();
        EXPECT_EQ(writer.LastError(), "");
        path = writer.Path();
    }  // ended without Close, as a kill would end it
    ASSERT_EQ(OrphanedJournals(), std::vector<std::string>{path});

    struct Frame : StartupFrame {
        std::vector<StadiumProject> recovered;
        void SetMaximised(bool) override {}
        void ShowFrame() override {}
        void ShowNewProject() override {}
        void EndProgram() override {}
        void OpenNamedFile(const std::string&) override {}
        void RecoverProject(StadiumProject p) override { recovered.push_back(std::move(p)); }
    } frame;
    desktop.answers = {MessageAnswer::Yes};
    OfferRecovery(frame);
    ASSERT_EQ(frame.recovered.size(), 1u);
    EXPECT_EQ(frame.recovered[0].OIF.Parts, project.OIF.Parts);
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_NE(desktop.messages[0].text.find("\"" + project.Name + "\""), std::string::npos);
    EXPECT_TRUE(OrphanedJournals().empty()) << "offered once";

    // A journal cut short is told, kept aside, and the start goes on.
    WriteFile(path, {'T', 'M', 'J', '1', 0});
    OfferRecovery(frame);
    EXPECT_EQ(frame.recovered.size(), 1u);
    ASSERT_EQ(desktop.messages.size(), 2u);
    EXPECT_NE(desktop.messages[1].text.find("could not be recovered"), std::string::npos);
    EXPECT_TRUE(OrphanedJournals().empty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(RecoveryFolder()), {}), 1);
    AppFolder.clear();
}

TEST(Journal, ANormalEndRemovesIt) {
    ScratchFolder dir;
    AppFolder = dir.path();
    std::mt19937 random(17);
    JournalWriter writer(RecoveryFolder(), std::chrono::milliseconds(0));
    writer.Offer(CaptureProject(ProjectOf(random, 1), nullptr), 1);
    writer.Flush();
    EXPECT_TRUE(std::filesystem::exists(writer.Path()));
    writer.Close();
    EXPECT_FALSE(std::filesystem::exists(writer.Path()));
    EXPECT_TRUE(OrphanedJournals().empty());
    AppFolder.clear();
}
