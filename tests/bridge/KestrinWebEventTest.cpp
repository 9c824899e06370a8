#include "bridge/KestrinWebEvent.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <stdexcept>
#include <string>

using kestrin::KestrinWebEvent;

TEST(KestrinWebEvent, NamesAndNumbersAnswerEachOther) {
    std::set<std::string_view> names;
    for (std::ptrdiff_t event = 0; event < KestrinWebEvent::getEventCount(); ++event) {
        const auto name = KestrinWebEvent::eventToString(event);
        names.insert(name);
        EXPECT_EQ(KestrinWebEvent::stringToEvent(name), event);
    }
    EXPECT_EQ(names.size(), 22U);
    EXPECT_EQ(KestrinWebEvent::stringToEvent("onRequestSDKDeviceInfo"), 0);
    EXPECT_EQ(KestrinWebEvent::stringToEvent("onForceLoseTracking"), 9);
    EXPECT_EQ(KestrinWebEvent::stringToEvent("onShare"), 21);
}

TEST(KestrinWebEvent, UnknownNamesAreNotFound) {
    EXPECT_EQ(KestrinWebEvent::kNotFound, std::numeric_limits<std::ptrdiff_t>::max());
    for (const std::string& name : {std::string("onshare"), std::string("onShare "), std::string("onShar"),
                                    std::string(), std::string("onShare\0", 8), std::string("onSubmit")})
        EXPECT_EQ(KestrinWebEvent::stringToEvent(name), KestrinWebEvent::kNotFound) << name;
    EXPECT_EQ(KestrinWebEvent::stringToEvent(std::nullopt), KestrinWebEvent::kNotFound);
}

TEST(KestrinWebEvent, NumbersOutsideTheTableThrow) {
    for (const std::ptrdiff_t event : {std::ptrdiff_t(-1), std::ptrdiff_t(22), KestrinWebEvent::kNotFound})
        EXPECT_THROW(KestrinWebEvent::eventToString(event), std::out_of_range);
}
