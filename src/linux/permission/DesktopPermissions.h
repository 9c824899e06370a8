#pragma once

#include "linux/permission/PermissionFile.h"
#include "linux/toolkit/PortalRequest.h"
#include "linux/toolkit/Question.h"
#include "platform/Dispatch.h"
#include "platform/Log.h"
#include "platform/Permission.h"

#include <atomic>
#include <memory>
#include <vector>

namespace kestrin::gtk {

/// Asks the person: for the camera through the desktop's portal where one answers, which then remembers it,
/// else by a question of Kestrin's own, whose answer is kept for the application. A question that was
/// dismissed is refused until the application ends. Thread: main, but for what `platform::Permissions` says.
class DesktopPermissions final : public platform::Permissions,
                                 public std::enable_shared_from_this<DesktopPermissions> {
  public:
    struct Options {
        bool camera = false; ///< granted beforehand; also when no real camera is used
        bool photos = false;
        PortalLimits portal{};
    };
    /// Puts a question to the person.
    using Asker = std::function<void(const Question&, std::function<void(Reply)>)>;

    static std::shared_ptr<DesktopPermissions> make(const Options& options, PermissionFile file, Asker asker,
                                                    platform::Dispatch& dispatch,
                                                    std::shared_ptr<platform::LogSink> log);
    ~DesktopPermissions() override;

    platform::Authorization camera() const override { return m_camera.status; }
    platform::Authorization photos() const override { return m_photos.status; }
    /// These answer on main, after the call. Asked again before the answer, the person is not asked twice.
    void requestCamera(Answer answer) override;
    void requestPhotos(Answer answer) override;

  private:
    struct Subject {
        const char* name;
        std::atomic<platform::Authorization> status;
        std::vector<Answer> waiting{};
    };

    DesktopPermissions(const Options& options, PermissionFile file, Asker asker, platform::Dispatch& dispatch,
                       std::shared_ptr<platform::LogSink> log);
    platform::Authorization known(bool granted, const char* name) const;
    bool mustAsk(Subject& subject, Answer answer);
    void askPortal();
    void askPerson(Subject DesktopPermissions::*subject, const Question& question);
    void keep(const char* name, bool allowed) const;
    static void decide(Subject& subject, bool allowed);

    const PermissionFile m_file;
    const PortalLimits m_limits;
    const Asker m_asker;
    platform::Dispatch& m_dispatch;
    const std::shared_ptr<platform::LogSink> m_log;
    Subject m_camera, m_photos;
    std::shared_ptr<PortalRequest> m_request; ///< the latest
};

} // namespace kestrin::gtk
