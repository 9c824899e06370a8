#pragma once

#include "platform/Permission.h"

#include <utility>
#include <vector>

namespace kestrin::test {

/// A person who answers when the test says.
class FakePermissions : public platform::Permissions {
  public:
    platform::Authorization camera() const override { return status; }
    void requestCamera(Answer answer) override { questions.push_back(std::move(answer)); }
    platform::Authorization photos() const override { return photoStatus; }
    void requestPhotos(Answer answer) override { photoQuestions.push_back(std::move(answer)); }
    /// Answers the oldest open question, on the calling thread.
    void answerCamera(bool granted) { answerOldest(status, questions, granted); }
    void answerPhotos(bool granted) { answerOldest(photoStatus, photoQuestions, granted); }

    platform::Authorization status = platform::Authorization::authorized;
    platform::Authorization photoStatus = platform::Authorization::authorized;
    std::vector<Answer> questions, photoQuestions;

  private:
    static void answerOldest(platform::Authorization& status, std::vector<Answer>& questions, bool granted) {
        status = granted ? platform::Authorization::authorized : platform::Authorization::denied;
        const auto question = std::move(questions.front());
        questions.erase(questions.begin());
        question(granted);
    }
};

} // namespace kestrin::test
