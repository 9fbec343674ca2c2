#pragma once
// The verbs of the generators and wizards: crowds, the crowd wizard, adboards, banners, light
// and transform.
#include "cli/Verbs.h"

void DeclareCrowds(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
void DeclareCrowdWizard(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
void DeclareAdboards(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
void DeclareBanners(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
void DeclareLight(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
void DeclareTransform(CLI::App& verb, CliDesktop& desktop, VerbWork& run);
