#pragma once

#include "services/util/Format.h"
#include "tracking/CVManagerDelegate.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kestrin::test {

/// Writes down every event, one line each. Thread: any.
class RecordingListener : public CVManagerDelegate {
  public:
    void onMarkerFound(const std::string& name) override { write("found " + name); }
    void onMarkerLost(const std::string& name) override { write("lost " + name); }
    void onMarkerTracked(const std::string& name, const platform::Matrix&, const platform::Matrix& view,
                         double timestamp) override {
        write(format("tracked %@ %.1f", name, timestamp), view);
    }
    void onUpdateProjectionMatrix(const platform::Matrix& told) override { write("projection", told); }
    void onUpdateViewport(const platform::Size& size) override {
        write(format("viewport %.1f %.1f", size.width, size.height));
        if (whenViewportChanges)
            whenViewportChanges(size);
    }
    void onTriggerStarted() override { write("trigger started"); }
    void onTriggerAdded(const std::string& name, const platform::Matrix&, float w, float h) override {
        write(format("trigger added %@ %.1f %.1f", name, w, h));
    }
    void onTriggerUpdated(const std::string& name, const platform::Matrix&, float w, float h) override {
        write(format("trigger updated %@ %.1f %.1f", name, w, h));
    }
    void onTriggerRemoved(const std::string& name) override { write("trigger removed " + name); }
    void onTriggerClear() override { write("trigger clear"); }
    void onPlaneStarted() override { write("plane started"); }
    void onPlaneAdded(const std::string& id, const platform::Matrix& pose, float w, float h) override {
        write(format("plane added %@ %.1f %.1f", id, w, h), pose);
    }
    void onPlaneUpdated(const std::string& id, const platform::Matrix& pose, float w, float h) override {
        write(format("plane updated %@ %.1f %.1f", id, w, h), pose);
    }
    void onPlaneGeometryUpdated(const std::string& id, const Vertices& vertices, int verticesCount,
                                const Indices& indices, int indicesCount) override {
        write(format("plane geometry %@ %i %.1f %i %i", id, verticesCount, vertices[verticesCount - 1].x,
                     indicesCount, indices[indicesCount - 1]));
    }
    void onPlaneRemoved(const std::string& id) override { write("plane removed " + id); }
    void onPlaneClear() override { write("plane clear"); }
    void onLightEstimate(float estimate) override { write(format("light %f", estimate)); }
    void onTrackingReasonChange(int reason) override { write(format("reason %i", reason)); }

    std::vector<std::string> take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }

    platform::Matrix matrix; ///< as told last
    std::function<void(const platform::Size&)> whenViewportChanges;
    std::thread::id thread; ///< of the last event

  private:
    void write(std::string line, const std::optional<platform::Matrix>& told = std::nullopt) {
        const std::lock_guard lock(m_mutex);
        matrix = told.value_or(matrix);
        thread = std::this_thread::get_id();
        m_lines.push_back(std::move(line));
    }

    std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

using Lines = std::vector<std::string>;

} // namespace kestrin::test
