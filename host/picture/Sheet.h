// The sheet of paper of a picture: which part of the drawing it shows, and where.
//
// Sizes on paper are millimetres from the upper left corner, downwards. Drawing coordinates are
// written relative to a round origin near the content, so that map coordinates of seven digits keep
// their millimetres in programs that calculate in single precision.
#pragma once

#include <string>
#include <vector>

#include "host/editor/PlanFigure.h"

namespace host::picture {

using editor::PlanBox;
using editor::PlanPoint;

// What a picture is to show of the drawing's content, when a command turned `turned` along `lines`;
// both may be empty.
//
// Content that lies far off is left aside where that enlarges the rest twentyfold: with the stretch
// that holds the middle eight tenths of the sides of all boxes, across and upwards, boxes whose
// middle lies further from it than three times its length, and what of the others reaches further
// than that. The same goes for what was turned; lines are always shown. The content that remains is
// shown together with the change when the change takes an eighth of its width or height at least,
// otherwise the change alone with some surroundings. Empty when there is nothing to show.
PlanBox chooseView(const std::vector<PlanBox>& content, const std::vector<PlanBox>& turned,
                   const PlanBox& lines);

class Sheet {
  public:
    // A4, across or upright as the view is; a view without extent gets some. An empty view shows
    // nothing.
    explicit Sheet(const PlanBox& view);

    double width() const { return width_; }
    double height() const { return height_; }
    // The part of the paper for the drawing.
    const PlanBox& frame() const { return frame_; }
    // What of the drawing the frame shows.
    const PlanBox& shown() const { return shown_; }
    // What lies outside of this is cut off: renderers calculate with limited numbers.
    const PlanBox& reach() const { return reach_; }
    const PlanPoint& origin() const { return origin_; }

    double perUnit() const { return perUnit_; }  // millimetres
    double units(double millimetres) const { return millimetres / perUnit_; }
    // A hundredth of a line's width in drawing units: smaller things make no difference.
    double smallest() const { return units(0.002); }

    // A drawing coordinate relative to the origin, as it is written.
    std::string x(double value) const { return coordinate(value - origin_.x); }
    std::string y(double value) const { return coordinate(value - origin_.y); }

    // The map from coordinates relative to the origin to the paper.
    std::string transform() const;

  private:
    std::string coordinate(double value) const;

    double width_ = 297.0, height_ = 210.0;
    PlanBox frame_, shown_, reach_;
    PlanPoint origin_;
    double perUnit_ = 1.0;
    int decimals_ = 3;
};

}  // namespace host::picture
