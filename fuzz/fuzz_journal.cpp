// The recovery journal over arbitrary bytes: the start of the program reads whatever a crash or a
// full disk left. Besides memory safety: a refused journal gives no project; an accepted one holds
// a whole document, and writing it again reads back to the same project.
#include <cstdint>

#include "FuzzCheck.h"
#include "shell/HistoryOps.h"
#include "shell/JournalOps.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const JournalParse parsed = ParseJournal(ByteBuffer(data, data + size));
    FUZZ_CHECK(parsed.entry.has_value() == parsed.error.empty(), "a project or a reason, never both");
    if (!parsed.entry) return 0;
    const StadiumProject& project = parsed.entry->Project;
    FUZZ_CHECK(project.OIF.Header.PartCount == static_cast<std::int32_t>(project.OIF.Parts.size()), "whole parts");
    const JournalParse again = ParseJournal(EncodeJournal(*CaptureProject(project, nullptr), parsed.entry->ChangedAt));
    FUZZ_CHECK(again.entry && again.entry->Project.OIF.Parts == project.OIF.Parts &&
                   again.entry->Project.Name == project.Name && again.entry->Project.Textures == project.Textures,
               "written again, it reads back the same");
    return 0;
}
