#pragma once
#include <vector>

// What an operation on the document asks of the windows that show it. The editor installs its
// windows here; without them (terramason-cli, most tests) every call does nothing.
class Views {
public:
    virtual ~Views() = default;
    // Reloads the parts list and the OIF Editor from CurrentProject and selects every part.
    virtual void RefreshPartsList() {}
    // Opens the preview windows (as configured) and writes their files.
    virtual void loadviews() {}
    // Rewrites every preview file and shows them again.
    virtual void RebuildPreviews() {}
    // Rejoins the preview files after a change of which parts are shown.
    virtual void ReloadPreviews() {}
    // Places and shows the parts list.
    virtual void showselectobj() {}
    // Which rows of the parts list are selected, one flag per row; row i stands for part i, and
    // a selected part is one the previews show. Without a parts list every part is shown.
    virtual std::vector<bool> SelectedParts();
};

Views& TheViews();
// Installs views (not owned); nullptr puts back the ones that do nothing. Returns the previous.
Views* InstallViews(Views* views);
