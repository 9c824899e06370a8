#include "Commands.h"
#include "Ending.h"
#include "Interrupt.h"

#include <cstdio>

namespace {

using namespace kestrin::record;

void printHelp() {
    std::printf("Usage:\n  kestrin-record COMMAND ...\n\nCommands:\n");
    for (const Command* command : {&kImport, &kInfo, &kCheck, &kTrim, &kExport})
        std::printf("  %-8s  %s\n", std::string(command->name).c_str(),
                    std::string(command->summary).c_str());
    std::printf("\nkestrin-record COMMAND --help says what a command takes; --version prints the version.\n");
}

void run(int argc, char** argv) {
    const std::string_view name = argc > 1 ? argv[1] : "";
    if (name == "--help" || name == "-h")
        return printHelp();
    if (name == "--version") {
        std::printf("kestrin-record " KESTRIN_VERSION "\n");
        return;
    }
    for (const Command* command : {&kImport, &kInfo, &kCheck, &kTrim, &kExport})
        if (name == command->name)
            return command->run(argc - 1, argv + 1);
    throw Ending(kMisused, name.empty() ? "which command? (see --help)"
                                        : "unknown command '" + std::string(name) + "' (see --help)");
}

} // namespace

int main(int argc, char** argv) {
    noteInterrupts();
    try {
        run(argc, argv);
    } catch (const Ending& ending) {
        std::fprintf(stderr, "kestrin-record: %s\n", ending.what());
        return ending.status;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kestrin-record: %s\n", error.what());
        return kFailed;
    }
    return kDone;
}
