// terramason-cli run end to end, one row per command line: each verb reaches the editor's logic
// and writes or prints its result, and each refusal has its exit status and message. The rules
// behind the verbs are the logic tests'; here only what the program adds is checked.
#include <sys/stat.h>
#include <sys/wait.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "exchange/RhinoScriptOps.h"
#include "support/Chunks3DS.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;
using namespace chunks3ds;

namespace {

struct Outcome {
    int status;
    std::string out, err;
};

// The program as a shell starts it, its two streams kept apart.
Outcome RunCli(const std::string& dir, const std::vector<std::string>& args) {
    std::string command = "'" TM_CLI_PATH "'";
    for (const std::string& a : args) {
        command += " '";
        for (char c : a) command += c == '\'' ? std::string("'\\''") : std::string(1, c);
        command += "'";
    }
    const int w = std::system((command + " >'" + dir + "/run.stdout' 2>'" + dir + "/run.stderr'").c_str());
    return {WIFEXITED(w) ? WEXITSTATUS(w) : -1, ReadText(dir + "/run.stdout"), ReadText(dir + "/run.stderr")};
}

// "$" stands for the scratch folder.
std::string Placed(std::string text, const std::string& dir) {
    for (std::size_t at = text.find('$'); at != std::string::npos; at = text.find('$', at + dir.size()))
        text.replace(at, 1, dir + "/");
    return text;
}

// "X,Y=RRGGBB" held against a 24-bit bitmap, whose rows are stored bottom first, padded to four bytes.
bool PixelIs(const std::vector<std::uint8_t>& b, const std::string& needle) {
    int x = 0, y = 0;
    unsigned rgb = 0;
    if (b.size() < 54 || std::sscanf(needle.c_str(), "%d,%d=%x", &x, &y, &rgb) != 3) return false;
    auto at = [&](std::size_t p) { return std::size_t(b[p] | b[p + 1] << 8 | b[p + 2] << 16); };
    const std::size_t w = at(18), h = at(22), row = (w * 3 + 3) / 4 * 4;
    const std::size_t p = at(10) + (h - 1 - std::size_t(y)) * row + std::size_t(x) * 3;
    return p + 2 < b.size() && unsigned(b[p + 2] << 16 | b[p + 1] << 8 | b[p]) == rgb;
}

// A stadium of parts with the given textures, each one quad strip of four vertices.
std::vector<std::uint8_t> Stadium(const std::vector<std::string>& textures) {
    Bytes b;
    b.raw("OiFF").i16(1).i16(1).i32(0).i32(0).i32(0).i32(std::int32_t(textures.size()));
    for (std::size_t i = 0; i < textures.size(); ++i) {
        b.field("Part " + std::to_string(i), 28).raw(textures[i]).i32(4).i32(4);
        for (int v = 0; v < 4; ++v) b.vertex(float(i), float(v), 0, 0, 0, 0);
        b.i16(0).i16(1).i16(2).i16(3);
    }
    return b.data;
}

// Two parts: the first with a name of all 28 characters, a texture with a NUL and edge values;
// the second with 8-bit characters, a blank texture and no indices; floats the JSON must spell.
std::vector<std::uint8_t> TwoParts(bool trailer) {
    const float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    Bytes b;
    b.raw("OiFF").i16(3).i16(1).i32(999).i32(2).i32(-7).i32(2);
    b.raw("ABCDEFGHIJKLMNOPQRSTUVWXYZ01").raw(std::string("ab\0 ", 4)).i32(2).i32(3);
    b.vertex(0.1f, -2.5f, 1e7f, 0xFFFFFFFFu, 1.0f / 3.0f, 1.0f);
    b.vertex(std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(), -123.456f, 0, 0.5f,
             16777216.0f);
    b.i16(-1).i16(32767).i16(-32768);
    b.field("Caf\xE9 \x80", 28).raw("    ").i32(1).i32(0).vertex(1.5e-5f, -0.0f, inf, 0x80000000u, nan, 100);
    if (trailer) b.u8(0xDE).u8(0xAD).u8(0xBE).u8(0xEF).u8(0x00).u8(0x7F);
    return b.data;
}

// The inputs worked out by hand, bitmaps of one colour per half among them, are in tests/data/cli;
// the others are built here.
void Inputs(const std::string& dir) {
    fs::copy(std::string(TM_TEST_DATA) + "/cli", dir, fs::copy_options::recursive);
    auto put = [&](const std::string& name, const std::vector<std::uint8_t>& bytes) {
        WriteFile(dir + "/" + name, bytes);
    };
    auto text = [&](const std::string& name, const std::string& t) { put(name, Bytes().raw(t).data); };
    put("two.oif", TwoParts(true));
    put("notrail.oif", TwoParts(false));
    // Resaved: the file length filled in, the NUL of "ab" blank, the blank texture tp00.
    std::vector<std::uint8_t> resaved = TwoParts(false);
    for (int i = 0; i < 4; ++i) resaved[8 + i] = std::uint8_t(resaved.size() >> (8 * i));
    resaved[24 + 28 + 2] = ' ';
    for (int i = 0; i < 4; ++i) resaved[24 + 40 + 2 * 24 + 3 * 2 + 28 + i] = "tp00"[i];
    put("resaved.oif", resaved);
    std::vector<std::uint8_t> kind2 = Stadium({"tp01"}), cut = kind2, broken = Stadium({"tp00"});
    kind2[6] = 2;
    cut.resize(23);
    broken.pop_back();
    for (const auto& [name, bytes] : {std::pair{"kind2.oif", kind2},
                                      {"short.oif", cut},
                                      {"broken.oif", broken},
                                      {"st1.oif", Stadium({"tp00"})},
                                      {"st2.oif", Stadium({"cr01", "ad02"})},
                                      {"st3.oif", Stadium({"tp00", "cr01", "ad02"})},
                                      {"made.oif", Stadium({"rwh0"})},
                                      {"st6.oif", Stadium({"tp00", "TP00", "tp00", "rwh0", "tp00", "rwh0"})}})
        put(name, bytes);
    const Bytes3DS stand = File(
        {Material("Seats", "rwh0.bmp"), Object("Stand", {Vertices({{0, 0, 0}, {1, 0, 0}, {1, 2, 0.5f}, {0, 2, 0.5f}}),
                                                         TexVerts({{0, 0}, {1, 0}, {1, 1}, {0, 1}}),
                                                         Faces({{0, 1, 2}, {0, 2, 3}}, {FaceMaterial("Seats")})})});
    put("stand.3ds", stand);
    put("cut.3ds", Bytes3DS(stand.begin(), stand.begin() + std::ptrdiff_t(stand.size() / 2)));
    for (int n : {2, 4, 7}) put("q" + std::to_string(n) + ".3ds", QuadMeshes(n));
    put("boards.obj", QuadMeshes(1));
    text("script.txt", RhinoScriptText(ReadText(dir + "/rav.txt"), "C:\\tex\\").text);
    // A .o file goes through the converter of the OIFTool folder that registry.conf names.
    fs::create_directories(dir + "/terramason");
    fs::create_directories(dir + "/oiftool");
    text("terramason/registry.conf",
         "HKEY_CURRENT_USER\\Software\\Problems Inc\\OIFTool\\InstallPath=" + dir + "/oiftool\n");
    text("oiftool/oifconvert", "#!/bin/sh\n[ \"$1\" = --to-oif ] && cp '" + dir + "/made.oif' \"$3\"\n");
    ::chmod((dir + "/oiftool/oifconvert").c_str(), 0755);
    // The importer's model of three textures and a RAV text of two rows, with their pictures.
    fs::copy_file(std::string(TM_TEST_DATA) + "/3ds/atlas.3ds", dir + "/atlas.3ds");
}

// A command line, its exit status, where its result shows ("" standard output, "stderr", a file
// in the scratch folder, "!FILE" a file that must not be there) and texts found there in order
// ("!TEXT": nowhere; "=FILE": the same bytes as FILE; in a .bmp "X,Y=RRGGBB"). A refusal's texts
// are on stderr. Files named out* are removed before each row; outdir is an empty folder.
struct Row {
    const char* args;
    int status;
    const char* where;
    const char* needles;  // separated by |
};

#define PLANE "--corners 0,0,0;1040,0,0;1040,500,-1000;0,500,-1000"
#define ATLAS "atlas $atlas.3ds --textures $tex --bitmap $out.bmp -o $out.oif --layout "
#define RAVATLAS "atlas $rows.txt --textures $tex --layout $rows.json --bitmap $out.bmp -o $out.oif --sheet 256x512 "

const Row Rows[] = {
    // dump and resave, which read alike: a refusal of each, each reading's message once
    {"dump $two.oif", 0, "",
     "\"label\": \"OIF1\"|\"header\": {\"magic\": \"OiFF\", \"version\": 3, \"kind\": 1, \"fileLength\": 999, "
     "\"trailerCount\": 2, \"trailerSpare\": -7, \"partCount\": 2}|\"name\": "
     "\"ABCDEFGHIJKLMNOPQRSTUVWXYZ01\"|\"texture\": \"ab  \"|[0.1, -2.5, 1e+07, 4294967295, 0.33333334, "
     "1]|[3.4028235e+38, 1e-45, -123.456, 0, 0.5, 16777216]|[-1, 32767, -32768]|\"name\": \"Caf\xC3\xA9 \xE2\x82\xAC   "
     "                   \"|\"texture\": \"tp00\"|[1.5e-05, -0, null, 2147483648, null, 100]|\"trailer\": "
     "\"deadbeef007f\""},
    {"resave $notrail.oif $out.oif", 0, "out.oif", "=resaved.oif"},
    {"resave $notrail.oif $out.oif", 0, "stderr", "wrote $out.oif: 2 parts, 3 vertices\n"},
    {"resave --quiet $notrail.oif $out.oif", 0, "out.oif", ""},
    {"dump $kind2.oif", 1, "", "Invalid OIF file type!\n\nNot a stadium OIF file.\n"},
    {"resave $short.oif $out.oif", 1, "", "Invalid OIF file!\n"},
    {"resave $out-missing.oif $out.oif", 1, "", "$out-missing.oif"},
    {"resave $st1.oif $nofolder/out.oif", 1, "", "Cannot write"},
    {"dump $", 1, "", "\n"},
    {"", 2, "", ""},
    {"frob", 2, "", "frob"},
    {"dump", 2, "", ""},
    {"dump a.oif b.oif", 2, "", ""},
    {"dump --bogus a.oif", 2, "", ""},
    {"resave a.oif", 2, "", "Usage: terramason-cli resave IN.oif OUT.oif"},
    {"resave a.oif b.oif c.oif", 2, "", ""},
    // import of .oif, .3ds and .o, import-csv and quads
    {"import $st2.oif --into $st1.oif -o $out.oif", 0, "out.oif", R"("partCount": 3|tp00|cr01|ad02)"},
    {"import $st2.oif -o $out.oif", 0, "out.oif", R"("partCount": 2)"},
    {"import $points.csv -o $out.oif", 1, "", "File type not supported!\n"},
    {"import $broken.oif -o $out.oif", 1, "", "Invalid OIF file!\n"},
    {"import $out-missing.oif -o $out.oif", 1, "", "$out-missing.oif"},
    {"import $stadium.o -o $out.oif", 0, "out.oif", "rwh0"},
    {"import $stadium.o -o $out.oif", 0, "!terramason/tempoif.oif", ""},
    {"dump-3ds $stand.3ds", 0, "",
     R"([1, 2, 0.5]|[0, 2, 3, 7]|"materialName": "Seats"|{"name": "Seats", "textureFile": "rwh0.bmp"})"},
    // (1, 2, 0.5) in 3DS axes is (100, 50, -200) in the game's.
    {"import $stand.3ds -o $out.oif", 0, "out.oif", R"("partCount": 1|[100, 50, -200, )"},
    {"import $cut.3ds -o $out.oif", 1, "", "damaged"},
    {"dump-3ds $foreign.3ds", 1, "", "not a valid 3ds file!\n"},
    {"import-csv $row.csv -o $out.oif --wire $out.wrl", 0, "out.oif", "[100, 0, 0, 0, 0, 0]|[0, 1, 2, 3]"},
    {"import-csv $row.csv -o $out.oif --wire $out.wrl", 0, "out.wrl", "100 0 0"},
    {"quads $row.csv $row.csv -o $out.wrl", 0, "out.wrl", "coordIndex|coordIndex|               4 5 -1"},
    // merge, previews, wire
    {"merge $st6.oif -o $out.oif", 0, "out.oif", R"("partCount": 3)"},
    {"merge $st6.oif --crowd-only -o $out.oif", 0, "out.oif", R"("partCount": 5)"},
    {"previews $st3.oif $outdir --hide 1", 0, "outdir/Top.wrl",
     "#VRML V2.0 utf8\r\n|description \"Top\"|url \"tp00.png\"|!url \"cr01.png\"|url \"ad02.png\""},
    {"previews $st3.oif $outdir --hide 1", 0, "stderr", "Top.wrl (|Right.wrl (|Back.wrl (|Perspective.wrl ("},
    {"previews $st3.oif $outdir --hide 1", 0, "outdir/Part_1.tmp", ""},
    {"previews $st3.oif $outdir --hide x", 2, "", ""},
    {"previews $st2.oif $outdir --hide 0,2", 2, "", "--hide: part 2 is not in the document"},
    {"wire $st2.oif $out.wrl --vertex 1:2", 0, "out.wrl",
     "   translation 1 2 0\r\n|   position 1 2 100\r\n|\"Vertex\"|\"Top\""},
    {"wire $st2.oif $out.wrl --hide 0,1", 0, "out.wrl", "!Shape"},
    {"wire $st2.oif $out.wrl --vertex 1-2", 2, "", ""},
    {"wire $st2.oif $out.wrl --hide 7", 2, "", "--hide: part 7 is not in the document"},
    {"wire $st2.oif $out.wrl --vertex 2:0", 2, "", "--vertex: the document has no vertex 0 in part 2"},
    {"wire $st2.oif $out.wrl --vertex 1:4", 2, "", "--vertex: the document has no vertex 4 in part 1"},
    // the generators and wizards; keep7.oif is the first of two runs with one seed
    {"crowds $crowd.txt --fix-height 260 --seed 7 -o $keep7.oif", 0, "keep7.oif", "rwa0|rwa1|rwa2|rwa3|, 260, "},
    {"crowds $crowd.txt --fix-height 260 --seed 7 -o $out.oif", 0, "out.oif", "=keep7.oif"},
    {"crowds $points.csv -o $out.oif", 2, "", ""},
    {"crowd-wizard " PLANE " --seed 3 -o $out.oif", 0, "out.oif", "rwh0|rwh1|rwh2|rwh3"},
    {"crowd-wizard " PLANE " -o $out.oif", 0, "stderr", "4 parts, 40 vertices"},
    // 1000 long at 150 apart: 7 rows.
    {"crowd-wizard " PLANE " --spacing 150 --away --into $st1.oif -o $out.oif", 0, "stderr", "5 parts, 32 vertices"},
    {"crowd-wizard " PLANE " --away -o $out.oif", 0, "out.oif", "rwa0|!rwh"},
    {"crowd-wizard --planes $q2.3ds --rows 2 -o $out.oif", 0, "stderr", "16 vertices"},
    {"crowd-wizard " PLANE " --rows 0 -o $out.oif", 1, "", "The number of rows is 0: it must be at least 1.\n"},
    {"crowd-wizard --corners 0,0,0;1,1,1 -o $out.oif", 2, "", ""},
    {"crowd-wizard " PLANE " --planes $q2.3ds -o $out.oif", 2, "", ""},
    {"adboards $q7.3ds -o $out.oif", 0, "out.oif", R"("partCount": 3|adba|adbb|adbc)"},
    {"banners $q4.3ds --away -o $out.oif", 0, "out.oif", "abna|abnb|afla|aflb"},
    {"adboards $boards.obj -o $out.oif", 1, "", "Unknown file extension!\n"},
    {"crowd-wizard --corners 0,0,0;1000,0,0;1000,0,0;0,0,0 --rows 1 --row-height 0 -o $flat.oif", 0, "flat.oif", ""},
    {"light $flat.oif --origin 150 -o $out.oif", 0, "out.oif", "4280163870|4293980400"},
    {"crowd-wizard --corners 0,0,0;0,0,0;0,0,0;0,0,0 --rows 1 --row-height 0 -o $dark.oif", 0, "dark.oif", ""},
    {"light $dark.oif -o $out.oif", 1, "",
     "All vertices lie at the origin, so there is no distance to light them by.\n"},
    // Part 1's (1, 0, 0): scaled to (2, 0, 0), moved to (12, 20, 30), mirrored in y; turned about y to (0, 0, -1).
    {"transform $st2.oif --parts 1 --scale 200,100,100 --translate 10,20,30 --mirror y -o $out.oif", 0, "out.oif",
     "[0, 0, 0, 0, 0, 0]|[12, -20, 30, 0, 0, 0]|[12, -21, 30, 0, 0, 0]"},
    {"transform $st2.oif --parts 1 --rotate 0,90,0 --quiet -o $out.oif", 0, "out.oif", "[0, 0, 0, |, 0, -1, 0, 0, 0]"},
    {"transform $st2.oif --parts 1,2 -o $out.oif", 2, "", "--parts: part 2 is not in the document"},
    {"transform $st2.oif --mirror w -o $out.oif", 2, "", ""},
    {"transform $st2.oif --scale 1,2 -o $out.oif", 2, "", ""},
    // RAV text
    {"dump-rav $rav.txt", 0, "",
     "\"version\": 3|\"vertices\": [],|\"groups\": []|\"name\": \"Trib\xC3\xBCne\"|[200, 0, 0, 4294967295, 1, 0]|[0.1, "
     "0, -0, 2155905279, 0, 0]|{\"name\": \"rowa\", \"indices\": [0, 1, 2, 3]}"},
    {R"(rav-script $rav.txt $out.txt C:\tex\)", 0, "out.txt", "=script.txt"},
    {"dump-rav $short.txt", 1, "",
     "Invalid RAV file!\n\nThe file ends after line 2, but its counts call for more lines.\n"},
    {"rav-script $short.txt $out.txt /tex/", 1, "", "Invalid RAV file!\n"},
    // the Stadium Importer
    {"textures $atlas.3ds --textures $tex", 0, "",
     R"({"name": "seats.bmp", "path": "$tex/seats.bmp", "width": 128, "height": 64}|{"name": "roof.bmp", "path": "$tex/roof.bmp", "width": 64, "height": 32}|{"name": "grass.bmp", "path": "$tex/grass.bmp", "width": 32, "height": 32})"},
    {"textures $atlas.3ds --textures $tex2/", 1, "", "The texture file \"roof.bmp\" is not in \"$tex2/\".\n"},
    {ATLAS "$three.json", 0, "stderr", "wrote $out.bmp (786,486 bytes), $out.oif: 1 part, 11 vertices\n"},
    // Copied one to one; stretched to twice; black wherever no texture lies.
    {ATLAS "$three.json", 0, "out.bmp",
     "256,64=ff0000|319,127=ff0000|320,64=0000ff|383,127=0000ff|255,64=000000|384,64=000000|256,128=000000|0,0=ffff00|"
     "127,63=ffff00|128,0=000000|0,64=000000|0,480=00a000|31,511=00a000|32,511=000000|511,511=000000"},
    {ATLAS "$three.json", 0, "out.oif", R"("name": "Part 0 [tp00]               "|"texture": "tp00")"},
    {ATLAS "$unmapped.json", 1, "",
     "Texture cannot be properly made. Please check bounds!\nNot all textures mapped!\n"},
    {ATLAS "$wall.json", 1, "", "The layout places \"wall.bmp\", which is not a texture of the model.\n"},
    {ATLAS "$three.json --sheet 300x512", 2, "", ""},
    {RAVATLAS "--shade 0 --texture rwh0", 0, "stderr", "$out.bmp (393,270 bytes)"},
    {RAVATLAS "--shade 0 --texture rwh0", 0, "out.bmp", "255,31=ff0000|0,32=0000ff"},
    // Each row's corners, unflipped for RAV text, in its strip of the narrow sheet: V by sixteenths.
    {RAVATLAS "--shade 0 --texture rwh0", 0, "out.oif",
     "rwh0|7237230, 0, 0.0625]|7237230, 1, 0.0625]|7237230, 1, 0]|7237230, 0, 0]|7237230, 0, 0.125]|7237230, 1, "
     "0.125]|7237230, 1, 0.0625]|7237230, 0, 0.0625]"},
};

bool Printing(const std::string& verb) {
    return verb == "dump" || verb == "dump-3ds" || verb == "dump-rav" || verb == "textures";
}

void Check(const Row& row, const std::string& dir, const Outcome& run) {
    const std::string where = row.where;
    std::string text = run.err;
    if (row.status != 0) {
        EXPECT_EQ(run.out, "");
        if (row.status == 2) { EXPECT_NE(run.err.find("Usage: terramason-cli"), std::string::npos) << run.err; }
    } else if (where.empty()) {
        text = run.out;
        EXPECT_TRUE(nlohmann::json::accept(run.out)) << run.out;
    } else if (where[0] == '!') {
        EXPECT_FALSE(fs::exists(dir + "/" + where.substr(1)));
    } else if (where != "stderr") {
        ASSERT_TRUE(fs::exists(dir + "/" + where)) << where;
        text = where.ends_with(".oif") ? RunCli(dir, {"dump", dir + "/" + where}).out : ReadText(dir + "/" + where);
    }
    std::size_t at = 0;
    std::istringstream needles(row.needles);
    for (std::string needle; std::getline(needles, needle, '|');) {
        needle = Placed(needle, dir);
        if (needle[0] == '!') {
            EXPECT_EQ(text.find(needle.substr(1)), std::string::npos) << needle;
        } else if (needle[0] == '=') {
            EXPECT_EQ(ReadFile(dir + "/" + where), ReadFile(dir + "/" + needle.substr(1))) << needle;
        } else if (where.ends_with(".bmp") && row.status == 0) {
            EXPECT_TRUE(PixelIs(ReadFile(dir + "/" + where), needle)) << needle;
        } else {
            at = text.find(needle, at);
            EXPECT_NE(at, std::string::npos) << needle << " in\n" << text;
            at = at == std::string::npos ? 0 : at + needle.size();
        }
    }
}

}  // namespace

