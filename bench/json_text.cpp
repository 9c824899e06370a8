// A large message of the page, from base64 to the parsed value: one long text, and many small records.

#include "Report.h"
#include "Statistics.h"
#include "services/util/Base64.h"
#include "services/util/KestrinUtil.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <chrono>
#include <cstdlib>

using namespace kestrin;
using namespace kestrin::bench;

namespace json = boost::json;

namespace {

constexpr int kRounds = 41;
constexpr std::size_t kSize = 8U << 20U; // of the JSON text

/// As a picture in a message is.
std::string longText() {
    std::string text(kSize - 64, '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = char('0' + i * 7 % 10);
    return json::serialize(json::object{{"eventName", "onShare"}, {"data", {{"image", text}}}});
}

/// As a list of triggers or of a page's own things is.
std::string smallRecords() {
    json::array records;
    std::size_t size = 0;
    while (size < kSize) {
        const auto number = records.size();
        records.push_back({{"id", number},
                           {"x", 0.25 * double(number)},
                           {"y", -1.125},
                           {"name", "plane " + std::to_string(number)}});
        size += json::serialize(records.back()).size() + 1;
    }
    return json::serialize(json::object{{"eventName", "onShare"}, {"data", std::move(records)}});
}

/// Milliseconds, the end of the value included.
double decodeOnce(const std::string& message) {
    const auto begin = std::chrono::steady_clock::now();
    {
        const auto value = KestrinUtil::json64ToDict(message);
        if (!value || !value->as_object().contains("data"))
            std::abort();
    }
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double timeOf(const std::string& jsonText) {
    const std::string message = base64Encode(jsonText);
    std::vector<double> rounds;
    for (int i = 0; i < kRounds; ++i)
        rounds.push_back(decodeOnce(message));
    return median(rounds);
}

} // namespace

int main(int argc, char** argv) {
    Report report("json_text", argc, argv);
    report.value("one text of 8 MB", "ms", timeOf(longText()), atMost(12));
    report.value("small records, 8 MB", "ms", timeOf(smallRecords()), atMost(80));
    return report.finish();
}
