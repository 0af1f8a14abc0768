#include "cli/Cli.h"
#include "platform/Log.h"

#include <iostream>

int main(int argc, char** argv) {
    quillon::platform::setUpLogging(true);
    std::vector<std::string> arguments(argv + 1, argv + argc);
    return quillon::cli::runCli(arguments, std::cout, std::cerr);
}
