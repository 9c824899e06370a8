#include "HostApplication.h"

#include "MainLoop.h"
#include "PosePage.h"
#include "bridge/KestrinWebEvent.h"
#include "linux/LinuxPlatform.h"
#include "linux/toolkit/Widget.h"

#include <boost/json/object.hpp>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace kestrin::bench {

std::shared_ptr<MemoryTracking> installPlatform(const std::string& hostMapEntry,
                                                const MemoryPictures& pictures) {
    const auto tracking = std::make_shared<MemoryTracking>(pictures);
    gtk::Options options;
    options.applicationId = "org.kestrin.Bench";
    options.logLevel = gtk::LogLevel::off;
    options.hostMap = gtk::HostMap::parse(hostMapEntry);
    options.worldTracking = [tracking](const platform::InterfaceOrientation&) { return tracking; };
    auto platform = gtk::LinuxPlatform::make(options);
    if (!platform) {
        std::fputs("there is no display\n", stderr);
        std::exit(2);
    }
    platform::installPlatform(std::move(platform));
    return tracking;
}

std::shared_ptr<KestrinView> startHostView(const std::string& keyString,
                                           std::function<void(double time)> posed) {
    auto view = KestrinView::init();
    view->setup(KestrinSettings::initWithKeyString(keyString));
    view->registerForEventCallback(std::int32_t(KestrinWebEvent::stringToEvent("onWebUpdate")),
                                   [posed = std::move(posed)](const boost::json::object& event) {
                                       if (const auto time = timeIn(event))
                                           posed(*time);
                                   });
    view->start();
    showWindow(gtk::widget(*view), kWindowWidth, kWindowHeight);
    return view;
}

} // namespace kestrin::bench