TEST(cli, EachVerbWritesItsResultAndRefusesWithItsStatusAndMessage) {
    ScratchFolder scratch;
    const std::string dir = scratch.path();
    // The scratch folder is the program's per-user folder and its Wine prefix too.
    setenv("XDG_DATA_HOME", dir.c_str(), 1);
    setenv("WINEPREFIX", (dir + "/no-wine").c_str(), 1);
    Inputs(dir);
    for (const Row& row : Rows) {
        SCOPED_TRACE(row.args);
        for (const auto& e : fs::directory_iterator(dir))
            if (e.path().filename().string().starts_with("out")) fs::remove_all(e.path());
        fs::create_directory(dir + "/outdir");
        std::vector<std::string> args;
        std::istringstream words(row.args);
        for (std::string w; words >> w;) args.push_back(Placed(w, dir));
        // A refusal must leave the user's earlier file as it was: each output it names exists
        // (out-missing* stands for an input that is not there).
        if (row.status != 0)
            for (const std::string& a : args)
                if (const std::string name = fs::path(a).filename().string();
                    name.starts_with("out") && !name.starts_with("out-missing") && !fs::is_directory(a))
                    WriteFile(a, {'o', 'l', 'd'});
        const Outcome run = RunCli(dir, args);
        ASSERT_EQ(run.status, row.status) << run.err;
        Check(row, dir, run);
        if (row.status != 0) {
            // A refused input writes nothing.
            for (const auto& e : fs::directory_iterator(dir))
                if (e.path().filename().string().starts_with("out")) {
                    EXPECT_TRUE(e.path().filename() == "outdir" ? fs::is_empty(e.path()) : ReadText(e.path()) == "old")
                        << e.path();
                }
        } else if (Printing(args[0]) || std::string(row.args).find("--quiet") != std::string::npos) {
            EXPECT_EQ(run.err, "");
        } else {
            EXPECT_EQ(run.err.rfind("wrote " + dir + "/", 0), 0u) << run.err;
        }
    }
}
