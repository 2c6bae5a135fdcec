// What entities look like, in the coordinates of the block that holds them: world coordinates for
// those of model space.
#pragma once

#include <gemat3d.h>
#include <gepnt3d.h>
#include <gevec3d.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/database/DatabaseImp.h"
#include "host/picture/Colors.h"
#include "host/picture/Path.h"
#include "host/picture/Pen.h"
#include "host/picture/PlainText.h"

namespace host::picture {

// Where a colour comes from: the layer (256), the block reference (0), or the entity itself.
struct Ink {
    enum class Rule : std::uint8_t { layer, block, own };
    Rule rule = Rule::layer;
    Rgb color;
};

// A text: lines of letters in a plane.
struct Lettering {
    enum class Anchor : std::uint8_t { start, middle, end };
    struct Line {
        std::vector<Run> runs;
        double rise = 0.0;  // of the baseline above the origin, in font sizes
    };

    AcGePoint3d origin;
    AcGeVector3d right;  // along the baseline; its length stretches the letters
    AcGeVector3d up;     // where the letters' stems point; its length stretches their height
    double fontSize = 0.0;
    Anchor anchor = Anchor::start;
    std::vector<Line> lines;
};

struct Piece;

// A block that is inserted, once or in columns and rows.
struct Reference {
    bool hasBlock = true;  // without: its attributes are all there is
    database::ObjectNumber block = 0;
    AcGeMatrix3d place;
    AcGeVector3d columnStep, rowStep;
    int columns = 1;
    int rows = 1;
    std::vector<Piece> attributes;
};

// Nothing, for entities without a known look.
using Look = std::variant<std::monostate, Path, Lettering, Reference>;

struct Piece {
    database::ObjectNumber number = 0;
    const char* kind = "";  // "lwpolyline": the class of the element
    std::wstring layer;
    Ink ink;
    Pen pen;
    bool invisible = false;
    bool filled = false;   // of a path
    bool beneath = false;  // drawn below everything else
    Look look;
};

// The look of an entity; `rotation` (radians) stands for the rotation of a text or block reference,
// which is then without its attributes. Curves keep within `largestError` of what they are, as far
// as 256 pieces for a span allow. Coordinates that can't be read give a piece without a look.
Piece pieceOf(AcDbImpDatabase& database, database::ObjectNumber number, double largestError,
              std::optional<double> rotation = std::nullopt);

// What of a block is drawn where it is inserted: all but attribute definitions that are not
// constant.
std::vector<Piece> contentOf(AcDbImpDatabase& database, database::ObjectNumber block);

}  // namespace host::picture
