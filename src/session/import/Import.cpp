#include "session/import/Import.h"

#include "session/import/Folders.h"
#include "session/import/ImportError.h"
#include "session/import/Picture.h"
#include "session/import/SequenceBuilder.h"
#include "session/import/Undistorter.h"
#include "session/recording/RecordingWriter.h"

#include <algorithm>
#include <deque>
#include <future>
#include <thread>

namespace kestrin::session {

namespace fs = std::filesystem;

namespace {

Sequence read(DataSet kind, const fs::path& folder, const ImportOptions& options) {
    switch (kind) {
    case DataSet::euroc:
        return readEurocFolder(folder, options);
    case DataSet::tum:
        return readTumFolder(folder, options);
    case DataSet::pictures:
        break;
    }
    return readPicturesFolder(folder, options);
}

/// Reads and straightens the pictures of a sequence, some ahead of the one that is asked for.
class StraightPictures {
  public:
    StraightPictures(const Sequence& sequence, const Calibration& camera)
        : m_sequence(sequence), m_camera(camera), m_straighten(camera) {}

    /// The next one. Throws ImportError.
    Nv12Buffer next() {
        while (m_asked < m_sequence.shots.size() && m_ahead.size() < kAhead)
            m_ahead.push_back(std::async(std::launch::async, &StraightPictures::make, this, m_asked++));
        std::future<Nv12Buffer> first = std::move(m_ahead.front());
        m_ahead.pop_front();
        return first.get();
    }

  private:
    static constexpr std::size_t kAhead = 3;

    Nv12Buffer make(std::size_t index) const {
        const fs::path& file = m_sequence.shots[index].picture;
        const cv::Mat picture = readPicture(file);
        if (picture.cols != m_camera.width || picture.rows != m_camera.height)
            throw ImportError(file.string() + ": is " + std::to_string(picture.cols) + "x" +
                              std::to_string(picture.rows) + ", expected " + std::to_string(m_camera.width) +
                              "x" + std::to_string(m_camera.height));
        return toNv12(m_straighten(picture));
    }

    const Sequence& m_sequence;
    const Calibration m_camera;
    const Undistorter m_straighten;
    std::size_t m_asked = 0;
    std::deque<std::future<Nv12Buffer>> m_ahead; ///< waited for when it goes
};

/// With the size of the first picture where the data set does not say it.
Calibration sizedCamera(const Sequence& sequence) {
    Calibration camera = sequence.camera;
    if (camera.width == 0) {
        const cv::Mat first = readPicture(sequence.shots.front().picture);
        camera.width = first.cols;
        camera.height = first.rows;
    }
    return camera;
}

RecordedFrame frameOf(const Shot& shot, Stamp begin, const CameraModel& camera) {
    RecordedFrame result;
    result.frame.time = seconds(shot.stamp - begin);
    result.frame.sensorPose = shot.pose;
    result.frame.intrinsics = camera.intrinsics;
    result.imu = shot.imu;
    return result;
}

std::optional<RecordingError> write(const Sequence& sequence, const std::string& origin,
                                    const fs::path& recording, const AfterFrame& afterFrame) {
    const Calibration calibration = sizedCamera(sequence);
    const CameraModel camera = calibration.pinhole();
    StraightPictures pictures(sequence, calibration);
    auto made = RecordingWriter::create(recording, {camera, sequence.rate, origin});
    if (auto* error = std::get_if<RecordingError>(&made))
        return *error;
    RecordingWriter& writer = *std::get<0>(made);
    for (std::size_t i = 0; i < sequence.shots.size(); ++i) {
        const RecordedFrame frame = frameOf(sequence.shots[i], sequence.shots.front().stamp, camera);
        if (const auto error = writer.add(frame, pictures.next()))
            return error;
        afterFrame();
    }
    return writer.finish();
}

} // namespace

std::optional<DataSet> dataSetNamed(std::string_view name) {
    if (name == "euroc")
        return DataSet::euroc;
    if (name == "tum")
        return DataSet::tum;
    return name == "pictures" ? std::optional(DataSet::pictures) : std::nullopt;
}

std::optional<DataSet> dataSetIn(const fs::path& folder) {
    if (fs::exists(folder / "mav0") || fs::exists(folder / "cam0"))
        return DataSet::euroc;
    if (fs::exists(folder / "rgb.txt"))
        return DataSet::tum;
    if (fs::exists(folder / "intrinsics.json") || fs::exists(folder / "K.txt"))
        return DataSet::pictures;
    return {};
}

std::variant<Sequence, RecordingError> readSequence(DataSet kind, const fs::path& folder,
                                                    const ImportOptions& options) {
    try {
        Sequence sequence = read(kind, folder, options);
        if (sequence.shots.empty())
            return RecordingError{folder.string() + ": none of its " + std::to_string(sequence.leftOut) +
                                  " pictures lies within the ground truth"};
        sequence.rate = std::clamp(rateOf(sequence.shots, options.rate.value_or(30)), 0.1, 1000.0);
        return sequence;
    } catch (const ImportError& error) {
        return RecordingError{error.what()};
    } catch (const fs::filesystem_error& error) {
        return RecordingError{error.path1().string() + ": " + error.code().message()};
    }
}

std::optional<RecordingError> writeRecording(const Sequence& sequence, const std::string& origin,
                                             const fs::path& recording, const AfterFrame& afterFrame) {
    try {
        return write(sequence, origin, recording, afterFrame);
    } catch (const ImportError& error) {
        return RecordingError{error.what()};
    }
}

} // namespace kestrin::session
