// No work is lost: undo and redo give back every recorded project, and the journal of a session
// that ended without closing is offered back at the next start.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "core/ProgramState.h"
#include "shell/HistoryOps.h"
#include "shell/IniOps.h"
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
    if (choice == 0) p.OIF.Parts[random() % p.OIF.Parts.size()].Vertices[0].X += 1;
    else if (choice == 1) p.OIF = AddPart(ProjectOf(random, 1).OIF.Parts[0], p.OIF);
    else if (choice == 2) {
        p.OIF.Parts.erase(p.OIF.Parts.begin() + std::ptrdiff_t(random() % p.OIF.Parts.size()));
        p.OIF.Header.PartCount = std::int32_t(p.OIF.Parts.size());
    } else p.Name += "+";
}

struct Frame : StartupFrame {
    std::vector<std::string> steps;
    std::vector<StadiumProject> recovered;
    void SetMaximised(bool) override {}
    void ShowFrame() override {}
    void ShowNewProject() override { steps.push_back("new"); }
    void EndProgram() override { steps.push_back("end"); }
    void OpenNamedFile(const std::string&) override {}
    void RecoverProject(StadiumProject p) override { recovered.push_back(std::move(p)); }
};

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
                ASSERT_TRUE(RecordStep(history, live, "step " + std::to_string(op)));
                copies.resize(++at);
                captions.resize(at);
                copies.push_back(live);
                captions.push_back("step " + std::to_string(op));
            } else if (choice == 3) {
                EXPECT_FALSE(RecordStep(history, live, "nothing changed"));
            } else if (choice == 4) {
                EXPECT_EQ(UndoCaption(history), at > 0 ? captions[at] : "");
                const auto back = UndoStep(history);
                ASSERT_EQ(back.has_value(), at > 0);
                if (back) { EXPECT_EQ(*back, live = copies[--at]); }
            } else {
                EXPECT_EQ(RedoCaption(history), at + 1 < copies.size() ? captions[at + 1] : "");
                const auto again = RedoStep(history);
                ASSERT_EQ(again.has_value(), at + 1 < copies.size());
                if (again) { EXPECT_EQ(*again, live = copies[++at]); }
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
    for (std::size_t i = 0; i < 40; ++i)
        EXPECT_EQ(history.Steps[0].State->Parts[i] == history.Steps[1].State->Parts[i], i != 7) << i;
    // A limit of a little over two states: every new step drops the oldest, never the current.
    history.MemoryLimit = HistoryBytes(history) + 2000;
    for (int i = 0; i < 30; ++i) {
        live.OIF.Parts[std::size_t(i)].Vertices[0].Z = float(i + 1000);
        RecordStep(history, live, "Move " + std::to_string(i));
        EXPECT_LE(HistoryBytes(history), history.MemoryLimit + 4000);
    }
    EXPECT_EQ(UndoCaption(history), "Move 29");
    EXPECT_LT(history.Steps.size(), 10u);
    const StadiumProject back = *UndoStep(history);
    EXPECT_EQ(back, RestoreProject(*history.Steps[history.Cursor].State));
    EXPECT_EQ(back.OIF.Parts[28].Vertices[0].Z, 1028.0f);
    // However small the limit, the step just made can still be undone.
    history.MemoryLimit = 0;
    live.OIF.Parts[0].Vertices[0].Z = -1;
    RecordStep(history, live, "Last");
    EXPECT_EQ(history.Steps.size(), 2u);
    EXPECT_EQ(UndoCaption(history), "Last");
}

TEST(History, ATypingRunIsOneStepUntilItEnds) {
    std::mt19937 random(5);
    StadiumProject live = ProjectOf(random, 2);
    const StadiumProject start = live;
    ProjectHistory history;
    StartHistory(history, live);
    auto type = [&](std::size_t part, const std::string& text) {
        live.OIF.Parts[part].Header.Name = text;
        RecordStep(history, live, "Part name", "name:" + std::to_string(part));
        return history.Steps.size();
    };
    for (const char* t : {"N", "No", "Nor", "Nort"}) EXPECT_EQ(type(0, t), 2u);
    EndTypingRun(history);
    EXPECT_EQ(type(0, "North"), 3u) << "typing after leaving the field is a step of its own";
    EXPECT_EQ(type(1, "S"), 4u) << "another part's field is another run";
    EXPECT_EQ(type(1, start.OIF.Parts[1].Header.Name.str()), 3u) << "typed back to what it held: its step goes";
    UndoStep(history);
    EXPECT_EQ(*UndoStep(history), start);
}

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
        EXPECT_FALSE(ParseJournal(ByteBuffer(bytes.begin(), bytes.begin() + std::ptrdiff_t(n))).entry);
        ByteBuffer flipped = bytes;
        flipped[n] ^= 0x10;
        EXPECT_FALSE(ParseJournal(flipped).entry) << n;
    }
}

TEST(Journal, AKilledSessionIsOfferedBackFirstAndOnceABrokenOneSetAsideAClosedOneGone) {
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

    // Offered before the start's own question, which still comes.
    WriteConfig("Terramason", "Starter", "1");
    Frame frame;
    desktop.answers = {MessageAnswer::Yes, MessageAnswer::Yes};
    RunStartup(frame);
    ASSERT_EQ(frame.recovered.size(), 1u);
    EXPECT_EQ(frame.recovered[0].OIF.Parts, project.OIF.Parts);
    ASSERT_EQ(desktop.messages.size(), 2u);
    EXPECT_NE(desktop.messages[0].text.find("\"" + project.Name + "\""), std::string::npos);
    EXPECT_EQ(frame.steps, std::vector<std::string>{"end"});
    EXPECT_TRUE(OrphanedJournals().empty()) << "offered once";

    // A journal cut short is told, kept aside, and the start goes on.
    WriteFile(path, {'T', 'M', 'J', '1', 0});
    OfferRecovery(frame);
    EXPECT_EQ(frame.recovered.size(), 1u);
    ASSERT_EQ(desktop.messages.size(), 3u);
    EXPECT_NE(desktop.messages[2].text.find("could not be recovered"), std::string::npos);
    EXPECT_TRUE(OrphanedJournals().empty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(RecoveryFolder()), {}), 1);

    JournalWriter closing(RecoveryFolder(), std::chrono::milliseconds(0));
    closing.Offer(CaptureProject(project, nullptr), 1);
    closing.Flush();
    EXPECT_TRUE(std::filesystem::exists(closing.Path()));
    closing.Close();
    EXPECT_FALSE(std::filesystem::exists(closing.Path()));
    AppFolder.clear();
}
