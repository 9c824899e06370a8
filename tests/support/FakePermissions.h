#pragma once

#include "platform/Permission.h"

#include <functional>
#include <utility>
#include <vector>

namespace kestrin::test {

/// A person who answers when the test says.
class FakePermissions : public platform::Permissions {
  public:
    platform::Authorization camera() const override { return status; }
    void requestCamera(std::function<void(bool granted)> answer) override {
        questions.push_back(std::move(answer));
    }
    /// Answers the oldest open question, on the calling thread.
    void answerCamera(bool granted) {
        status = granted ? platform::Authorization::authorized : platform::Authorization::denied;
        const auto question = std::move(questions.front());
        questions.erase(questions.begin());
        question(granted);
    }

    platform::Authorization status = platform::Authorization::authorized;
    std::vector<std::function<void(bool)>> questions;
};

} // namespace kestrin::test
