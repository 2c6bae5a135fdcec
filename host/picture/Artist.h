// Entities as elements of SVG.
//
// An element carries the kind of its entity as class, its handle and its layer as data-handle and
// data-layer, and its colour as the attribute color, which style sheets override. A block reference
// is a group of the elements of its block.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "host/picture/Layers.h"
#include "host/picture/Look.h"
#include "host/picture/Sheet.h"

namespace host::picture {

// How an entity of model space is shown.
struct Showing {
    const char* role = "";      // a second class
    const char* idSuffix = "";  // behind the handle, for an entity that is shown twice
    bool colored = true;        // without: in the colour of the group around it
    std::wstring title;         // told when the pointer rests on it; empty for none
};

class Artist {
  public:
    // A picture grows by steps: pieces of lines, texts, empty blocks passed through. Of all its
    // entities together, and of one.
    static constexpr std::size_t mostSteps = 500'000;
    static constexpr std::size_t mostStepsOfOne = 200'000;
    // Blocks within blocks beyond this depth are left out.
    static constexpr std::size_t deepest = 64;

    // `sheet` and `layers` outlive this object.
    Artist(AcDbImpDatabase& database, const Sheet& sheet, Layers& layers)
        : database_(database), sheet_(sheet), layers_(layers) {}

    // Appends the element of an entity of model space; nothing for one that has no known look or
    // can't be seen. Returns whether it appended something. A block reference of too many steps is
    // shown as the outline of its box, with the class "abridged".
    bool draw(std::string& out, const Piece& piece, const Showing& showing);

    // True once the picture has taken as many steps as it may.
    bool isFull() const { return steps_ >= mostSteps; }
    std::size_t abridged() const { return abridged_; }

    // A path in drawing coordinates as the value of the attribute d, cut to what the sheet reaches;
    // empty when nothing is left.
    std::string pathData(const Path& path, bool filled) const;

  private:
    // What elements of a block take over from the block reference around them.
    struct Surroundings {
        const Layer* layer = nullptr;  // of the reference; null in model space
        Rgb block;                     // the colour of what is coloured by block
        Rgb shown;                     // the colour that the group around has
        bool colored = true;
    };

    const Layer& layerOf(const Piece& piece, const Surroundings& around);
    static Rgb colorOf(const Ink& ink, const Layer& layer, const Surroundings& around);
    bool isSeen(const Piece& piece, const Surroundings& around);

    bool element(std::string& out, const Piece& piece, const AcGeMatrix3d& matrix,
                 const Surroundings& around, const Showing* showing);
    void attributes(std::string& out, const Piece& piece, const Layer& layer, const Rgb& color,
                    const Surroundings& around, const Showing* showing) const;
    bool path(std::string& out, const std::string& head, const Piece& piece,
              const AcGeMatrix3d& matrix, const std::string& title);
    bool text(std::string& out, const std::string& head, const Lettering& lettering,
              const AcGeMatrix3d& matrix, const std::string& title);
    bool group(std::string& out, const std::string& head, const Reference& reference,
               const AcGeMatrix3d& matrix, const Surroundings& inside, const std::string& title);
    bool cells(std::string& out, const Reference& reference, const AcGeMatrix3d& matrix,
               const Surroundings& inside);
    bool block(std::string& out, database::ObjectNumber number, const AcGeMatrix3d& matrix,
               const Surroundings& inside);
    bool outline(std::string& out, const Piece& piece, const Showing& showing);
    bool spend(std::size_t steps);

    AcDbImpDatabase& database_;
    const Sheet& sheet_;
    Layers& layers_;
    std::map<database::ObjectNumber, std::vector<Piece>> contents_;
    std::vector<database::ObjectNumber> inside_;  // blocks under way
    std::size_t steps_ = 0;
    std::size_t stepsOfOne_ = 0;
    std::size_t abridged_ = 0;
};

}  // namespace host::picture
