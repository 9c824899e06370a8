#pragma once

#include "linux/toolkit/GRef.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <string>
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

/// Arguments that a program refuses, what it mentions then, and its exit status, 0 for any.
struct Refused {
    std::vector<std::string> arguments;
    std::string mention;
    int status = 0;
};

/// In one line each, which begins with the program's name.
inline void expectRefused(const std::string& program, const std::vector<Refused>& cases) {
    for (const auto& [arguments, mention, status] : cases) {
        const Outcome outcome = runProgram(program, arguments);
        EXPECT_GT(outcome.status, 0) << mention;
        EXPECT_TRUE(status == 0 || outcome.status == status) << mention << ": " << outcome.status;
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        EXPECT_TRUE(outcome.err.starts_with(std::filesystem::path(program).filename().string() + ": "))
            << outcome.err;
        EXPECT_NE(outcome.err.find(mention), std::string::npos) << outcome.err;
    }
}

} // namespace kestrin::test
