#include "core/Views.h"

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
