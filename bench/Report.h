#pragma once

#include <boost/json/array.hpp>

#include <limits>
#include <optional>
#include <string>

namespace kestrin::bench {

/// Between which values a figure has to lie, both included.
struct Bound {
    double least = -std::numeric_limits<double>::infinity();
    double most = std::numeric_limits<double>::infinity();
};

inline Bound atLeast(double least) { return {.least = least}; }
inline Bound atMost(double most) { return {.most = most}; }

/// The figures of one measurement: each is shown on standard error when it is known, and written as JSON at
/// the end.
class Report {
  public:
    /// `arguments` are those of `main`; the first of them names the file for the JSON.
    Report(std::string measurement, int argc, char** argv);

    /// Says what is being done.
    void progress(const std::string& text) const;
    /// A figure that is bounded by itself.
    void value(const std::string& name, const std::string& unit, double ours, const Bound& bound = {});
    /// A figure of which ours divided by the baseline's is bounded.
    void ratio(const std::string& name, const std::string& unit, double ours, double baseline,
               const Bound& bound);
    /// Writes the file. The program's exit status: 0 when every bound held.
    int finish() const;

  private:
    struct Figure {
        std::string name, unit;
        double ours;
        std::optional<double> baseline;
        Bound bound;
    };
    void add(const Figure& figure);

    std::string m_measurement;
    std::string m_file;
    boost::json::array m_figures;
    bool m_passed = true;
};

} // namespace kestrin::bench
