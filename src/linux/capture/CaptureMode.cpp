#include "linux/capture/CaptureMode.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace kestrin::gtk {

namespace {

using platform::FrameRateRange;

GstCapsPtr intersection(const GstCaps* offered, const GstCaps* wanted) {
    // Keeps the order in which the camera offers.
    return GstCapsPtr(gst_caps_intersect_full(const_cast<GstCaps*>(offered), const_cast<GstCaps*>(wanted),
                                              GST_CAPS_INTERSECT_FIRST));
}

/// The pictures that every machine can convert; the rest only where there is nothing else.
GstCapsPtr convertible(const GstCaps* offered) {
    const GstCapsPtr plain(gst_caps_from_string("video/x-raw; image/jpeg"));
    GstCapsPtr found = intersection(offered, plain.get());
    return gst_caps_is_empty(found.get()) ? GstCapsPtr(gst_caps_copy(offered)) : std::move(found);
}

/// Sets the structure to its nearest size; how far off that is, pixels.
int fitSize(GstStructure* structure, int width, int height) {
    gst_structure_fixate_field_nearest_int(structure, "width", width);
    gst_structure_fixate_field_nearest_int(structure, "height", height);
    int fittedWidth = width, fittedHeight = height;
    gst_structure_get_int(structure, "width", &fittedWidth);
    gst_structure_get_int(structure, "height", &fittedHeight);
    return std::abs(fittedWidth - width) + std::abs(fittedHeight - height);
}

GstCapsPtr nearestSize(GstCapsPtr caps, int width, int height) {
    GstCapsPtr nearest(gst_caps_new_empty());
    int least = INT_MAX;
    while (GstStructure* structure = gst_caps_steal_structure(caps.get(), 0)) {
        const int distance = fitSize(structure, width, height);
        if (distance < least)
            nearest.reset(gst_caps_new_empty());
        least = std::min(least, distance);
        if (distance == least)
            gst_caps_append_structure(nearest.get(), structure);
        else
            gst_structure_free(structure);
    }
    return nearest;
}

GstCapsPtr withoutSlowRates(GstCapsPtr caps, double slowest) {
    int rate = 0, seconds = 1;
    gst_util_double_to_fraction(slowest, &rate, &seconds);
    const GstCapsPtr quick(gst_caps_copy(caps.get()));
    for (guint i = 0; i < gst_caps_get_size(quick.get()); ++i) {
        GstStructure* structure = gst_caps_get_structure(quick.get(), i);
        if (gst_structure_has_field(structure, "framerate"))
            gst_structure_set(structure, "framerate", GST_TYPE_FRACTION_RANGE, rate, seconds, INT_MAX, 1,
                              nullptr);
    }
    GstCapsPtr found = intersection(caps.get(), quick.get());
    return gst_caps_is_empty(found.get()) ? std::move(caps) : std::move(found);
}

double number(const GValue* fraction) {
    return double(gst_value_get_fraction_numerator(fraction)) / gst_value_get_fraction_denominator(fraction);
}

void addRates(const GValue* value, std::vector<FrameRateRange>& rates) {
    FrameRateRange range;
    if (value && GST_VALUE_HOLDS_LIST(value)) {
        for (guint i = 0; i < gst_value_list_get_size(value); ++i)
            addRates(gst_value_list_get_value(value, i), rates);
        return;
    }
    if (value && GST_VALUE_HOLDS_FRACTION(value))
        range = {number(value), number(value)};
    else if (value && GST_VALUE_HOLDS_FRACTION_RANGE(value))
        range = {number(gst_value_get_fraction_range_min(value)),
                 number(gst_value_get_fraction_range_max(value))};
    else
        return;
    if (std::find(rates.begin(), rates.end(), range) == rates.end())
        rates.push_back(range);
}

} // namespace

GstCapsPtr captureMode(const GstCaps* offered, int width, int height, double slowest) {
    if (!offered || gst_caps_is_empty(offered) || gst_caps_is_any(offered))
        return {};
    GstCapsPtr caps = nearestSize(convertible(offered), width, height);
    return slowest > 0 ? withoutSlowRates(std::move(caps), slowest) : std::move(caps);
}

std::vector<FrameRateRange> frameRates(const GstCaps* caps) {
    std::vector<FrameRateRange> rates;
    for (guint i = 0; caps && i < gst_caps_get_size(caps); ++i)
        addRates(gst_structure_get_value(gst_caps_get_structure(caps, i), "framerate"), rates);
    return rates;
}

} // namespace kestrin::gtk
