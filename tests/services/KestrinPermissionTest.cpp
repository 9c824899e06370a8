#include "services/KestrinPermission.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using platform::Authorization;

namespace {

struct KestrinPermissionTest : test::PlatformTest {
    int granted = 0, denied = 0;
    void ask() {
        KestrinPermission::askCameraAccess([this] { ++granted; }, [this] { ++denied; });
    }
};

} // namespace

TEST_F(KestrinPermissionTest, AKnownAnswerIsGivenAtOnce) {
    ask();
    EXPECT_EQ(granted, 1);
    for (const Authorization status : {Authorization::denied, Authorization::restricted}) {
        system->person.status = status;
        ask();
    }
    EXPECT_EQ(denied, 2);
    EXPECT_EQ(granted, 1);
    EXPECT_TRUE(system->person.questions.empty());
}

TEST_F(KestrinPermissionTest, TheAnswerArrivesOnMain) {
    system->person.status = Authorization::notDetermined;
    ask();
    EXPECT_EQ(granted + denied, 0);
    system->person.answerCamera(true);
    EXPECT_EQ(granted, 1);

    system->person.status = Authorization::notDetermined;
    ask();
    test::offMain([&] { system->person.answerCamera(false); });
    EXPECT_EQ(denied, 0);
    runMain();
    EXPECT_EQ(denied, 1);
    EXPECT_EQ(granted, 1);
}

TEST_F(KestrinPermissionTest, TheRefusalSaysHowToGrant) {
    KestrinPermission::denyCameraMessage();
    runMain();
    ASSERT_EQ(system->app.alerts.size(), 1U);
    const auto& alert = system->app.alerts[0];
    EXPECT_EQ(alert.title, "Oops!");
    EXPECT_EQ(alert.button, "OK");
    EXPECT_THAT(alert.message,
                testing::StartsWith("The app doesn\xE2\x80\x99t have access to your camera and it "
                                    "needs this to function. You can grant access in Privacy "
                                    "Settings.\n\n1. Close this app\n\n2. Open settings\n\n3. "));
    EXPECT_THAT(alert.message, testing::EndsWith("\n\n5. Turn on Camera Access\n\n6. Restart this app"));
}
