#include "load_design.h"

#include "checks.h"
#include "design_file.h"

#include <iostream>

namespace rainfold::cli {

bool TakeFileArgument(const std::string& argument, std::string& file, std::string& error) {
    if (!argument.empty() && argument[0] == '-')
        error = "unknown option '" + argument + "'";
    else if (!file.empty())
        error = "one design file at a time";
    else
        file = argument;
    return error.empty();
}

int LoadCheckedDesign(const std::string& file, bool greenAmpt, DesignRecord& design) {
    const FileOutcome opened = OpenDesign(file, design);
    if (!opened.ok) {
        std::cerr << opened.message << '\n';
        return 1;
    }
    design.greenAmpt = greenAmpt; // design files do not hold the model choice
    for (const CheckFailure& f : CheckDesign(design)) {
        if (f.kind == CheckKind::Warning) {
            std::cerr << "Warning: " << f.message << '\n';
            continue;
        }
        std::cerr << "Error: " << f.message << '\n';
        return 2;
    }
    return 0;
}

} // namespace rainfold::cli
