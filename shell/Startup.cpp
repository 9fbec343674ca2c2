#include "shell/Startup.h"

#include "core/Desktop.h"
#include "shell/IniOps.h"

void RunStartup(StartupFrame& frame) {
    frame.SetMaximised(ReadConfigFlag("Startup", "Maximise"));
    frame.ShowFrame();
    if (ReadConfigFlag("Terramason", "Starter")) {
        const MessageAnswer answer =
            AskQuestion(ViewerQuestion, MessageButtons::YesNo, MessageIcon::Question, ViewerQuestionTitle);
        WriteConfig("Terramason", "Starter", "0");
        if (answer == MessageAnswer::Yes) {
            TheDesktop().OpenWebPage(ViewerDownloadAddress);
            frame.EndProgram();
            return;
        }
    }
    if (ReadConfigFlag("Startup", "NewProj")) frame.ShowNewProject();
}

bool ConfirmQuit() {
    return AskQuestion(QuitQuestion, MessageButtons::YesNo, MessageIcon::Exclamation) == MessageAnswer::Yes;
}

std::string MainTitle(bool projectOpen, const std::string& projectName) {
    if (!projectOpen) return "VORN Terramason";
    return "VORN Terramason - [design] - [" + projectName + "]";
}
