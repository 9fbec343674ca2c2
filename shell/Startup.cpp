#include "shell/Startup.h"

#include <algorithm>
#include <filesystem>

#include "core/Desktop.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/JournalOps.h"

void OfferRecovery(StartupFrame& frame) {
    for (const std::string& path : OrphanedJournals()) {
        JournalParse parsed;
        try {
            parsed = ParseJournal(binaryOps::ReadFileBytes(path));
        } catch (const std::exception& e) { parsed.error = e.what(); }
        if (!parsed.entry) {
            ShowMessage(SetAsideJournal(path, parsed.error), MessageIcon::Exclamation);
            continue;
        }
        const bool yes = AskQuestion(RecoveryQuestion(*parsed.entry), MessageButtons::YesNo, MessageIcon::Question) ==
                         MessageAnswer::Yes;
        std::error_code ec;
        std::filesystem::remove(path, ec);
        std::filesystem::remove(std::filesystem::path(path).replace_extension(".lock"), ec);
        if (yes) {
            // One project at a time: journals of other ended sessions wait for the next start.
            frame.RecoverProject(std::move(parsed.entry->Project));
            return;
        }
    }
}

void RunStartup(StartupFrame& frame, const std::string& namedFile) {
    frame.SetMaximised(ReadConfigFlag("Startup", "Maximise"));
    frame.ShowFrame();
    OfferRecovery(frame);
    if (ReadConfigFlag("Terramason", "Starter")) {
        const MessageAnswer answer =
            AskQuestion(ViewerQuestion, MessageButtons::YesNo, MessageIcon::Question, ViewerQuestionTitle);
        WriteConfig("Terramason", "Starter", "0");
        if (answer == MessageAnswer::Yes) {
            OpenWebPage(ViewerDownloadAddress);
            frame.EndProgram();
            return;
        }
    }
    if (!namedFile.empty()) frame.OpenNamedFile(namedFile);
    else if (ReadConfigFlag("Startup", "NewProj")) frame.ShowNewProject();
}

FramePlacement PlaceMainWindow(PixelSize need, int beside, PixelSize chrome, PixelSize screen) {
    const int width = need.Width + chrome.Width, height = need.Height + chrome.Height;
    if (width > screen.Width || height > screen.Height) return {screen.Width, screen.Height, true};
    return {std::min(width + beside, screen.Width), height, false};
}

EditorPlacement PlaceEditor(int areaWidth, int previewsRight, int width, int minimumWidth) {
    const int room = areaWidth - previewsRight;
    if (room < width && room >= minimumWidth) width = room;
    return {std::max(0, std::min(previewsRight, areaWidth - width)), width};
}

bool ConfirmQuit() {
    return AskQuestion(QuitQuestion, MessageButtons::YesNo, MessageIcon::Exclamation) == MessageAnswer::Yes;
}

std::string MainTitle(bool projectOpen, const std::string& projectName) {
    if (!projectOpen) return "VORN Terramason";
    return "VORN Terramason - [design] - [" + projectName + "]";
}
