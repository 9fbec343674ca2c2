// The side list of every page of the help book, in one place: each page has an empty
// <nav class="sidebar"> that this fills, marking the page it is on.
(function () {
  var sections = [
    ["Start here", [
      ["index.html", "Contents and getting started"],
      ["sample.html", "Trying the sample stadium"],
      ["projects.html", "Projects and base stadiums"],
      ["importing.html", "Importing geometry"],
      ["saving.html", "Saving your stadium"]
    ]],
    ["Looking and editing", [
      ["previews.html", "The four previews"],
      ["objects.html", "OIF Objects and part operations"],
      ["oifeditor.html", "OIF Editor"],
      ["texturemanager.html", "Texture Manager"]
    ]],
    ["Building", [
      ["crowdwizard.html", "Crowds"],
      ["adboards.html", "Adboards and banners"],
      ["lightingwizard.html", "Stadium Lighting Wizard"],
      ["transformationwizard.html", "Stadium Transformation Wizard"],
      ["stadiumimporter.html", "Stadium Importer"],
      ["ravconvertor.html", "RAV Convertor"],
      ["stadiumwizard.html", "Building a stadium, step by step"]
    ]],
    ["Reference", [
      ["menus.html", "Menus and toolbar"],
      ["options.html", "Options"],
      ["linux.html", "Terramason on Linux"]
    ]]
  ];
  var nav = document.querySelector("nav.sidebar");
  if (!nav) return;
  var here = location.pathname.split("/").pop() || "index.html";
  nav.textContent = "";
  sections.forEach(function (section) {
    var heading = document.createElement("h2");
    heading.textContent = section[0];
    nav.appendChild(heading);
    var list = document.createElement("ul");
    section[1].forEach(function (page) {
      var link = document.createElement("a");
      link.href = page[0];
      link.textContent = page[1];
      if (page[0] === here) link.setAttribute("aria-current", "page");
      var item = document.createElement("li");
      item.appendChild(link);
      list.appendChild(item);
    });
    nav.appendChild(list);
  });
})();
