#include "host/picture/Sheet.h"

#include <algorithm>
#include <cmath>

#include "host/picture/Svg.h"

namespace host::picture {
namespace {

constexpr double margin = 8.0;
constexpr double legendHeight = 24.0;

// Surroundings as a part of the view's larger side: around all content, and around a focus.
constexpr double aroundAll = 0.03;
constexpr double aroundFocus = 0.15;
constexpr double leastFocus = 1.0 / 8.0;

// What lies far off is left aside when everything is larger by this than what is left.
constexpr double leastGain = 20.0;

PlanPoint middle(const PlanBox& box) {
    return {box.min.x / 2.0 + box.max.x / 2.0, box.min.y / 2.0 + box.max.y / 2.0};
}

double widthOf(const PlanBox& box) {
    return box.empty() ? 0.0 : box.max.x - box.min.x;
}

double heightOf(const PlanBox& box) {
    return box.empty() ? 0.0 : box.max.y - box.min.y;
}

double largerSide(const PlanBox& box) {
    return std::max(widthOf(box), heightOf(box));
}

void add(PlanBox& box, const PlanBox& other) {
    if (other.empty()) return;
    box.add(other.min);
    box.add(other.max);
}

PlanBox grown(PlanBox box, double by) {
    box.min = {box.min.x - by, box.min.y - by};
    box.max = {box.max.x + by, box.max.y + by};
    return box;
}

// The stretch around the middle eight tenths of numbers that is not far off.
struct Stretch {
    double from, to;
    bool holds(double value) const { return from <= value && value <= to; }
    double nearest(double value) const { return std::clamp(value, from, to); }
};

Stretch usualStretch(std::vector<double> values) {
    constexpr double timesAway = 3.0;
    const auto at = [&](std::size_t index) {
        const auto place = values.begin() + static_cast<std::ptrdiff_t>(index);
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    const std::size_t tenth = values.size() / 10;
    const double low = at(tenth);
    const double high = at(values.size() - 1 - tenth);
    const double slack = (high - low) * timesAway;
    // All in one place: nothing tells what is far from it.
    if (!(slack > 0.0)) return {-1e300, 1e300};
    return {low - slack, high + slack};
}

PlanBox allOf(const std::vector<PlanBox>& content) {
    PlanBox box;
    for (const PlanBox& one : content) add(box, one);
    return box;
}

PlanBox usualContent(const std::vector<PlanBox>& content) {
    PlanBox box;
    std::vector<double> xs, ys;
    for (const PlanBox& one : content) {
        xs.insert(xs.end(), {one.min.x, one.max.x});
        ys.insert(ys.end(), {one.min.y, one.max.y});
    }
    if (xs.empty()) return box;
    const Stretch across = usualStretch(std::move(xs));
    const Stretch upwards = usualStretch(std::move(ys));
    for (const PlanBox& one : content) {
        const PlanPoint at = middle(one);
        if (!across.holds(at.x) || !upwards.holds(at.y)) continue;
        box.add({across.nearest(one.min.x), upwards.nearest(one.min.y)});
        box.add({across.nearest(one.max.x), upwards.nearest(one.max.y)});
    }
    const PlanBox all = allOf(content);
    return largerSide(all) > largerSide(box) * leastGain ? box : all;
}

}  // namespace

PlanBox chooseView(const std::vector<PlanBox>& content, const std::vector<PlanBox>& turned,
                   const PlanBox& lines) {
    PlanBox focus = usualContent(turned);
    add(focus, lines);
    PlanBox all = usualContent(content);
    add(all, focus);
    if (all.empty()) return all;
    const bool isLost = !focus.empty() && widthOf(focus) < widthOf(all) * leastFocus &&
                        heightOf(focus) < heightOf(all) * leastFocus;
    return isLost ? grown(focus, largerSide(focus) * aroundFocus)
                  : grown(all, largerSide(all) * aroundAll);
}

Sheet::Sheet(const PlanBox& view) {
    PlanBox wanted = view.empty() ? PlanBox{{0.0, 0.0}, {1.0, 1.0}} : view;
    // Far from the origin, neighbouring numbers lie apart; a single point gets a unit.
    const PlanPoint at = middle(wanted);
    const double least = std::max(std::fabs(at.x), std::fabs(at.y)) * 1e-9;
    if (largerSide(wanted) <= least) wanted = grown(wanted, std::max(least, 0.5));
    if (heightOf(wanted) > widthOf(wanted)) std::swap(width_, height_);
    frame_ = {{margin, margin}, {width_ - margin, height_ - margin - legendHeight}};
    const double across = widthOf(frame_), upwards = heightOf(frame_);
    // One side may be without extent.
    perUnit_ = std::min(across / std::max(widthOf(wanted), 1e-300),
                        upwards / std::max(heightOf(wanted), 1e-300));
    const double halfWidth = units(across) / 2.0, halfHeight = units(upwards) / 2.0;
    shown_ = {{at.x - halfWidth, at.y - halfHeight}, {at.x + halfWidth, at.y + halfHeight}};
    reach_ = grown(shown_, 10.0 * largerSide(shown_));
    const double round = std::pow(10.0, std::ceil(std::log10(largerSide(shown_))));
    origin_ = {std::floor(shown_.min.x / round) * round, std::floor(shown_.min.y / round) * round};
    decimals_ = std::clamp(static_cast<int>(std::ceil(-std::log10(smallest()))), 0, 15);
}

std::string Sheet::transform() const {
    const PlanPoint at = middle(shown_);
    const PlanPoint on = middle(frame_);
    const double x = on.x - (at.x - origin_.x) * perUnit_;
    const double y = on.y + (at.y - origin_.y) * perUnit_;
    const std::string scale = shortText(perUnit_);
    return "matrix(" + scale + " 0 0 -" + scale + " " + fixedText(x, 3) + " " + fixedText(y, 3) +
           ")";
}

std::string Sheet::coordinate(double value) const {
    return fixedText(value, decimals_);
}

}  // namespace host::picture
