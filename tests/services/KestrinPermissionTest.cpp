#include "services/KestrinPermission.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using platform::Authorization;

struct KestrinPermissionTest : test::PlatformTest {
    int granted = 0, denied = 0;

    void ask(void (*question)(KestrinPermission::Callback, KestrinPermission::Callback), Authorization camera,
             Authorization photos) {
        system->person.status = camera;
        system->person.photoStatus = photos;
        question([this] { ++granted; }, [this] { ++denied; });
    }
    void expectAnswers(int yes, int no) {
        EXPECT_EQ(granted, yes);
        EXPECT_EQ(denied, no);
    }
};

TEST_F(KestrinPermissionTest, AKnownAnswerIsGivenAtOnceAndANewOneOnMain) {
    for (const auto status : {Authorization::authorized, Authorization::denied, Authorization::restricted})
        ask(KestrinPermission::askCameraAccess, status, Authorization::authorized);
    ask(KestrinPermission::askPhotoAccess, Authorization::authorized, Authorization::limited);
    expectAnswers(1, 3);
    EXPECT_TRUE(system->person.questions.empty());
    ask(KestrinPermission::askCameraAccess, Authorization::notDetermined, Authorization::denied);
    test::offMain([&] { system->person.answerCamera(false); });
    expectAnswers(1, 3);
    runMain();
    expectAnswers(1, 4);
    KestrinPermission::denyCameraMessage();
    runMain();
    ASSERT_EQ(system->app.alerts.size(), 1U);
    EXPECT_THAT(system->app.alerts[0].message, testing::HasSubstr("5. Turn on Camera Access"));
}

TEST_F(KestrinPermissionTest, PhotosAreAskedForAfterTheCamera) {
    ask(KestrinPermission::askAccess, Authorization::denied, Authorization::notDetermined);
    ask(KestrinPermission::askAccess, Authorization::authorized, Authorization::notDetermined);
    EXPECT_TRUE(system->person.photoQuestions.empty()) << "it waits for its turn";
    runMain();
    EXPECT_EQ(system->person.photoQuestions.size(), 1U);
    system->person.answerPhotos(true);
    expectAnswers(1, 1);
}
