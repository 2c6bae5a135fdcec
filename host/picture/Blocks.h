// What blocks hold: looked at once, however often they are inserted.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/editor/PlanFigure.h"
#include "host/picture/Look.h"

namespace host::picture {

class Blocks {
  public:
    // Blocks within blocks beyond this depth are left out.
    static constexpr std::size_t deepest = 64;

    explicit Blocks(AcDbImpDatabase& database) : database_(database) {}

    // The pieces of a block, hatches first; holds as long as this object.
    const std::vector<Piece>& contentOf(database::ObjectNumber block);

    // About how many steps it takes to draw a piece: for a path those of the path, for a text those
    // of `stepsOfRun` for each of its runs, for a block reference those of all that it holds.
    double stepsOf(const Piece& piece);

    // The corners of the box around what a reference shows of its block, along the axes of the
    // block and through the reference's map: a box that turns with the reference. Empty when it
    // shows nothing.
    std::vector<AcGePoint3d> cornersOf(const Reference& reference);

    // How many entities without a known look the blocks hold that were looked at, by class.
    const std::map<std::wstring, std::size_t>& unknown() const { return unknown_; }

    static constexpr std::size_t stepsOfRun = 8;

  private:
    struct Summary {
        double steps = 0.0;
        editor::PlanBox box;
    };
    const Summary& summaryOf(database::ObjectNumber block);
    void add(Summary& summary, const Piece& piece);

    AcDbImpDatabase& database_;
    std::unordered_map<database::ObjectNumber, std::vector<Piece>> contents_;
    std::unordered_map<database::ObjectNumber, Summary> summaries_;
    std::size_t depth_ = 0;
    std::map<std::wstring, std::size_t> unknown_;
};

}  // namespace host::picture
