#include "services/util/QueryItem.h"

#include "services/util/PercentEncoding.h"

#include <algorithm>

namespace kestrin {

namespace {

std::optional<QueryItem> readItem(std::string_view text) {
    const auto equals = text.find('=');
    auto name = percentDecode(text.substr(0, equals));
    if (!name)
        return std::nullopt;
    if (equals == std::string_view::npos)
        return QueryItem{std::move(*name), std::nullopt};
    auto value = percentDecode(text.substr(equals + 1));
    return value ? std::optional(QueryItem{std::move(*name), std::move(value)}) : std::nullopt;
}

} // namespace

std::optional<std::vector<QueryItem>> queryItems(std::string_view url) {
    const std::string_view address = url.substr(0, url.find('#'));
    const auto mark = address.find('?');
    if (mark == std::string_view::npos ||
        !std::ranges::all_of(url, [](char c) { return c > ' ' && c < 0x7F; }))
        return std::nullopt;
    std::vector<QueryItem> items;
    for (auto begin = mark + 1; begin <= address.size();) {
        const auto end = std::min(address.find('&', begin), address.size());
        auto item = readItem(address.substr(begin, end - begin));
        if (!item)
            return std::nullopt;
        items.push_back(std::move(*item));
        begin = end + 1;
    }
    return items;
}

} // namespace kestrin
