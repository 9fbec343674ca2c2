#include "shell/HistoryOps.h"

#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "core/ProgramState.h"

ProjectHistory History;

namespace {

// Eight bytes at a time: a million vertices hash in a few milliseconds.
struct Hasher {
    std::uint64_t h = 0x9E3779B97F4A7C15ull;
    void word(std::uint64_t w) {
        h ^= w + 0x9E3779B97F4A7C15ull + (h << 6) + (h >> 2);
        h *= 0xFF51AFD7ED558CCDull;
    }
    void bytes(const void* data, std::size_t n) {
        const auto* p = static_cast<const unsigned char*>(data);
        for (; n >= 8; n -= 8, p += 8) {
            std::uint64_t w;
            std::memcpy(&w, p, 8);
            word(w);
        }
        // An empty part's vertex list has no storage at all: memcpy must not see its null.
        std::uint64_t tail = 0;
        if (n) std::memcpy(&tail, p, n);
        word(tail ^ (std::uint64_t{n} << 56));
    }
};

std::size_t PartBytes(const OIFPart& part) {
    return sizeof(RecordedPart) + part.Vertices.size() * sizeof(OIFVertex) + part.Indices.size() * 2;
}

// Drops the oldest states, never the one at the cursor, until the history is within its limits.
void Trim(ProjectHistory& history) {
    while (history.Steps.size() > 2 && history.Cursor > 0 &&
           (history.Steps.size() > history.StepLimit || HistoryBytes(history) > history.MemoryLimit)) {
        history.Steps.erase(history.Steps.begin());
        --history.Cursor;
    }
}

}  // namespace

std::uint64_t PartHash(const OIFPart& part) {
    Hasher h;
    h.bytes(part.Header.Name.view().data(), part.Header.Name.view().size());
    h.bytes(part.Header.Texture.view().data(), part.Header.Texture.view().size());
    h.word(static_cast<std::uint64_t>(static_cast<std::uint32_t>(part.Header.VertexCount)) << 32 |
           static_cast<std::uint32_t>(part.Header.IndexCount));
    // The vertex record is six packed 32-bit fields: its bytes are its value, except that +0 and -0
    // hash apart, which only costs a copy.
    static_assert(sizeof(OIFVertex) == 24);
    h.bytes(part.Vertices.data(), part.Vertices.size() * sizeof(OIFVertex));
    h.bytes(part.Indices.data(), part.Indices.size() * sizeof(std::int16_t));
    return h.h;
}

std::shared_ptr<const ProjectState> CaptureProject(const StadiumProject& project, const ProjectState* previous) {
    auto state = std::make_shared<ProjectState>();
    state->Name = project.Name;
    state->BasedOn = project.BasedOn;
    state->Scene = project.Scene;
    state->Polygons = project.Polygons;
    state->Textures = project.Textures;
    state->Label = project.OIF.Label;
    state->Note = project.OIF.Note;
    state->Header = project.OIF.Header;
    state->Trailer = project.OIF.Trailer;
    std::unordered_multimap<std::uint64_t, const std::shared_ptr<const RecordedPart>*> earlier;
    if (previous)
        for (const auto& part : previous->Parts) earlier.emplace(part->Hash, &part);
    state->Parts.reserve(project.OIF.Parts.size());
    for (const OIFPart& part : project.OIF.Parts) {
        const std::uint64_t hash = PartHash(part);
        std::shared_ptr<const RecordedPart> kept;
        const auto [first, last] = earlier.equal_range(hash);
        for (auto it = first; it != last && !kept; ++it)
            if ((*it->second)->Part == part) kept = *it->second;
        state->Parts.push_back(kept ? kept : std::make_shared<const RecordedPart>(RecordedPart{hash, part}));
    }
    return state;
}

StadiumProject RestoreProject(const ProjectState& state) {
    StadiumProject project;
    project.Name = state.Name;
    project.BasedOn = state.BasedOn;
    project.Scene = state.Scene;
    project.Polygons = state.Polygons;
    project.Textures = state.Textures;
    project.OIF.Label = state.Label;
    project.OIF.Note = state.Note;
    project.OIF.Header = state.Header;
    project.OIF.Trailer = state.Trailer;
    project.OIF.Parts.reserve(state.Parts.size());
    for (const auto& part : state.Parts) project.OIF.Parts.push_back(part->Part);
    return project;
}

