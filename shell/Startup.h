#pragma once
// The start-up and close rules of the main window, kept apart from the window itself.
#include <string>

#include "core/oif.h"

// What the start-up sequence asks of the main window.
class StartupFrame {
public:
    virtual ~StartupFrame() = default;
    virtual void SetMaximised(bool maximised) = 0;
    virtual void ShowFrame() = 0;
    virtual void ShowNewProject() = 0;  // shownew
    virtual void EndProgram() = 0;
    // Imports a stadium file into a new project, as "&Import to OIF..." would.
    virtual void OpenNamedFile(const std::string& path) = 0;
    // Opens a project left by an earlier session, as it stood.
    virtual void RecoverProject(StadiumProject project) = 0;
};

inline constexpr const char* ViewerQuestionTitle = "Cortona VRML plugin needed";
inline constexpr const char* ViewerQuestion =
    "You MUST download and install Cortona VRML plugin before you can use this program.\r\n\r\n"
    "Do you want to download this now?";
inline constexpr const char* ViewerDownloadAddress = "https://www.cortona3d.com/";
inline constexpr const char* QuitQuestion = "Are you sure you want to quit VORN Terramason?   ";
inline constexpr const char* StatusPanelText = "VORN Terramason v1.0";

// Offers back the projects that ended sessions left in their journals, newest first, until one is
// taken; a journal that cannot be read is told and set aside, never a reason not to start.
void OfferRecovery(StartupFrame& frame);

// Runs what follows the splash, after the offer of recovery: window state, showing the frame, the viewer question and the
// new-project dialog, each as config.ini says. A file named on the command line is opened in
// place of the dialog: the user has said what to work on.
void RunStartup(StartupFrame& frame, const std::string& namedFile = "");

// Where the main window opens when config.ini does not ask for it maximised: its working area
// holds `need` whole (the parts list and the four previews), with `beside` more width for the OIF
// Editor, or as much of it as the screen has room for. `chrome` is what the window adds round its area:
// menus, toolbar, status bar. A screen without room even for `need` gets the window maximised.
struct FramePlacement {
    int Width = 0, Height = 0;
    bool Maximised = false;
    bool operator==(const FramePlacement&) const = default;
};
struct PixelSize {
    int Width = 0, Height = 0;
};
FramePlacement PlaceMainWindow(PixelSize need, int beside, PixelSize chrome, PixelSize screen);

// Where the OIF Editor stands in the main window's area: beside the previews when there is room,
// narrowed down to `minimumWidth` if that makes room, so that it hides none of them; otherwise at
// the area's right edge, over as little of the previews as can be.
struct EditorPlacement {
    int Left = 0, Width = 0;
    bool operator==(const EditorPlacement&) const = default;
};
EditorPlacement PlaceEditor(int areaWidth, int previewsRight, int width, int minimumWidth);

// The quit question; true when the user means it.
bool ConfirmQuit();

// "VORN Terramason" until a project exists, then "VORN Terramason - [design] - [Name]", empty
// brackets included: a project may be made with no name.
std::string MainTitle(bool projectOpen, const std::string& projectName);
