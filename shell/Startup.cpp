#include "shell/Startup.h"

#include "core/Desktop.h"
#include "shell/IniOps.h"
#include "shell/fileOps.h"

void RunStartup(StartupFrame& frame, const std::string& namedFile) {
    frame.SetMaximised(ReadConfigFlag("Startup", "Maximise"));
    frame.ShowFrame();
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
    return {width + beside <= screen.Width ? width + beside : width, height, false};
}

bool ConfirmQuit() {
    return AskQuestion(QuitQuestion, MessageButtons::YesNo, MessageIcon::Exclamation) == MessageAnswer::Yes;
}

std::string MainTitle(bool projectOpen, const std::string& projectName) {
    if (!projectOpen) return "VORN Terramason";
    return "VORN Terramason - [design] - [" + projectName + "]";
}
