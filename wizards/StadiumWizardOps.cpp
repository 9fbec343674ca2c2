#include "wizards/StadiumWizardOps.h"

#include "shell/HelpOps.h"

std::string ContactPageAddress() {
    std::string site = WebPageAddress(WebPage::MakersSite);
    while (!site.empty() && site.back() == '/') site.pop_back();
    return site + "/OSK/contact.php";
}

std::string StepsText(int page, int pages) {
    return "Step " + std::to_string(page + 1) + " of " + std::to_string(pages);
}
