// No work is lost: undo and redo give back every recorded project, and the journal of a session
// that ended without closing is offered back at the next start.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "shell/HistoryOps.h"
#include "shell/IniOps.h"
#include "shell/JournalOps.h"
#include "shell/ProjectTestKit.h"

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
        part.Header.VertexCount = part.Header.IndexCount = 4;
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

}  // namespace

// Against the plainest history there is: a full copy of the project per step, with its caption
// and typing run, the oldest dropped past the step limit. Typing into a field continues its run
// until the field is left or undo or redo comes between; typed back, the run's step goes.
TEST(History, UndoRedoTypingRunsAndTheStepLimitGiveBackExactlyTheRecordedProjects) {
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        StadiumProject live = ProjectOf(random, 5);
        ProjectHistory history;
        history.StepLimit = 4 + std::size_t(round % 4) * 20;
        StartHistory(history, live);
        std::vector<StadiumProject> copies{live};
        std::vector<std::string> captions{""}, runs{""};
        std::size_t at = 0;
        for (int op = 0; op < 80; ++op) {
            const auto choice = random() % 8;
            std::string run, caption = "step " + std::to_string(op);
            if (choice < 2) Edit(random, live);
            if (choice == 2 || choice == 3) {  // typing into a part's name field
                if (live.OIF.Parts.empty()) continue;
                const std::size_t part = random() % std::min<std::size_t>(2, live.OIF.Parts.size());
                live.OIF.Parts[part].Header.Name = std::string("Nor").substr(0, random() % 4);
                run = "name:" + std::to_string(part);
            }
            if (choice < 5) {
                const bool changed = !(live == copies[at]);
                ASSERT_EQ(RecordStep(history, live, caption, run), changed);
                if (!changed) continue;
                const bool continues = !run.empty() && runs[at] == run && at > 0;
                copies.resize(at + 1), captions.resize(at + 1), runs.resize(at + 1);
                if (continues && live == copies[at - 1]) --at;
                else if (continues) copies[at] = live, captions[at] = caption;
                else copies.push_back(live), captions.push_back(caption), runs.push_back(run), ++at;
                copies.resize(at + 1), captions.resize(at + 1), runs.resize(at + 1);
                for (; copies.size() > std::max<std::size_t>(history.StepLimit, 2) && at > 0; --at)
                    copies.erase(copies.begin()), captions.erase(captions.begin()), runs.erase(runs.begin());
            } else if (choice == 5) {
                EndTypingRun(history);
                runs[at].clear();
            } else if (choice == 6) {
                EXPECT_EQ(UndoCaption(history), at > 0 ? captions[at] : "");
                const auto back = UndoStep(history);
                ASSERT_EQ(back.has_value(), at > 0);
                if (back) {
                    runs[at].clear();
                    EXPECT_EQ(*back, live = copies[--at]);
                }
            } else {
                EXPECT_EQ(RedoCaption(history), at + 1 < copies.size() ? captions[at + 1] : "");
                const auto again = RedoStep(history);
                ASSERT_EQ(again.has_value(), at + 1 < copies.size());
                if (again) {
                    runs[at].clear();
                    EXPECT_EQ(*again, live = copies[++at]);
                }
            }
            ASSERT_EQ(history.Steps.size(), copies.size()) << op;
        }
    }
}

