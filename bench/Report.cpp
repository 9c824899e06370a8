#include "Report.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <utility>

namespace kestrin::bench {

namespace json = boost::json;

namespace {

std::string shown(double value) {
    char text[32];
    std::snprintf(text, sizeof text, std::abs(value) < 10 ? "%.3g" : "%.1f", value);
    return text;
}

std::string shown(const Bound& bound) {
    if (std::isinf(bound.least))
        return std::isinf(bound.most) ? "" : "<= " + shown(bound.most);
    return std::isinf(bound.most) ? ">= " + shown(bound.least)
                                  : shown(bound.least) + " .. " + shown(bound.most);
}

json::value numberOrNull(double value) { return std::isfinite(value) ? json::value(value) : nullptr; }

} // namespace

Report::Report(std::string measurement, int argc, char** argv)
    : m_measurement(std::move(measurement)), m_file(argc > 1 ? argv[1] : "") {}

void Report::progress(const std::string& text) const {
    std::fprintf(stderr, "   %s: %s\n", m_measurement.c_str(), text.c_str());
}

void Report::value(const std::string& name, const std::string& unit, double ours, const Bound& bound) {
    add({name, unit, ours, std::nullopt, bound});
}

void Report::ratio(const std::string& name, const std::string& unit, double ours, double baseline,
                   const Bound& bound) {
    add({name, unit, ours, baseline, bound});
}

void Report::add(const Figure& figure) {
    const double ratio = figure.baseline ? figure.ours / *figure.baseline : 0;
    const double bounded = figure.baseline ? ratio : figure.ours;
    const std::string bound = shown(figure.bound);
    // Written so that a figure that is no number fails.
    const bool passed = bounded >= figure.bound.least && bounded <= figure.bound.most;
    m_passed = m_passed && (bound.empty() || passed);

    std::string against;
    if (figure.baseline)
        against = "baseline " + shown(*figure.baseline) + ' ' + figure.unit + "  ratio " + shown(ratio);
    std::printf("%-15s %-26s %10s %-8s %-34s %-12s %s\n", m_measurement.c_str(), figure.name.c_str(),
                shown(figure.ours).c_str(), figure.unit.c_str(), against.c_str(), bound.c_str(),
                bound.empty() ? ""
                : passed      ? "pass"
                              : "FAIL");
    std::fflush(stdout);

    json::object record{{"measurement", m_measurement},
                        {"figure", figure.name},
                        {"unit", figure.unit},
                        {"ours", numberOrNull(figure.ours)}};
    if (figure.baseline) {
        record["baseline"] = numberOrNull(*figure.baseline);
        record["ratio"] = numberOrNull(ratio);
    }
    if (!bound.empty()) {
        record["bound"] = json::object{{"of", figure.baseline ? "ratio" : "ours"},
                                       {"least", numberOrNull(figure.bound.least)},
                                       {"most", numberOrNull(figure.bound.most)}};
        record["pass"] = passed;
    }
    m_figures.push_back(std::move(record));
}

int Report::finish() const {
    if (!m_file.empty()) {
        std::ofstream file(m_file);
        file << json::serialize(m_figures) << '\n';
        if (!file.flush()) {
            std::fprintf(stderr, "%s: cannot write %s\n", m_measurement.c_str(), m_file.c_str());
            return 2;
        }
    }
    return m_passed ? 0 : 1;
}

} // namespace kestrin::bench
