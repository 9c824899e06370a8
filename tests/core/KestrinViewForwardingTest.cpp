#include "KestrinViewTest.h"
#include "core/config/KestrinFeatureFlags.h"

namespace kestrin {

using namespace platform;
using namespace test;

struct Forwarding : KestrinViewTest {
    Forwarding() { startUp(); }
    void expectScript(const std::string& what) { EXPECT_EQ(takeScripts(), Lines{call(what)}); }
};

TEST_F(Forwarding, SendsPosesAndProjections) {
    Matrix pose = Matrix::identity();
    pose[3] = {1, 2, 3, 1};
    view->onMarkerTracked("markerless", {}, Matrix::identity(), 1500);
    expectScript("onPose(atob('AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPwAAwD8='));");
    view->onUpdateProjectionMatrix(pose);
    expectScript("onProj(atob('AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/"
                 "AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAACAPwAAAEAAAEBAAACAPw=='));");
    view->onLightEstimate(0.5F);
    expectScript("onLightEstimate(atob('AAAAPw=='));");
}

TEST_F(Forwarding, SendsPlanesAndTriggers) {
    const Matrix none = Matrix::identity();
    const std::string pose = "atob('AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPw==')";
    for (int i = 0; i < 2; ++i) {
        const auto trigger = i == 0 ? &KestrinView::onTriggerAdded : &KestrinView::onTriggerUpdated;
        (*view.*trigger)("5f-a", none, 0.25F, 1.5F);
        expectScript("onTriggerUpdate('5f-a', " + pose + ", 0.250000, 1.500000);");
        const auto plane = i == 0 ? &KestrinView::onPlaneAdded : &KestrinView::onPlaneUpdated;
        (*view.*plane)("it's", none, 2, 1.0F / 3);
        expectScript("onPlaneUpdate('it's', " + pose + ", 2.000000, 0.333333);");
    }
    const auto mesh = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{1, 2, 3}, {4, 5, 6}}, {0, 1, -1}});
    view->onPlaneGeometryUpdated("P", {mesh, mesh->vertices.data()}, 2, {mesh, mesh->triangleIndices.data()},
                                 3);
    expectScript("onPlaneGeometry('P', atob('AACAPwAAAEAAAEBAAACAQAAAoEAAAMBA'), "
                 "atob('AAAAAAEAAAD/////'));");
    view->onPlaneRemoved("P");
    expectScript("onPlaneRemove('P');");
    view->onPlaneStarted();
    expectScript("onPlaneStart();");
    view->onPlaneClear();
    expectScript("onPlaneClear();");
    view->onTriggerStarted();
    expectScript("onTriggerStart();");
}

TEST_F(Forwarding, KeepsLockedTriggers) {
    view->onTriggerRemoved("T");
    expectScript("onTriggerRemove('T');");
    KestrinFeatureFlags::getInstance()->put("triggerlock");
    view->onTriggerRemoved("T");
    EXPECT_TRUE(takeScripts().empty());
    view->onTriggerClear();
    expectScript("onTriggerClear();");
    const auto runs = session().runs().size();
    post("onForceLoseTracking");
    ASSERT_EQ(session().runs().size(), runs + 1);
    EXPECT_EQ(session().runs().back().options, kRemoveExistingAnchors) << "what was found is given up";
    KestrinFeatureFlags::getInstance()->clear();
    post("onForceLoseTracking");
    EXPECT_EQ(session().runs().size(), runs + 1);
}

TEST_F(Forwarding, WordsTheTrackingState) {
    const std::pair<int, const char*> words[] = {
        {0, "Normal"},          {1, "Init"},   {2, "Relocalizing"},
        {3, "ExcessiveMotion"}, {7, "Normal"}, {4, "InsufficientFeatures"},
        {-1, "Normal"},
    };
    for (const auto& [reason, word] : words) {
        view->onTrackingReasonChange(reason);
        expectScript(format("onTrackingReasonChange('%@');", word));
    }
    view->onTrackingReasonChange(5);
    expectScript("onTrackingReasonChange('LoadingImageTrackers');");
}

TEST_F(Forwarding, CarriesAFrameFromTheSessionToThePage) {
    session().send(makeFrame(1));
    EXPECT_TRUE(takeScripts().empty()) << "the page has not asked for the camera";
    post("onResumeAREngine");
    takeScripts();
    Matrix pose = Matrix::identity();
    pose[3] = {1, 2, 3, 1};
    offMain([&] {
        session().send(makeFrame(0, pose));
        session().send(makeFrame(1000, pose));
    });
    EXPECT_TRUE(takeScripts().empty());
    runMain();
    const auto scripts = takeScripts();
    ASSERT_EQ(scripts.size(), 2U) << "one script a frame";
    // Portrait: a quarter turn about z; then the time, 1.0 for the second frame.
    EXPECT_EQ(scripts[1], call("onPose(atob('AACAPwAAAEAAAEBAAAAAAAAAAADzBDU/8wQ1PwAAgD8='));"));
}

} // namespace kestrin
