#include "Arguments.h"
#include "Viewer.h"

#include <cstdio>

int main(int argc, char** argv) {
    using namespace kestrin::view;
    const auto parsed = parseArguments(argc, argv);
    if (const auto* ending = std::get_if<Ending>(&parsed)) {
        std::fprintf(ending->status == 0 ? stdout : stderr, "%s\n", ending->text.c_str());
        return ending->status;
    }
    const Ending ending = run(std::get<Arguments>(parsed));
    if (!ending.text.empty())
        std::fprintf(ending.status == 0 ? stdout : stderr, "%s\n", ending.text.c_str());
    return ending.status;
}
