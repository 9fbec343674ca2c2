// End-to-end checks of the generator and wizard verbs: crowds, crowd-wizard, adboards, banners,
// light and transform.
#include <filesystem>
#include <set>
#include <string>

#include "cli/CliFixture.h"
#include "support/Chunks3DS.h"

using json = nlohmann::json;

namespace {

using namespace chunks3ds;

const char* const Plane = "0,0,0;1040,0,0;1040,500,-1000;0,500,-1000";

std::vector<std::string> Textures(const json& doc) {
    std::vector<std::string> names;
    for (const json& part : doc["parts"]) names.push_back(part["texture"]);
    return names;
}

std::size_t Vertices(const json& doc) {
    std::size_t n = 0;
    for (const json& part : doc["parts"]) n += part["vertices"].size();
    return n;
}

class cliWizards : public CliScratchTest {
protected:
    // Runs a verb that writes the document named last and gives that document.
    nlohmann::json Run(const std::vector<std::string>& args) {
        const CliResult r = RunCli(args);
        EXPECT_EQ(r.status, 0) << r.err;
        return Dump(args.back());
    }
    std::string Out() const { return scratch.file("out.oif"); }
};

}  // namespace

TEST_F(cliWizards, crowdsDealsRowsRepeatablyAndFixesTheirHeight) {
    const std::string rav = Put(
        "rows.txt",
        Bytes()
            .raw(
                "Version=1\r\nNumPoly=1\r\n[P0]\r\nName=\r\nNumVert=4\r\n  0,0,0,0,1,102030\r\n  520,0,0,1,1,102030\r\n"
                "  520,100,0,1,0,102030\r\n  "
                "0,100,0,0,0,102030\r\nNumGrps=1\r\nGroup1=rowb\r\nNumIdx=0\r\nIndices=\r\n")
            .data);
    const json doc = Run({"crowds", rav, "--fix-height", "260", "--seed", "7", "-o", Out()});
    EXPECT_EQ(Textures(doc), (std::vector<std::string>{"rwa0", "rwa1", "rwa2", "rwa3"}));
    ASSERT_EQ(Vertices(doc), 4u);
    double top = 0;
    for (const json& part : doc["parts"])
        for (const json& v : part["vertices"]) top = std::max(top, v[1].get<double>());
    EXPECT_EQ(top, 260);
    const std::vector<std::uint8_t> first = ReadFile(Out());
    Run({"crowds", rav, "--fix-height", "260", "--seed", "7", "-o", Out()});
    EXPECT_EQ(ReadFile(Out()), first) << "the same seed deals the same way";

    const CliResult wrong = RunCli({"crowds", Put("rows.csv", {}), "-o", Out()});
    EXPECT_EQ(wrong.status, 2);
}

TEST_F(cliWizards, crowdWizardFillsThePlaneByRowsOrSpacingAndRefusesNoRows) {
    json doc = Run({"crowd-wizard", "--corners", Plane, "--seed", "3", "-o", Out()});
    EXPECT_EQ(Textures(doc), (std::vector<std::string>{"rwh0", "rwh1", "rwh2", "rwh3"}));
    EXPECT_EQ(Vertices(doc), 10u * 4);
    doc = Run({"crowd-wizard", "--corners", Plane, "--spacing", "150", "--away", "--into", Out(), "-o", Out()});
    EXPECT_EQ(doc["parts"].size(), 8u);
    EXPECT_EQ(Vertices(doc), 10u * 4 + 7 * 4) << "1000 long at 150 apart: 7 rows";
    doc = Run({"crowd-wizard", "--planes", Put("planes.3ds", QuadMeshes(2)), "--rows", "2", "-o", Out()});
    EXPECT_EQ(Vertices(doc), 2u * 2 * 4);

    std::filesystem::remove(Out());
    CliResult r = RunCli({"crowd-wizard", "--corners", Plane, "--rows", "0", "-o", Out()});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), std::vector<std::string>{"The number of rows is 0: it must be at least 1."});
    EXPECT_FALSE(std::filesystem::exists(Out()));
    EXPECT_EQ(RunCli({"crowd-wizard", "--corners", "0,0,0;1,1,1", "-o", Out()}).status, 2);
    EXPECT_EQ(RunCli({"crowd-wizard", "--corners", Plane, "--planes", "x.3ds", "-o", Out()}).status, 2);
}

TEST_F(cliWizards, adboardsAndBannersDealMeshesToTheirTextures) {
    EXPECT_EQ(Textures(Run({"adboards", Put("seven.3ds", QuadMeshes(7)), "-o", Out()})),
              (std::vector<std::string>{"adba", "adbb", "adbc"}));
    EXPECT_EQ(Textures(Run({"banners", Put("four.3ds", QuadMeshes(4)), "--away", "-o", Out()})),
              (std::vector<std::string>{"abna", "abnb", "afla", "aflb"}));
    const CliResult r = RunCli({"adboards", Put("boards.obj", QuadMeshes(1)), "-o", scratch.file("none.oif")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(), std::vector<std::string>{"Unknown file extension!"});
}

TEST_F(cliWizards, lightGreysByDistanceAndRefusesADocumentAtTheOrigin) {
    Run({"crowd-wizard", "--corners", "0,0,0;1000,0,0;1000,0,0;0,0,0", "--rows", "1", "--row-height", "0", "-o",
         Out()});
    json doc = Run({"light", Out(), "--origin", "150", "-o", scratch.file("lit.oif")});
    std::set<std::uint32_t> greys;
    for (const json& part : doc["parts"])
        for (const json& v : part["vertices"]) greys.insert(v[3].get<std::uint32_t>());
    EXPECT_EQ(greys, (std::set<std::uint32_t>{0xFFF0F0F0u, 0xFF1E1E1Eu}));

    Run({"crowd-wizard", "--corners", "0,0,0;0,0,0;0,0,0;0,0,0", "--rows", "1", "--row-height", "0", "-o", Out()});
    const CliResult r = RunCli({"light", Out(), "-o", scratch.file("dark.oif")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.errLines(),
              std::vector<std::string>{"All vertices lie at the origin, so there is no distance to light them by."});
    EXPECT_FALSE(std::filesystem::exists(scratch.file("dark.oif")));
}

TEST_F(cliWizards, transformChangesTheListedPartsOnly) {
    Run({"adboards", Put("two.3ds", QuadMeshes(2)), "-o", Out()});
    const json before = Dump(Out());
    const json doc =
        Run({"transform", Out(), "--parts", "1", "--rotate", "0,90,0", "--mirror", "y", "-o", scratch.file("t.oif")});
    EXPECT_EQ(doc["parts"][0], before["parts"][0]);
    // (300, 0, 0) turned about Y is (0, 0, -300).
    const json& v = doc["parts"][1]["vertices"][0];
    EXPECT_NEAR(v[0].get<double>(), 0, 1e-3);
    EXPECT_NEAR(v[2].get<double>(), -300, 1e-3);
    EXPECT_EQ(RunCli({"transform", Out(), "--mirror", "w", "-o", Out()}).status, 2);
    EXPECT_EQ(RunCli({"transform", Out(), "--scale", "1,2", "-o", Out()}).status, 2);
}
