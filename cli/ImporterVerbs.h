#pragma once
// The verbs of the Stadium Importer: the texture list of a model, and the atlas with its part.
#include "cli/Verbs.h"

void DeclareTextures(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
void DeclareAtlas(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
