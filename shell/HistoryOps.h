#pragma once
// Undo and redo. The history is a row of recorded states of the project, one per step, with the
// cursor on the state the user sees. A command records its step when it has changed the project;
// a command that changed nothing records nothing. States share the parts that did not change, so
// a step costs what it changed, and the history is capped by the memory it holds.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/oif.h"

// A part as the history keeps it: never changed once recorded, shared between states.
struct RecordedPart {
    std::uint64_t Hash = 0;
    OIFPart Part;
};

// The project as a step left it.
struct ProjectState {
    std::string Name;
    std::int16_t BasedOn = -1;
    PreviewScene Scene;
    PolygonList Polygons;
    std::vector<TextureSlot> Textures;
    std::string Label, Note;
    OIFHeader Header;
    std::vector<std::uint8_t> Trailer;
    std::vector<std::shared_ptr<const RecordedPart>> Parts;
};

// The state of `project`, sharing with `previous` (when given) every part that is the same.
std::shared_ptr<const ProjectState> CaptureProject(const StadiumProject& project, const ProjectState* previous);
StadiumProject RestoreProject(const ProjectState& state);
// Whether the project is exactly what the state recorded.
bool SameProject(const StadiumProject& project, const ProjectState& state);
// A hash of a part's fields, equal for equal parts.
std::uint64_t PartHash(const OIFPart& part);

struct HistoryStep {
    std::string Caption;  // "Merge parts": the menus show "&Undo Merge parts"
    std::string Run;      // a typing run that the next keystroke of the same field continues
    std::shared_ptr<const ProjectState> State;
};

struct ProjectHistory {
    std::vector<HistoryStep> Steps;  // Steps[0] is where undo stops; its caption is not shown
    std::size_t Cursor = 0;
    std::size_t MemoryLimit = std::size_t{1} << 30;
    std::size_t StepLimit = 1000;
};

// The editor's one history.
extern ProjectHistory History;

// Starts the history afresh at the project as it stands: nothing to undo or redo.
void StartHistory(ProjectHistory& history, const StadiumProject& project);
// Records the project as the end of a step named `caption` when it differs from the state at the
// cursor; what could be redone is dropped. A step with the `run` of the step at the cursor (a
// field typed in again) replaces that step's state instead of adding one. True when recorded.
bool RecordStep(ProjectHistory& history, const StadiumProject& project, const std::string& caption,
                const std::string& run = "");
// The next keystroke starts a new step, whatever field it is in.
void EndTypingRun(ProjectHistory& history);
// The project before the step at the cursor, or after the next one; nothing at either end.
std::optional<StadiumProject> UndoStep(ProjectHistory& history);
std::optional<StadiumProject> RedoStep(ProjectHistory& history);
// "Merge parts" for the step that undo or redo would take; "" when there is none.
std::string UndoCaption(const ProjectHistory& history);
std::string RedoCaption(const ProjectHistory& history);
// The bytes the history's states hold, each shared part counted once.
std::size_t HistoryBytes(const ProjectHistory& history);

// The editor's history, with the project it keeps: CurrentProject. Every command that changes the
// project ends with RecordCommand; listeners hear of each recorded or restored state (the menus,
// the recovery journal).
bool RecordCommand(const std::string& caption, const std::string& run = "");
using HistoryListener = std::function<void(const std::shared_ptr<const ProjectState>& state)>;
void SetHistoryListener(HistoryListener listener);
void StartProjectHistory();
// Undo and redo on CurrentProject: true when it changed.
bool UndoCommand();
bool RedoCommand();

// Records the command's step when it goes out of scope, also when the command stopped half-way on
// a fault: what it had changed by then can be undone.
class CommandStep {
public:
    explicit CommandStep(std::string caption, std::string run = "")
        : caption_(std::move(caption)), run_(std::move(run)) {}
    ~CommandStep();
    CommandStep(const CommandStep&) = delete;
    CommandStep& operator=(const CommandStep&) = delete;

private:
    std::string caption_, run_;
};
