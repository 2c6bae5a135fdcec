// Entities as elements of SVG.
//
// An element carries the kind of its entity as class, its handle and its layer as data-handle and
// data-layer, and its colour as the attribute color, which style sheets override. A block reference
// is a group of the elements of its block.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/picture/Blocks.h"
#include "host/picture/Layers.h"
#include "host/picture/Linetypes.h"
#include "host/picture/Look.h"
#include "host/picture/Sheet.h"

namespace host::picture {

// How an entity of model space is shown.
struct Showing {
    const char* role = "";      // a second class
    const char* idSuffix = "";  // behind the handle, for an entity that is shown twice
    bool plain = false;         // in the colour and stroke of the group around it
    Background ground = Background::paper;
    std::wstring title;  // told when the pointer rests on it; empty for none
};

class Artist {
  public:
    // A picture grows by steps: pieces of lines, texts, empty blocks passed through. So many are
    // taken for a block reference before it is shown as its box, unless less is allowed.
    static constexpr std::size_t mostStepsOfOne = 200'000;
    // So many dashes are drawn; later lines are continuous.
    static constexpr double mostDashes = 200'000.0;

    // All of these outlive this object.
    Artist(AcDbImpDatabase& database, const Sheet& sheet, Layers& layers, Blocks& blocks)
        : database_(database),
          sheet_(sheet),
          layers_(layers),
          blocks_(blocks),
          linetypes_(database) {}

    // Vertices are left out whose absence makes no difference of more than this, in millimetres on
    // paper.
    void setDetail(double detail) { detail_ = detail; }
    void setMostStepsOfOne(std::size_t most) { mostOfOne_ = most; }

    enum class Drawn : std::uint8_t { nothing, whole, box };

    // Appends the element of an entity of model space; nothing for one that has no known look or
    // can't be seen. A block reference of too many steps is shown as its box, with the class
    // "abridged".
    Drawn draw(std::string& out, const Piece& piece, const Showing& showing);

    // What was drawn since this was last set to 0.
    std::size_t steps() const { return steps_; }
    void resetSteps() { steps_ = 0; }

  private:
    // What elements of a block take over from the block reference around them.
    struct Surroundings {
        const Layer* layer = nullptr;  // of the reference; null in model space
        Rgb block;                     // the colour of what is coloured by block
        Rgb shown;                     // the colour that the group around has
        std::wstring linetype;         // of what has its line type by block
        int weight = Pen::standard;
        bool plain = false;
        Background ground = Background::paper;
    };

    const Layer& layerOf(const Piece& piece, const Surroundings& around);
    static Rgb colorOf(const Ink& ink, const Layer& layer, const Surroundings& around);
    bool isSeen(const Piece& piece, const Surroundings& around);
    static std::wstring linetypeOf(const Piece& piece, const Layer& layer,
                                   const Surroundings& around);
    static int weightOf(const Piece& piece, const Layer& layer, const Surroundings& around);
    Stroke strokeOf(const Piece& piece, const AcGeMatrix3d& matrix, const Surroundings& around);

    bool element(std::string& out, const Piece& piece, const AcGeMatrix3d& matrix,
                 const Surroundings& around, const Showing* showing);
    void attributes(std::string& out, const Piece& piece, const Layer& layer, const Rgb& color,
                    const Surroundings& around, const Showing* showing) const;
    bool path(std::string& out, const std::string& head, const Piece& piece,
              const AcGeMatrix3d& matrix, const Surroundings& around, const std::string& title);
    void spendDashes(Stroke& stroke, Path& path);
    bool group(std::string& out, const std::string& head, const Reference& reference,
               const AcGeMatrix3d& matrix, const Surroundings& inside, const std::string& title);
    bool cells(std::string& out, const Reference& reference, const AcGeMatrix3d& matrix,
               const Surroundings& inside);
    bool block(std::string& out, database::ObjectNumber number, const AcGeMatrix3d& matrix,
               const Surroundings& inside);
    Drawn outline(std::string& out, const Piece& piece, const Showing& showing);
    bool spend(std::size_t steps);

    AcDbImpDatabase& database_;
    const Sheet& sheet_;
    Layers& layers_;
    Blocks& blocks_;
    Linetypes linetypes_;
    double detail_ = 0.0;
    std::size_t mostOfOne_ = mostStepsOfOne;
    std::vector<database::ObjectNumber> inside_;  // blocks under way
    std::size_t steps_ = 0;
    std::size_t stepsOfOne_ = 0;
    bool isLimited_ = false;  // the entity under way is a block reference
    double dashes_ = 0.0;
};

}  // namespace host::picture
