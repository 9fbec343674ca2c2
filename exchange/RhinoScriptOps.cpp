#include "exchange/RhinoScriptOps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/NumberText.h"
#include "core/binaryOps.h"
#include "exchange/RAVOps.h"
#include "exchange/TextReading.h"

namespace {

constexpr std::size_t CountKey = 8;
constexpr std::size_t GroupKey = 7;
constexpr std::size_t VertexPrefix = 2;

struct Corner {
    std::string a, b, c;  // the coordinates as written, Rhinoceros units
    bool operator==(const Corner&) const = default;
};

std::string_view After(std::string_view line, std::size_t key) { return line.substr(std::min(key, line.size())); }

bool IsCrowdTexture(const std::string& name) {
    static constexpr const char* Crowd[] = {"rwh0", "rwh1", "rwh2", "rwh3", "rwa0", "rwa1", "rwa2", "rwa3"};
    for (const char* t : Crowd)
        if (name == t) return true;
    return false;
}

// Home rows take rwh0 to rwh3 in turn and away rows rwa0 to rwa3; other groups keep their name.
std::string DealtTexture(const std::string& group, int& home, int& away) {
    int* counter = nullptr;
    std::string prefix;
    if (group == "rowa" || group == "rowc" || group == "rowd") {
        counter = &home;
        prefix = "rwh";
    } else if (group == "rowb") {
        counter = &away;
        prefix = "rwa";
    } else {
        return group;
    }
    const std::string texture = prefix + std::to_string(*counter - 1);
    *counter = *counter % 4 + 1;
    return texture;
}

class ScriptWriter {
public:
    void Line(std::string_view text) {
        out.append(text);
        out += "\r\n";
    }
    std::string out;
};

}  // namespace

std::string ThreeDecimalText(double value) {
    if (!std::isfinite(value)) return DoubleText(value);
    // The 15 significant digits a double is shown with, rounded again at the thousandths: this is
    // how "1.0005" becomes 1.001 although its binary value lies a little below.
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    const std::string digits = std::string(1, buf[0]) + std::string(buf + 2, 14);
    const int exponent = std::atoi(buf + 17);
    const int kept = exponent + 1 + 3;  // digits down to the thousandths
    if (kept >= 15) return DoubleText(value);
    if (kept < 0) return "0";
    long long thousandths = kept == 0 ? 0 : std::stoll(digits.substr(0, static_cast<std::size_t>(kept)));
    if (digits[static_cast<std::size_t>(kept)] >= '5') ++thousandths;
    const double rounded = static_cast<double>(thousandths) / 1000.0;
    return DoubleText(value < 0 ? -rounded : rounded);
}

RhinoScript RhinoScriptText(std::string_view ravText, const std::string& texturePath) {
    RhinoScript result;
    try {
        const std::vector<std::string> lines = TextLines(ravText);
        if (lines.empty()) throw TextRefusal("The file is empty.");
        LineReader in(lines);
        in.Next();
        const std::string& countLine = in.Next();
        // The first polygon of an export is an empty one of four lines; it is not counted here.
        const int rows = Rounded16(LeadingNumber(After(countLine, CountKey)), in.LineNumber()) - 1;
        for (int k = 0; k < 4; ++k) in.Next();

        ScriptWriter script;
        for (const char* line : {"setactiveviewport top", "-Layer", "New rwh0", "New rwh1", "New rwh2", "New rwh3",
                                 "New rwa0", "New rwa1", "New rwa2", "New rwa3", "enter"})
            script.Line(line);
        int home = 1, away = 1;
        // A corner without a strict winner keeps what it held for the previous row.
        std::array<Corner, 4> corners;
        for (int i = 1; i <= rows; ++i) {
            for (int k = 0; k < 3; ++k) in.Next();
            std::array<Corner, 4> vertex;
            std::array<float, 4> u{}, v{};
            for (std::size_t k = 0; k < 4; ++k) {
                const std::string& line = in.Next();
                const std::size_t number = in.LineNumber();
                const std::vector<std::string_view> f = SplitFields(After(line, VertexPrefix), ',', 5);
                if (f.size() < 5)
                    throw TextRefusal("Line " + std::to_string(number) +
                                      ": a vertex line needs its values x, y, z, u and v.");
                vertex[k] = {ThreeDecimalText(LeadingNumber(f[0]) / 100), ThreeDecimalText(LeadingNumber(f[1]) / 100),
                             ThreeDecimalText(LeadingNumber(f[2]) / 100)};
                u[k] = SingleValue(f[3], number);
                v[k] = SingleValue(f[4], number);
            }
            in.Next();
            const std::string group(After(in.Next(), GroupKey));
            in.Next();
            in.Next();

            const QuadCorners chosen = ChooseQuadCorners(u, v);
            if (chosen.A >= 0) corners[0] = vertex[static_cast<std::size_t>(chosen.A)];
            if (chosen.B >= 0) {
                corners[1] = vertex[static_cast<std::size_t>(chosen.B)];
                corners[2] = vertex[static_cast<std::size_t>(chosen.C)];
                corners[3] = vertex[static_cast<std::size_t>(chosen.D)];
            }
            // A row seen edge-on from above is no face; its number is used up all the same.
            bool vertical = true;
            for (const Corner& k : vertex) vertical = vertical && k.a == vertex[0].a && k.c == vertex[0].c;
            if (vertical) continue;

            // Rhinoceros has z up where the game has y up.
            std::string face = "3DFace";
            for (const Corner& k : corners) face += " " + k.a + "," + k.c + "," + k.b;
            script.Line(face);
            for (const char* line : {"selall", "-properties", "object"}) script.Line(line);
            script.Line("name object" + std::to_string(i));
            for (const char* line : {"enter", "enter", "-properties", "material", "object", "rhinoceros"})
                script.Line(line);
            const std::string texture = DealtTexture(group, home, away);
            script.Line("texture");
            script.Line(texturePath + texture + ".bmp");
            script.Line("enter");
            script.Line("enter");
            if (IsCrowdTexture(texture)) script.Line("-changelayer " + texture);
            // Hidden, so that the next "selall" takes only the next face.
            script.Line("selall");
            script.Line("hide");
        }
        script.Line("show");
        result.text = std::move(script.out);
    } catch (const TextRefusal& refusal) {
        result.text.clear();
        result.error = std::string(InvalidRAVMessage) + "\r\n\r\n" + refusal.what();
    }
    return result;
}

bool makescript(const std::string& ravPath, const std::string& scriptPath, const std::string& texturePath) {
    const RhinoScript script = RhinoScriptText(ReadTextFile(ravPath), texturePath);
    if (!script.error.empty()) {
        ShowMessage(script.error, MessageIcon::Exclamation);
        return false;
    }
    binaryOps::WriteBytesFile(ByteBuffer(script.text.begin(), script.text.end()), scriptPath);
    return true;
}

std::string WithTrailingSeparator(const std::string& folder) {
    return !folder.empty() && folder.back() == '/' ? folder : folder + "/";
}

std::string WithDefaultExtension(const std::string& path, const std::string& extension) {
    return FileExtension(path).empty() ? path + "." + extension : path;
}
