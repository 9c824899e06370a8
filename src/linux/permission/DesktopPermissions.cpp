#include "linux/permission/DesktopPermissions.h"

#include "linux/permission/PermissionQuestions.h"

#include <utility>

namespace kestrin::gtk {

using platform::Authorization;

std::shared_ptr<DesktopPermissions> DesktopPermissions::make(const Options& options, PermissionFile file,
                                                             Asker asker, platform::Dispatch& dispatch,
                                                             std::shared_ptr<platform::LogSink> log) {
    return std::shared_ptr<DesktopPermissions>(
        new DesktopPermissions(options, std::move(file), std::move(asker), dispatch, std::move(log)));
}

DesktopPermissions::DesktopPermissions(const Options& options, PermissionFile file, Asker asker,
                                       platform::Dispatch& dispatch, std::shared_ptr<platform::LogSink> log)
    : m_file(std::move(file)), m_limits(options.portal), m_asker(std::move(asker)), m_dispatch(dispatch),
      m_log(std::move(log)), m_camera{"camera", known(options.camera, "camera")},
      m_photos{"photos", known(options.photos, "photos")} {}

DesktopPermissions::~DesktopPermissions() {
    if (m_request)
        m_request->cancel();
}

Authorization DesktopPermissions::known(bool granted, const char* name) const {
    const auto answer = granted ? std::optional(true) : m_file.read(name);
    return !answer ? Authorization::notDetermined
                   : (*answer ? Authorization::authorized : Authorization::denied);
}

void DesktopPermissions::requestCamera(Answer answer) {
    if (mustAsk(m_camera, std::move(answer)))
        askPortal();
}

void DesktopPermissions::requestPhotos(Answer answer) {
    if (mustAsk(m_photos, std::move(answer)))
        askPerson(&DesktopPermissions::m_photos, photosQuestion());
}

bool DesktopPermissions::mustAsk(Subject& subject, Answer answer) {
    if (const Authorization status = subject.status; status != Authorization::notDetermined) {
        m_dispatch.mainAsync(
            [answer = std::move(answer), status] { answer(status == Authorization::authorized); });
        return false;
    }
    subject.waiting.push_back(std::move(answer));
    return subject.waiting.size() == 1;
}

void DesktopPermissions::askPortal() {
    PortalCall call{"org.freedesktop.portal.Camera", "AccessCamera"};
    m_request = PortalRequest::send(std::move(call), m_limits, m_dispatch,
                                    [weak = weak_from_this()](PortalReply reply) {
                                        const auto self = weak.lock();
                                        if (!self)
                                            return;
                                        if (reply == PortalReply::done || reply == PortalReply::refused)
                                            decide(self->m_camera, reply == PortalReply::done);
                                        else
                                            self->askPerson(&DesktopPermissions::m_camera, cameraQuestion());
                                    });
}

void DesktopPermissions::askPerson(Subject DesktopPermissions::*subject, const Question& question) {
    m_asker(question, [weak = weak_from_this(), subject](Reply reply) {
        const auto self = weak.lock();
        if (!self)
            return;
        if (reply != Reply::dismissed)
            self->keep((self.get()->*subject).name, reply == Reply::yes);
        decide(self.get()->*subject, reply == Reply::yes);
    });
}

void DesktopPermissions::keep(const char* name, bool allowed) const {
    if (const auto failure = m_file.write(name, allowed))
        m_log->write("Kestrin - The answer about " + std::string(name) + " cannot be kept: " + *failure);
}

void DesktopPermissions::decide(Subject& subject, bool allowed) {
    subject.status = allowed ? Authorization::authorized : Authorization::denied;
    for (const Answer& answer : std::exchange(subject.waiting, {}))
        answer(allowed);
}

} // namespace kestrin::gtk
