#include "cli/Verbs.h"

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/JsonOut.h"
#include "core/OIFOps.h"
#include "core/binaryOps.h"

namespace {

int Dump(const std::string& path) {
    bool ok = false;
    const OIFFile doc = LoadOIF(path, &ok);
    if (!ok) return ExitFailed;
    WriteOIFJson(std::cout, doc);
    std::cout.flush();
    // A full disk or a closed pipe must not pass for a complete dump.
    if (!std::cout) throw std::runtime_error("Cannot write the JSON to the standard output.");
    return ExitDone;
}

int Resave(const std::string& in, const std::string& out) {
    bool ok = false;
    OIFFile doc = LoadOIF(in, &ok);
    if (!ok) return ExitFailed;
    const ByteBuffer bytes = SaveOIF(doc);
    binaryOps::WriteBytesFile(bytes, out);
    return ExitDone;
}

void DeclareDump(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto path = std::make_shared<std::string>();
    verb.add_option("DOC.oif", *path, "The OIF file to print")->required();
    verb.callback([path, &run] { run = [path] { return Dump(*path); }; });
}

void DeclareResave(CLI::App& verb, CliDesktop&, VerbWork& run) {
    auto in = std::make_shared<std::string>();
    auto out = std::make_shared<std::string>();
    verb.add_option("IN.oif", *in, "The OIF file to load")->required();
    verb.add_option("OUT.oif", *out, "The file to save it to")->required();
    verb.callback([in, out, &run] { run = [in, out] { return Resave(*in, *out); }; });
}

}  // namespace

const std::vector<Verb>& Verbs() {
    static const std::vector<Verb> verbs = {
        {"dump", "DOC.oif", "Print an OIF document as JSON", DeclareDump},
        {"resave", "IN.oif OUT.oif", "Load an OIF file and save it again, as the editor's Save does", DeclareResave},
    };
    return verbs;
}
