#include "linux/capture/V4l2Controls.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kestrin::gtk {

namespace {

/// The device file while a control is looked at; another program may hold the camera meanwhile.
class DeviceFile {
  public:
    explicit DeviceFile(const std::string& path)
        : m_file(path.empty() ? -1 : ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) {}
    ~DeviceFile() {
        if (m_file >= 0)
            ::close(m_file);
    }
    DeviceFile(const DeviceFile&) = delete;
    DeviceFile& operator=(const DeviceFile&) = delete;

    bool has(__u32 control) const {
        v4l2_queryctrl query{};
        query.id = control;
        return m_file >= 0 && ::ioctl(m_file, VIDIOC_QUERYCTRL, &query) == 0 &&
               (query.flags & (V4L2_CTRL_FLAG_DISABLED | V4L2_CTRL_FLAG_READ_ONLY)) == 0;
    }
    void switchOn(__u32 control) const {
        v4l2_control value{control, 1};
        if (has(control))
            ::ioctl(m_file, VIDIOC_S_CTRL, &value);
    }

  private:
    const int m_file;
};

} // namespace

bool V4l2Controls::canFocusContinuously() const { return DeviceFile(m_path).has(V4L2_CID_FOCUS_AUTO); }

void V4l2Controls::focusContinuously() const { DeviceFile(m_path).switchOn(V4L2_CID_FOCUS_AUTO); }

void V4l2Controls::allowSlowerRate() const { DeviceFile(m_path).switchOn(V4L2_CID_EXPOSURE_AUTO_PRIORITY); }

} // namespace kestrin::gtk