TEST(History, AStepKeepsOnlyWhatItChangedAndTheOldestGoBeyondTheMemoryLimit) {
    std::mt19937 random(3);
    StadiumProject live = ProjectOf(random, 40);
    ProjectHistory history;
    StartHistory(history, live);
    live.OIF.Parts[7].Vertices[2].Y = 99;
    ASSERT_TRUE(RecordStep(history, live, "Move"));
    for (std::size_t i = 0; i < 40; ++i)
        EXPECT_EQ(history.Steps[0].State->Parts[i] == history.Steps[1].State->Parts[i], i != 7) << i;
    // A limit of a little over two states: every new step drops the oldest, never the current;
    // however small the limit, the step just made can still be undone.
    for (const std::size_t over : {std::size_t{2000}, std::size_t{0}}) {
        history.MemoryLimit = over ? HistoryBytes(history) + over : 0;
        for (int i = 0; i < 30; ++i) {
            live.OIF.Parts[std::size_t(i)].Vertices[0].Z += float(i + 1000);
            RecordStep(history, live, "Move " + std::to_string(i));
            if (over) { EXPECT_LE(HistoryBytes(history), history.MemoryLimit + 4000); }
        }
        EXPECT_EQ(UndoCaption(history), "Move 29");
        EXPECT_LT(history.Steps.size(), over ? 10u : 3u);
        EXPECT_EQ(UndoStep(history)->OIF.Parts[29].Vertices[0].Z, live.OIF.Parts[29].Vertices[0].Z - 1029) << over;
        RedoStep(history);
    }
}

TEST(Journal, KeepsTheProjectThroughTheCodecAndRefusesWhatIsNotWhole) {
    std::mt19937 random(11);
    const StadiumProject project = ProjectOf(random, 3);
    const ByteBuffer bytes = EncodeJournal(*CaptureProject(project, nullptr), 1795000000);
    const JournalParse parsed = ParseJournal(bytes);
    ASSERT_TRUE(parsed.entry) << parsed.error;
    EXPECT_EQ(parsed.entry->ChangedAt, 1795000000);
    EXPECT_EQ(std::tie(parsed.entry->Project.Name, parsed.entry->Project.Textures, parsed.entry->Project.OIF.Parts),
              std::tie(project.Name, project.Textures, project.OIF.Parts));
    // Cut anywhere, or with any bit turned: refused, never read past its end.
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        EXPECT_FALSE(ParseJournal(ByteBuffer(bytes.begin(), bytes.begin() + std::ptrdiff_t(n))).entry);
        for (int bit = 0; bit < 8; ++bit) {
            ByteBuffer flipped = bytes;
            flipped[n] ^= std::uint8_t(1 << bit);
            EXPECT_FALSE(ParseJournal(flipped).entry) << n << " " << bit;
        }
    }
}

TEST(Journal, AKilledSessionIsOfferedBackFirstAndOnceABrokenOneSetAsideAClosedOneGone) {
    FakeMachine m;
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
    RecordingFrame frame;
    m.desktop.answers = {MessageAnswer::Yes, MessageAnswer::Yes};
    RunStartup(frame);
    ASSERT_EQ(frame.recovered.size(), 1u);
    EXPECT_EQ(frame.recovered[0].OIF.Parts, project.OIF.Parts);
    ASSERT_EQ(m.desktop.messages.size(), 2u);
    EXPECT_NE(m.desktop.messages[0].text.find("\"" + project.Name + "\""), std::string::npos);
    EXPECT_EQ(frame.steps, (std::vector<std::string>{"normal", "show", "end"}));
    EXPECT_TRUE(OrphanedJournals().empty()) << "offered once";

    // A journal cut short is told, kept aside, and the start goes on.
    WriteFile(path, {'T', 'M', 'J', '1', 0});
    OfferRecovery(frame);
    EXPECT_EQ(frame.recovered.size(), 1u);
    ASSERT_EQ(m.desktop.messages.size(), 3u);
    EXPECT_NE(m.desktop.messages[2].text.find("could not be recovered"), std::string::npos);
    EXPECT_TRUE(OrphanedJournals().empty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(RecoveryFolder()), {}), 1);

    JournalWriter closing(RecoveryFolder(), std::chrono::milliseconds(0));
    closing.Offer(CaptureProject(project, nullptr), 1);
    closing.Flush();
    EXPECT_TRUE(std::filesystem::exists(closing.Path()));
    closing.Close();
    EXPECT_FALSE(std::filesystem::exists(closing.Path()));
}
