#pragma once
// The commands of the main window's Edit and View menus that need no window: deleting the
// selected parts, the enable rule of the clipboard entries, the forced preview refresh and the
// VRML files behind "Current VRML Source".
#include <string>

// What kind of control has the keyboard focus when the Edit menu opens.
enum class ControlKind { None, TextBox, ComboBox, ListBox, PictureBox, Other };

struct EditCommandState {
    bool cut = true, copy = true, paste = false;
    bool operator==(const EditCommandState&) const = default;
};

// The edit update: Cut and Copy stay on for the controls that have something to cut, Paste
// follows what the clipboard holds. With no focused control at all nothing can be asked of it,
// so Cut and Copy stay on and Paste off.
EditCommandState EditUpdate(ControlKind active, bool clipboardHasText, bool clipboardHasPicture);

// "Are you sure you want to delete the 2 selected parts?"
std::string DeletePartsQuestion(int count);
// Edit, "Delete": asks, removes the parts whose rows are selected in the parts list, and
// refreshes the list and the previews. Nothing selected: no question, nothing changes.
// Returns the number of parts removed.
int DeleteSelectedParts();

// View, "Refresh": rebuilds the previews even when "Stadium Previews" is off, and leaves the
// flag as it was.
void RefreshPreviewsByHand();

// The four textured previews, in the order of the "Current VRML Source" submenu.
inline constexpr const char* PreviewViewNames[4] = {"Top", "Perspective", "Back", "Right"};
// The VRML file of one preview in the scratch folder: "temp/Top.wrl". The preview writer names
// the files after their views with the capital letter, and the file system tells case apart, so
// this is the one spelling used for both.
std::string VRMLSourcePath(const std::string& viewName);
// Opens that file in the desktop's text editor; a missing file is the editor's to report.
void OpenVRMLSource(const std::string& viewName);
