#pragma once

#include "linux/toolkit/GRef.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <string>
#include <sys/wait.h>
#include <vector>

namespace kestrin::test {

/// What a program said, and how it ended; -1 when it was killed.
struct Outcome {
    int status = -1;
    std::string out, err;
};

inline Outcome runProgram(std::string program, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), std::move(program));
    std::vector<char*> raw;
    for (std::string& argument : arguments)
        raw.push_back(argument.data());
    raw.push_back(nullptr);
    char *out = nullptr, *err = nullptr;
    int status = 0;
    gtk::GFailure failure;
    if (!g_spawn_sync(nullptr, raw.data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr, &out, &err,
                      &status, failure.out())) {
        ADD_FAILURE() << failure.text();
        return {};
    }
    const gtk::GText keptOut(out), keptErr(err);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, err};
}

} // namespace kestrin::test
