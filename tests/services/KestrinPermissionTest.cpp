#include "services/KestrinPermission.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using platform::Authorization;

using KestrinPermissionTest = test::PlatformTest;

TEST_F(KestrinPermissionTest, AKnownAnswerIsGivenAtOnceAndANewOneOnMain) {
    int granted = 0, denied = 0;
    const auto ask = [&](Authorization status) {
        system->person.status = status;
        KestrinPermission::askCameraAccess([&] { ++granted; }, [&] { ++denied; });
    };
    ask(Authorization::authorized);
    ask(Authorization::denied);
    ask(Authorization::restricted);
    EXPECT_TRUE(system->person.questions.empty());
    ask(Authorization::notDetermined);
    test::offMain([&] { system->person.answerCamera(false); });
    EXPECT_EQ(granted, 1);
    EXPECT_EQ(denied, 2);
    runMain();
    EXPECT_EQ(denied, 3);
}

TEST_F(KestrinPermissionTest, PhotosAreAskedForAfterTheCameraAndOnlyAllOfThemCount) {
    int granted = 0, denied = 0;
    const auto ask = [&](auto question) { question([&] { ++granted; }, [&] { ++denied; }); };
    system->person.photoStatus = Authorization::limited;
    ask(KestrinPermission::askPhotoAccess);
    EXPECT_EQ(denied, 1);
    system->person.photoStatus = Authorization::notDetermined;
    ask(KestrinPermission::askAccess);
    EXPECT_TRUE(system->person.photoQuestions.empty()) << "it waits for its turn";
    runMain();
    system->person.answerPhotos(true);
    EXPECT_EQ(granted, 1);
    system->person.photoStatus = Authorization::notDetermined;
    system->person.status = Authorization::denied;
    ask(KestrinPermission::askAccess);
    runMain();
    EXPECT_EQ(denied, 2);
    EXPECT_TRUE(system->person.photoQuestions.empty());
}

TEST_F(KestrinPermissionTest, TheRefusalSaysHowToGrant) {
    KestrinPermission::denyCameraMessage();
    runMain();
    ASSERT_EQ(system->app.alerts.size(), 1U);
    EXPECT_EQ(system->app.alerts[0].title, "Oops!");
    EXPECT_THAT(system->app.alerts[0].message,
                testing::StartsWith("The app doesn\xE2\x80\x99t have access to your camera and it "
                                    "needs this to function. You can grant access in Privacy "
                                    "Settings.\n\n1. Close this app\n\n2. Open settings\n\n3. "));
}
