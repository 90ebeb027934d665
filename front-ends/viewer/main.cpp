// SPDX-License-Identifier: MIT
#include "Program.h"

#include "front-ends/shared/Process.h"
#include "gui-core/Version.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argumentCount, char** arguments)
{
    if (const auto mismatch = ovra::gui::libraryMismatch(); !mismatch.empty()) {
        std::cerr << "ovra-viewer: " << mismatch << '\n';
        return EXIT_FAILURE;
    }
    try {
        int exitCode = EXIT_SUCCESS;
        const auto options = ovra::viewer::parseOptions(
            ovra::frontend::commandLineArguments(argumentCount, arguments), exitCode);
        if (!options)
            return exitCode;
        return ovra::viewer::runProgram(*options) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "ovra-viewer: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
