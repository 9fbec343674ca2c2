#pragma once
// What an operation on the document asks of the windows that show it. The editor installs its
// windows here; without them (terramason-cli, most tests) every call does nothing.
#include <cstddef>
#include <string>
#include <vector>

// Which parts the previews show (one flag per part; missing flags count as shown), and the part
// and vertex selected in the OIF Editor (-1 for none).
struct PreviewSelection {
    std::vector<bool> shown;
    int part = -1;
    int vertex = -1;
    bool Shows(std::size_t index) const { return index >= shown.size() || shown[index]; }
};

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

    // The shown parts with the part and vertex selected in the OIF Editor.
    virtual PreviewSelection Selection();
    // A preview window lets go of its file before it is rewritten, and loads it again after.
    // Views without a window of that description ignore both.
    virtual void ReleaseView(const std::string& description) { (void)description; }
    virtual void LoadView(const std::string& description, const std::string& path) {
        (void)description;
        (void)path;
    }
    // The wireframe window shows the file at path.
    virtual void ShowWirePreview(const std::string& path) { (void)path; }
};

Views& TheViews();
// Installs views (not owned); nullptr puts back the ones that do nothing. Returns the previous.
Views* InstallViews(Views* views);
