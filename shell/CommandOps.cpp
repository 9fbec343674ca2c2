#include "shell/CommandOps.h"

#include <algorithm>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "shell/HelpOps.h"

EditCommandState EditUpdate(ControlKind active, bool clipboardHasText, bool clipboardHasPicture) {
    EditCommandState state;
    switch (active) {
    case ControlKind::None: break;
    case ControlKind::TextBox:
    case ControlKind::ComboBox:
    case ControlKind::ListBox: state.paste = clipboardHasText; break;
    case ControlKind::PictureBox: state.paste = clipboardHasPicture; break;
    case ControlKind::Other: state.cut = state.copy = false; break;
    }
    return state;
}

std::string DeletePartsQuestion(int count) {
    return "Are you sure you want to delete the " + std::to_string(count) + " selected parts?";
}

int DeleteSelectedParts() {
    const std::vector<bool> selected = TheViews().SelectedParts();
    const int count = static_cast<int>(std::count(selected.begin(), selected.end(), true));
    if (count < 1) return 0;
    if (AskQuestion(DeletePartsQuestion(count), MessageButtons::YesNo, MessageIcon::Question, "Terramason") !=
        MessageAnswer::Yes)
        return 0;
    const std::size_t before = CurrentProject.OIF.Parts.size();
    CurrentProject.OIF = RemoveParts(CurrentProject.OIF, selected);
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
    return static_cast<int>(before - CurrentProject.OIF.Parts.size());
}

void RefreshPreviewsByHand() {
    const bool was = PreviewRefreshOn;
    PreviewRefreshOn = true;
    // Put back even when the rebuild fails, so a failed refresh does not switch previews on.
    struct Restore {
        bool value;
        ~Restore() { PreviewRefreshOn = value; }
    } restore{was};
    TheViews().RebuildPreviews();
}

std::string VRMLSourcePath(const std::string& viewName) { return AppPath("temp/" + viewName + ".wrl"); }

void OpenVRMLSource(const std::string& viewName) { ShowTextFile(VRMLSourcePath(viewName)); }
