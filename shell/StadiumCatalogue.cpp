#include "shell/StadiumCatalogue.h"

#include <unistd.h>
#include <filesystem>

#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/myOps.h"
#include "shell/Processes.h"
#include "shell/RegistryOps.h"
#include "shell/mdlOIFToolAuto.h"

namespace fs = std::filesystem;

const std::array<const char*, 35> ProjectTextureNames = {
    "tp00", "tp01", "tp02", "tp03", "tp04", "tp05", "SL00", "SL01", "SL02", "gras", "grsb", "grsc",
    "adba", "adbb", "adbc", "abna", "abnb", "abnc", "afla", "aflb", "aflc", "hbna", "hbnb", "hbnc",
    "hfla", "hflb", "hflc", "rwa0", "rwa1", "rwa2", "rwa3", "rwh0", "rwh1", "rwh2", "rwh3"};

bool BaseUnsupported(int captionIndex) {
    switch (captionIndex) {
    case 4:
    case 19:
    case 24:
    case 25:
    case 26:
    case 27: return true;
    default: return false;
    }
}

int StadiumNumber(int basedOn) {
    std::string list = "0,1,3,5,8,9,12,13,15,17,20,21,23,25,28,30,31,33,36,39,43,45,47,49,50,52,53,55,56,58";
    const std::vector<std::string> numbers = SplitText(list, ",");
    const std::size_t at = static_cast<std::size_t>(basedOn + 2);
    if (basedOn < -1 || at >= numbers.size()) return 0;
    return std::stoi(numbers[at]);
}

namespace {

// gfxpak lives beside the user's settings; a Windows build of it runs through Wine.
std::string AppTool(const std::string& name) {
    const std::string native = AppPath(name);
    if (!FileExists(native) && FileExists(native + ".exe")) return native + ".exe";
    return native;
}

// Keeps the process's current directory as it was, whatever happens in between.
class CurrentDirectoryKeeper {
public:
    CurrentDirectoryKeeper() {
        std::error_code ec;
        saved_ = fs::current_path(ec);
    }
    ~CurrentDirectoryKeeper() { Restore(); }
    void Restore() {
        std::error_code ec;
        if (!saved_.empty()) fs::current_path(saved_, ec);
    }
    CurrentDirectoryKeeper(const CurrentDirectoryKeeper&) = delete;
    CurrentDirectoryKeeper& operator=(const CurrentDirectoryKeeper&) = delete;

private:
    fs::path saved_;
};

template <class Step>
void Suppressed(Step step) {
    try {
        step();
    } catch (...) {
        // A failed step is passed over; the next one runs.
    }
}

}  // namespace

StadiumProject MakeProject(StadiumProject& project, int index, const std::string& name) {
    project.Name = name;
    project.BasedOn = static_cast<std::int16_t>(index - 1);
    project.Polygons = PolygonList{};
    project.Scene = DefaultPreviewScene();
    StadiumCatalogue = BuildStadiumCatalogue();
    project.Textures.clear();
    for (const char* textureName : ProjectTextureNames) project.Textures.push_back(TextureSlot{textureName, 0, {}});

    CurrentDirectoryKeeper directory;
    const std::string temp = TempFolder();
    Suppressed([&] { fs::create_directories(temp); });
    Suppressed([&] { fs::current_path(temp); });
    Suppressed([&] {
        // Only the folder's own files: subfolders and what is in them stay.
        for (const auto& entry : fs::directory_iterator(temp))
            if (!entry.is_directory()) fs::remove(entry.path());
    });

    if (project.BasedOn < 0) {
        directory.Restore();
        project.OIF = NewOIFFile();
        return project;
    }

    const int number = StadiumNumber(project.BasedOn);
    const std::string fifa = FifaInstallDir();
    const std::string archive = FindNoCase(fifa, "data/stad" + std::to_string(number) + ".big");
    const StadiumRow row = StadiumCatalogue[static_cast<std::size_t>(project.BasedOn)];
    Suppressed([&] {
        fs::copy_file(archive, temp + "/stad" + std::to_string(number) + ".big", fs::copy_options::overwrite_existing);
    });
    const std::string gfxpak = "\"" + AppTool("gfxpak") + "\"";
    Suppressed([&] { RunAndWait(gfxpak + " -u \"" + archive + "\"", WindowMode::Hidden); });
    for (const char* image : {"skcd", "tp00", "tp01", "tp02", "tp03", "tp04", "tp05"})
        Suppressed([&] {
            RunAndWait(gfxpak + " -e \"" + temp + "/" + row.StaticTextureFile + "\" " + image, WindowMode::Hidden);
        });
    directory.Restore();

    const std::string oif = temp + "/stadium.oif";
    Suppressed([&] { ConvertOToOIF(temp + "/" + row.ModelFile, oif); });
    // Without a converted model the project is the empty stadium, which saves to a file that loads.
    project.OIF = NewOIFFile();
    Suppressed([&] {
        if (FileExists(oif)) project.OIF = LoadOIF(oif);
    });
    return project;
}
