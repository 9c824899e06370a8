#include "tracking/TriggerBundle.h"

#include "services/util/Json.h"

#include <boost/json.hpp>

#include <cmath>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kestrin {

namespace json = boost::json;

namespace {

/// The list under `key`; empty when there is none.
const json::array& listOf(const json::value& answer, std::string_view key) {
    static const json::array kNone;
    const json::value* list = findMember(&answer, {key});
    return list && list->is_array() ? list->get_array() : kNone;
}

/// 0 for what is no number, and for one that no length can have.
float lengthOf(const json::value* value) {
    const double length = value && value->is_number() ? value->to_number<double>() : 0;
    return std::abs(length) <= double(std::numeric_limits<float>::max()) ? float(length) : 0;
}

/// Image addresses by file id; the first of several files with one id counts.
std::unordered_map<std::string, std::string> fileAddresses(const json::value& answer) {
    std::unordered_map<std::string, std::string> addresses;
    for (const json::value& file : listOf(answer, "included")) {
        auto id = textOf(findMember(&file, {"id"}));
        auto address = textOf(findMember(&file, {"attributes", "effective_uri"}));
        if (id && address)
            addresses.emplace(std::move(*id), std::move(*address));
    }
    return addresses;
}

} // namespace

TriggerBundle TriggerBundle::read(const json::value& answer) {
    TriggerBundle bundle;
    const auto addresses = fileAddresses(answer);
    std::unordered_map<std::string, std::size_t> places;
    for (const json::value& record : listOf(answer, "data")) {
        const auto id = textOf(findMember(&record, {"id"}));
        const auto file = textOf(findMember(&record, {"attributes", "file_id"}));
        const auto address = file ? addresses.find(*file) : addresses.end();
        if (!id || address == addresses.end() || !findMember(&record, {"attributes", "scene_id"}))
            continue;
        ++bundle.records;
        const auto [place, isNew] = places.emplace(*id, bundle.triggers.size());
        if (isNew)
            bundle.triggers.emplace_back();
        bundle.triggers[place->second] = {*id, address->second,
                                          lengthOf(findMember(&record, {"attributes", "width"})),
                                          lengthOf(findMember(&record, {"attributes", "height"}))};
    }
    return bundle;
}

} // namespace kestrin
