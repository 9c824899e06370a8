#include "linux/capture/ModeText.h"

#include "linux/capture/CaptureMode.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <string_view>

namespace kestrin::gtk {

namespace {

std::string kindOf(const GstStructure* mode) {
    const GValue* format = gst_structure_get_value(mode, "format");
    std::string formats;
    for (guint i = 0; format && GST_VALUE_HOLDS_LIST(format) && i < gst_value_list_get_size(format); ++i)
        formats += (i == 0 ? "" : "/") + std::string(g_value_get_string(gst_value_list_get_value(format, i)));
    if (!formats.empty())
        return formats;
    if (const char* one = gst_structure_get_string(mode, "format"))
        return one;
    std::string_view name = gst_structure_get_name(mode);
    name.remove_prefix(std::min(name.size(), name.find('/') + 1));
    if (name.starts_with("x-"))
        name.remove_prefix(2);
    const GText capitals(g_ascii_strup(name.data(), gssize(name.size())));
    return capitals.get();
}

std::string sideOf(const GstStructure* mode, const char* side) {
    const GValue* value = gst_structure_get_value(mode, side);
    if (!value)
        return "any";
    if (!GST_VALUE_HOLDS_INT_RANGE(value))
        return GText(gst_value_serialize(value)).get();
    const int least = gst_value_get_int_range_min(value), most = gst_value_get_int_range_max(value);
    return most == INT_MAX ? "any" : std::to_string(least) + ".." + std::to_string(most);
}

std::string sizeOf(const GstStructure* mode) {
    const std::string width = sideOf(mode, "width"), height = sideOf(mode, "height");
    return width == "any" && height == "any" ? "any size" : width + "x" + height;
}

std::string numberText(double rate) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", rate);
    return text;
}

std::string rateText(const platform::FrameRateRange& range) {
    if (range.maximum >= INT_MAX)
        return "any rate";
    return range.minimum == range.maximum ? numberText(range.maximum)
                                          : numberText(range.minimum) + ".." + numberText(range.maximum);
}

std::string ratesOf(const GstCaps* offered, guint index) {
    const GstCapsPtr one(gst_caps_copy_nth(offered, index));
    std::string text;
    for (const platform::FrameRateRange& range : frameRates(one.get()))
        text += (text.empty() ? "" : ", ") + rateText(range);
    return text.empty() ? "" : " (" + text + ")";
}

} // namespace

std::vector<std::string> modeTexts(const GstCaps* offered) {
    std::vector<std::string> lines;
    for (guint i = 0; offered && i < gst_caps_get_size(offered); ++i) {
        const GstStructure* mode = gst_caps_get_structure(offered, i);
        const std::string kind = kindOf(mode) + " ", size = sizeOf(mode) + ratesOf(offered, i);
        const auto line =
            std::ranges::find_if(lines, [&](const std::string& known) { return known.starts_with(kind); });
        if (line == lines.end())
            lines.push_back(kind + size);
        else
            *line += ", " + size;
    }
    return lines;
}

} // namespace kestrin::gtk
