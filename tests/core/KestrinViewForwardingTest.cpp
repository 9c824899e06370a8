#include "KestrinViewTest.h"
#include "core/config/KestrinFeatureFlags.h"

namespace kestrin {

using namespace platform;
using namespace test;

struct Forwarding : KestrinViewTest {
    Forwarding() {
        startUp();
        moved[3] = {1, 2, 3, 1};
    }
    void expectScript(const std::string& what) { EXPECT_EQ(takeScripts(), Lines{call(what)}); }

    const Matrix still = Matrix::identity();
    Matrix moved = Matrix::identity();
};

TEST_F(Forwarding, MakesOneScriptOfEach) {
    view->onMarkerTracked("markerless", {}, still, 1500);
    expectScript("onPose(atob('AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPwAAwD8='));");
    view->onUpdateProjectionMatrix(moved);
    expectScript("onProj(atob('AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/"
                 "AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAACAPwAAAEAAAEBAAACAPw=='));");
    view->onLightEstimate(0.5F);
    expectScript("onLightEstimate(atob('AAAAPw=='));");
    const std::string pose = "atob('AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPw==')";
    for (const auto trigger : {&KestrinView::onTriggerAdded, &KestrinView::onTriggerUpdated}) {
        (*view.*trigger)("5f-a", still, 0.25F, 1.5F);
        expectScript("onTriggerUpdate('5f-a', " + pose + ", 0.250000, 1.500000);");
    }
    for (const auto plane : {&KestrinView::onPlaneAdded, &KestrinView::onPlaneUpdated}) {
        (*view.*plane)("it's", still, 2, 1.0F / 3);
        expectScript("onPlaneUpdate('it's', " + pose + ", 2.000000, 0.333333);");
    }
    const auto mesh = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{1, 2, 3}, {4, 5, 6}}, {0, 1, -1}});
    view->onPlaneGeometryUpdated("P", {mesh, mesh->vertices.data()}, 2, {mesh, mesh->triangleIndices.data()},
                                 3);
    expectScript("onPlaneGeometry('P', atob('AACAPwAAAEAAAEBAAACAQAAAoEAAAMBA'), "
                 "atob('AAAAAAEAAAD/////'));");
    view->onPlaneRemoved("P");
    expectScript("onPlaneRemove('P');");
    const std::pair<int, const char*> words[] = {
        {1, "Init"},   {2, "Relocalizing"},        {3, "ExcessiveMotion"}, {4, "InsufficientFeatures"},
        {7, "Normal"}, {5, "LoadingImageTrackers"}};
    for (const auto& [reason, word] : words) {
        view->onTrackingReasonChange(reason);
        expectScript(format("onTrackingReasonChange('%@');", word));
    }
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

} // namespace kestrin
