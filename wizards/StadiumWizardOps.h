#pragma once
// What the Stadium Building Wizard links to: the 3D programs it suggests and the makers'
// contact page.
#include <array>
#include <string>

struct SuggestedSoftware {
    const char* name;     // the short name on its launch button
    const char* caption;  // the text of its link
    const char* site;     // where to get it
};

inline constexpr std::array<SuggestedSoftware, 4> SuggestedSoftwares = {{
    {"Rhinoceros", "Rhinoceros (Commercial, Evaluation download available) - Recommended", "https://www.rhino3d.com/"},
    {"3DSMax", "3DSMax (Commercial, 30 Day Trial CD available)", "https://www.autodesk.com/products/3ds-max/"},
    {"Milkshape 3D", "Milkshape 3D (Freeware)", "http://www.milkshape3d.com/"},
    {"Zanoza Modeler", "Zanoza Modeler (Freeware)", "https://www.zmodeler3.com/"},
}};

// "/OSK/contact.php" on the makers' site, wherever config.ini says that is.
std::string ContactPageAddress();

// "Step 3 of 10" for the page at index 2 of 10.
std::string StepsText(int page, int pages);
