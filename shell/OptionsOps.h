#pragma once
// The settings of the Options window: which config.ini key each control edits, how a stored
// value is shown in its control, how a control's content is stored again, the order of "Apply"
// and the Perspective preview's render flags that follow "Previews"/"PerspectiveTex".
#include <array>
#include <functional>
#include <map>
#include <string>
#include <string_view>

enum class OptionKind { Flag, Number };

struct OptionKey {
    const char* section;
    const char* key;
    OptionKind kind;
    const char* control;  // object name of the control in the Options window
};

// Every key the Options window edits, with its control.
inline constexpr std::array<OptionKey, 14> OptionKeys{{
    {"Startup", "Maximise", OptionKind::Flag, "maxwindow"},
    {"Startup", "NewProj", OptionKind::Flag, "newproj"},
    {"Terramason", "Starter", OptionKind::Flag, "vrmlreminder"},
    {"Terramason", "Previews", OptionKind::Flag, "previews"},
    {"Terramason", "PreviewRefresh", OptionKind::Flag, "refreshpreviewbox"},
    {"Terramason", "OIFEditor", OptionKind::Flag, "oifeditor"},
    {"Previews", "PerspectiveTex", OptionKind::Flag, "viewtextures"},
    {"Previews", "ZoomAmount", OptionKind::Number, "zoomamount"},
    {"Crowd Wizard", "CrowdHeight", OptionKind::Number, "crowdwizardheight"},
    {"Crowd Wizard", "NoOfRows", OptionKind::Number, "noofrows"},
    {"Crowd Wizard", "CrowdSpacing", OptionKind::Number, "crowdspacing"},
    {"Crowd Wizard", "Home", OptionKind::Flag, "homecrowd"},
    {"Import", "CrowdHeight", OptionKind::Number, "optimisecrowdheight"},
    {"Stadium Importer", "AutoClose", OptionKind::Flag, "closestmap"},
}};

// The row of a control; null for a name that is not in the table.
const OptionKey* OptionKeyOf(std::string_view control);

// A check box is ticked exactly when the stored text is "1": "1 " and "01" are not.
bool FlagShown(const std::string& stored);
// A number box shows the stored text's leading number printed again, so "150.00" shows "150"
// and a missing key "0", not the box's default text.
std::string NumberShown(const std::string& stored);
// What a check box stores.
std::string FlagStored(bool checked);
// What a number box stores: its leading number printed again, so "150abc" stores "150" and
// text without a number "0".
std::string NumberStored(const std::string& shown);

// The content of every control as the window shows it: "1"/"0" for a check box, the text of a
// number box.
using OptionContents = std::map<std::string, std::string>;

// Reads every key of the table into the form its control shows.
OptionContents ReadOptions();

// The controls "Apply" stores before the viewer change, and those it stores after.
inline constexpr std::array<const char*, 3> ApplyBeforeViewer{"previews", "refreshpreviewbox", "viewtextures"};
inline constexpr std::array<const char*, 11> ApplyAfterViewer{
    "oifeditor",    "closestmap", "optimisecrowdheight", "crowdwizardheight", "noofrows", "crowdspacing", "homecrowd",
    "vrmlreminder", "newproj",    "maxwindow",           "zoomamount"};

using ConfigWriter = std::function<void(const std::string& section, const std::string& key, const std::string& value)>;

// "Apply": stores every control in the order above through `write` (WriteConfig when empty),
// running `viewerChange` between the two groups so that it sees the new "PerspectiveTex". A
// control missing from `contents` stores as unticked or as an empty box.
void ApplyOptions(const OptionContents& contents, const std::function<void()>& viewerChange,
                  const ConfigWriter& write = {});
