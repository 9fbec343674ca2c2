#include "importer/LayoutFile.h"

#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

#include "core/Cp1252.h"

namespace {

using Json = nlohmann::ordered_json;

// One number of an entry; "" when it is there and fits, else why not.
std::string Number(const Json& entry, const char* key, const std::string& name, bool size, std::int32_t& out) {
    const std::string where = "\"" + std::string(key) + "\" of \"" + name + "\"";
    const auto it = entry.find(key);
    if (it == entry.end()) return "The layout gives no " + where + ".";
    if (!it->is_number()) return "The layout's " + where + " is not a number.";
    const double value = it->get<double>();
    if (!std::isfinite(value) || std::fabs(value) > LayoutLimit) return "The layout's " + where + " is out of range.";
    if (size && value < 0) return "The layout's " + where + " is below zero.";
    out = RoundEven(value);
    return {};
}

std::string Entry(const std::string& name, const Json& value, LayoutEntry& out) {
    if (!value.is_object()) return "The layout's entry \"" + name + "\" is not an object.";
    for (const auto& [key, ignored] : value.items())
        if (key != "left" && key != "top" && key != "width" && key != "height" && key != "mapped")
            return "The layout's entry \"" + name + "\" has an unknown key \"" + key + "\".";
    out.name = Utf8ToCp1252(name);
    for (const std::string& error :
         {Number(value, "left", name, false, out.box.Left), Number(value, "top", name, false, out.box.Top),
          Number(value, "width", name, true, out.box.Width), Number(value, "height", name, true, out.box.Height)})
        if (!error.empty()) return error;
    out.box.Visible = true;
    if (const auto it = value.find("mapped"); it != value.end()) {
        if (!it->is_boolean()) return "The layout's \"mapped\" of \"" + name + "\" is not true or false.";
        out.box.Visible = it->get<bool>();
    }
    return {};
}

}  // namespace

LayoutFile ParseLayoutFile(std::string_view json) {
    LayoutFile layout;
    Json root;
    try {
        root = Json::parse(json.begin(), json.end());
    } catch (const Json::exception& e) {
        layout.error = std::string("The layout is not JSON: ") + e.what();
        return layout;
    }
    if (!root.is_object()) {
        layout.error = "The layout is not a JSON object of texture names.";
        return layout;
    }
    for (const auto& [name, value] : root.items()) {
        LayoutEntry entry;
        layout.error = Entry(name, value, entry);
        if (!layout.error.empty()) {
            layout.entries.clear();
            return layout;
        }
        layout.entries.push_back(std::move(entry));
    }
    return layout;
}

std::string ApplyLayout(const LayoutFile& layout, const std::vector<ImportTexture>& textures,
                        std::vector<TextureBox>& boxes) {
    std::vector<TextureBox> placed = boxes;
    placed.resize(textures.size());
    for (const LayoutEntry& entry : layout.entries) {
        const auto it = std::find_if(textures.begin(), textures.end(),
                                     [&](const ImportTexture& t) { return t.Name == entry.name; });
        if (it == textures.end())
            return "The layout places \"" + Cp1252ToUtf8(entry.name) + "\", which is not a texture of the model.";
        placed[static_cast<std::size_t>(it - textures.begin())] = entry.box;
    }
    boxes = std::move(placed);
    return {};
}
