#include "core/Views.h"

#include "core/ProgramState.h"

std::vector<bool> Views::SelectedParts() { return std::vector<bool>(CurrentProject.OIF.Parts.size(), true); }

PreviewSelection Views::Selection() { return PreviewSelection{SelectedParts(), -1, -1}; }

namespace {
Views idle;
Views* current = &idle;
}  // namespace

Views& TheViews() { return *current; }

Views* InstallViews(Views* views) {
    Views* previous = current == &idle ? nullptr : current;
    current = views ? views : &idle;
    return previous;
}
