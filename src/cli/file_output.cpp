#include "file_output.h"

#include "file_access.h"

namespace rainfold::cli {

int RefuseInputAsOutput(const CommandOutput& output, const std::string& option,
                        const std::string& path, const std::string& input) {
    if (!SameFile(path, input))
        return kExitOk;
    return output.Usage(option + " " + path + " is the design file " + input +
                        " itself; writing it would destroy the design");
}

int WriteOutputFile(const CommandOutput& output, const std::string& path,
                    const std::string& bytes) {
    const std::string failure = SaveFile(path, bytes, StreamTarget::WrittenDirectly);
    if (failure.empty())
        return kExitOk;
    return output.Fail(kExitOutput, "cannot write " + path + ": " + failure,
                       "rainfold-cli " + output.command() + ": ");
}

} // namespace rainfold::cli
