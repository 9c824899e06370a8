// What nobody sees: who is asked, what is remembered, and what a portal is told.

#include "MockPortal.h"

#include "linux-web/MainLoop.h"
#include "linux/permission/DesktopPermissions.h"
#include "linux/toolkit/Email.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "support/FakeLog.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <optional>

namespace kestrin::test {

namespace {

using gtk::PortalLimits;
using gtk::Reply;
using platform::Authorization;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr PortalLimits kPatient{30, 30};

struct PermissionTest : testing::Test {
    PermissionTest() { PrivateBus::none(); }

    std::shared_ptr<gtk::DesktopPermissions> make(gtk::DesktopPermissions::Options options = {}) {
        const auto ask = [this](const gtk::Question&, std::function<void(Reply)> answer) {
            ++questions;
            answer(reply);
        };
        return gtk::DesktopPermissions::make(options, file, ask, dispatch, log);
    }
    /// Whether the camera was granted, in the end.
    bool requestCamera(gtk::DesktopPermissions& permissions) {
        std::optional<bool> answer;
        permissions.requestCamera([&](bool granted) { answer = granted; });
        EXPECT_FALSE(answer) << "not inside the call";
        EXPECT_TRUE(runUntil([&] { return answer.has_value(); }));
        return answer.value_or(false);
    }

    const TemporaryFolder folder;
    const gtk::PermissionFile file{folder / "application/permissions.ini"};
    const std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    gtk::MainLoopDispatch dispatch{log};
    Reply reply = Reply::yes; ///< to each question of Kestrin's own
    int questions = 0;
};

TEST_F(PermissionTest, TheCameraIsForThePortalToGiveWhereOneAnswers) {
    struct {
        std::optional<MockPortal::Manner> manner; ///< none: a bus without a portal
        PortalLimits limits;
        bool isOurs; ///< it comes to Kestrin's own question, which is granted
        bool granted;
        std::vector<std::string> calls;
    } const cases[] = {
        {MockPortal::grants, kPatient, false, true, {"AccessCamera"}},
        {MockPortal::denies, kPatient, false, false, {"AccessCamera"}},
        {MockPortal::fails, kPatient, true, true, {"AccessCamera"}},
        {MockPortal::isSilent, {30, 0.1}, true, true, {"AccessCamera", "Close"}},
        {std::nullopt, kPatient, true, true, {}},
    };
    for (const auto& [manner, limits, isOurs, granted, calls] : cases) {
        SCOPED_TRACE(manner ? int(*manner) : -1);
        questions = 0;
        const PrivateBus bus;
        std::optional<MockPortal> portal;
        if (manner)
            portal.emplace(bus, *manner);
        const auto permissions = make({.portal = limits});
        EXPECT_EQ(permissions->camera(), Authorization::notDetermined);
        EXPECT_EQ(requestCamera(*permissions), granted);
        EXPECT_EQ(permissions->camera(), granted ? Authorization::authorized : Authorization::denied);
        EXPECT_EQ(questions, isOurs);
        EXPECT_EQ(file.read("camera"), isOurs ? std::optional(true) : std::nullopt)
            << "a portal remembers itself";
        EXPECT_TRUE(calls.empty() || runUntil([&] { return portal->calls == calls; }));
        EXPECT_EQ(file.forget(), std::nullopt);
    }
    EXPECT_TRUE(requestCamera(*make({.portal = kPatient}))) << "no bus at all";
}

TEST_F(PermissionTest, AnAnswerIsKeptUntilItIsForgottenAndADismissalUntilTheEnd) {
    for (const Reply each : {Reply::yes, Reply::no, Reply::dismissed}) {
        reply = each;
        questions = 0;
        const auto first = make();
        std::vector<bool> answers;
        for (int times = 0; times < 2; ++times)
            first->requestPhotos([&](bool granted) { answers.push_back(granted); });
        EXPECT_TRUE(runUntil([&] { return answers.size() == 2; }));
        EXPECT_THAT(answers, ElementsAre(each == Reply::yes, each == Reply::yes));
        EXPECT_EQ(questions, 1);
        EXPECT_EQ(first->photos(), each == Reply::yes ? Authorization::authorized : Authorization::denied);
        EXPECT_EQ(make()->photos(),
                  each == Reply::dismissed ? Authorization::notDetermined : first->photos());
        EXPECT_EQ(make({.photos = true})->photos(), Authorization::authorized) << "granted beforehand";
        EXPECT_EQ(file.forget(), std::nullopt);
        EXPECT_EQ(make()->photos(), Authorization::notDetermined);
    }
    std::filesystem::remove_all(folder / "application");
    folder.write("application", "a file is in the way");
    reply = Reply::yes;
    make()->requestPhotos([](bool granted) { EXPECT_TRUE(granted); });
    EXPECT_THAT(log->take(), ElementsAre(HasSubstr("The answer about photos cannot be kept")));
}

TEST_F(PermissionTest, AnEmailGoesThroughThePortalWhereOneAnswers) {
    folder.write("picture.jpg", "bytes");
    const auto picture = gtk::GRef<GFile>::adopt(g_file_new_for_path((folder / "picture.jpg").c_str()));
    const PrivateBus bus;
    const MockPortal portal(bus, MockPortal::grants);
    gtk::composeEmail({"hello", picture}, kPatient, dispatch,
                      [](const std::string& reason) { ADD_FAILURE() << reason; });
    EXPECT_TRUE(runUntil([&] { return !portal.calls.empty(); }));
    EXPECT_THAT(portal.calls, ElementsAre("ComposeEmail"));
    EXPECT_THAT(portal.options, HasSubstr("'body': <'hello'>"));
    EXPECT_THAT(portal.pieces, ElementsAre("bytes"));
    runFor(0.2); // it is sent once, and nothing has failed
    EXPECT_EQ(portal.calls.size(), 1U);
}

} // namespace

} // namespace kestrin::test