bool SameProject(const StadiumProject& project, const ProjectState& state) {
    if (project.Name != state.Name || project.BasedOn != state.BasedOn || !(project.Scene == state.Scene) ||
        !(project.Polygons == state.Polygons) || project.Textures != state.Textures ||
        project.OIF.Label != state.Label || project.OIF.Note != state.Note || !(project.OIF.Header == state.Header) ||
        project.OIF.Trailer != state.Trailer || project.OIF.Parts.size() != state.Parts.size())
        return false;
    for (std::size_t i = 0; i < state.Parts.size(); ++i)
        if (!(project.OIF.Parts[i] == state.Parts[i]->Part)) return false;
    return true;
}

std::size_t HistoryBytes(const ProjectHistory& history) {
    std::unordered_set<const RecordedPart*> counted;
    std::size_t bytes = 0;
    for (const HistoryStep& step : history.Steps) {
        if (!step.State) continue;
        bytes += sizeof(ProjectState) + step.State->Trailer.size();
        for (const auto& part : step.State->Parts)
            if (counted.insert(part.get()).second) bytes += PartBytes(part->Part);
    }
    return bytes;
}

void StartHistory(ProjectHistory& history, const StadiumProject& project) {
    history.Steps.assign(1, HistoryStep{"", "", CaptureProject(project, nullptr)});
    history.Cursor = 0;
}

bool RecordStep(ProjectHistory& history, const StadiumProject& project, const std::string& caption,
                const std::string& run) {
    if (history.Steps.empty()) return false;
    const HistoryStep& here = history.Steps[history.Cursor];
    if (SameProject(project, *here.State)) return false;
    const bool continues = !run.empty() && here.Run == run && history.Cursor > 0;
    const ProjectState* base = continues ? history.Steps[history.Cursor - 1].State.get() : here.State.get();
    HistoryStep step{caption, run, CaptureProject(project, base)};
    history.Steps.resize(history.Cursor + 1);
    if (continues && SameProject(project, *base)) {
        // Typed back to what the field held: the run changed nothing after all.
        history.Steps.pop_back();
        --history.Cursor;
    } else if (continues) {
        history.Steps[history.Cursor] = std::move(step);
    } else {
        history.Steps.push_back(std::move(step));
        ++history.Cursor;
    }
    Trim(history);
    return true;
}

void EndTypingRun(ProjectHistory& history) {
    if (!history.Steps.empty()) history.Steps[history.Cursor].Run.clear();
}

std::optional<StadiumProject> UndoStep(ProjectHistory& history) {
    if (history.Steps.empty() || history.Cursor == 0) return std::nullopt;
    EndTypingRun(history);
    --history.Cursor;
    return RestoreProject(*history.Steps[history.Cursor].State);
}

std::optional<StadiumProject> RedoStep(ProjectHistory& history) {
    if (history.Steps.empty() || history.Cursor + 1 >= history.Steps.size()) return std::nullopt;
    EndTypingRun(history);
    ++history.Cursor;
    return RestoreProject(*history.Steps[history.Cursor].State);
}

std::string UndoCaption(const ProjectHistory& history) {
    return history.Steps.empty() || history.Cursor == 0 ? std::string() : history.Steps[history.Cursor].Caption;
}

std::string RedoCaption(const ProjectHistory& history) {
    return history.Cursor + 1 < history.Steps.size() ? history.Steps[history.Cursor + 1].Caption : std::string();
}

namespace {
HistoryListener& Listener() {
    static HistoryListener listener;
    return listener;
}
void Notify(const std::shared_ptr<const ProjectState>& state) {
    if (Listener()) Listener()(state);
}
}  // namespace

void SetHistoryListener(HistoryListener listener) { Listener() = std::move(listener); }

void StartProjectHistory() {
    StartHistory(History, CurrentProject);
    Notify(History.Steps[0].State);
}

bool RecordCommand(const std::string& caption, const std::string& run) {
    if (!RecordStep(History, CurrentProject, caption, run)) return false;
    Notify(History.Steps[History.Cursor].State);
    return true;
}

CommandStep::~CommandStep() {
    try {
        RecordCommand(caption_, run_);
    } catch (...) {
        // Without memory for the step the change stays, and the next step takes it in.
    }
}

bool UndoCommand() {
    std::optional<StadiumProject> back = UndoStep(History);
    if (!back) return false;
    CurrentProject = std::move(*back);
    Notify(History.Steps[History.Cursor].State);
    return true;
}

bool RedoCommand() {
    std::optional<StadiumProject> again = RedoStep(History);
    if (!again) return false;
    CurrentProject = std::move(*again);
    Notify(History.Steps[History.Cursor].State);
    return true;
}
