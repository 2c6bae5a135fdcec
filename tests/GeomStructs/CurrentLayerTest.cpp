// Whatever is written to the drawing, and whatever call of it fails, the current layer is the one
// of before.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "GeomEnts/Arc.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"
#include "tests/GeomStructs/PolyArrayShapes.h"

namespace TamLib {
namespace {

const Points kSquare = {{0, 0, 5}, {4, 0, 5}, {4, 4, 5}, {0, 4, 5}, {0, 0, 5}};
const Points kTriangle = {{2, 2, 5}, {6, 2, 5}, {6, 6, 5}};

using Output = std::function<int(const wchar_t* layer)>;

std::map<std::string, Output> Outputs() {
    const auto array = [] { return MakeArray({kSquare, kTriangle}); };
    const auto line = [](const Points& points) { return PolyLine(*MakeArray({points})[0]); };
    std::map<std::string, Output> outputs;
    outputs["point"] = [](const wchar_t* layer) {
        return Point3d(1, 2, 3).ToDb(1, layer, nullptr, nullptr);
    };
    outputs["line"] = [](const wchar_t* layer) {
        return Line({1, 2, 3}, {4, 5, 6}).ToDb(1, layer, nullptr, nullptr);
    };
    outputs["circle"] = [](const wchar_t* layer) {
        return Circle({1, 2, 3}, 2.5).ToDb(1, layer, nullptr, nullptr);
    };
    outputs["arc"] = [](const wchar_t* layer) {
        return Arc(1.0, Line({-3, 4, 7}, {3, 4, 9})).ToDb(1, layer, nullptr, nullptr);
    };
    for (const int kind : {1, 2, 3}) {
        outputs["polyline of kind " + std::to_string(kind)] = [=](const wchar_t* layer) {
            return line(kSquare).ToDb(1, layer, nullptr, nullptr, kind);
        };
        outputs["array of kind " + std::to_string(kind)] = [=](const wchar_t* layer) {
            return array().Draw(1, layer, nullptr, nullptr, kind);
        };
    }
    outputs["face"] = [=](const wchar_t* layer) {
        return line(kTriangle).ToFace(1, layer, nullptr, nullptr);
    };
    outputs["multi-line"] = [=](const wchar_t* layer) {
        return line(kSquare).ToMline(1, 1.0, 0, layer, nullptr, nullptr, AcGeVector3d::kZAxis);
    };
    outputs["labels"] = [=](const wchar_t* layer) {
        return line(kTriangle).LabelXY(1, layer, nullptr, nullptr);
    };
    outputs["region"] = [=](const wchar_t* layer) {
        Array<AcDbObjectId> curves;
        array().Draw(1, layer, &curves, nullptr, 3);
        return PolyLine::ToRegion(curves, 1, layer, nullptr, nullptr);
    };
    outputs["closed array"] = [=](const wchar_t* layer) {
        return array().DrawClosed(1, layer, nullptr, nullptr, 3);
    };
    outputs["points of an array"] = [=](const wchar_t* layer) {
        return array().DrawAsPoints(1, layer, nullptr, nullptr);
    };
    outputs["regions of an array"] = [=](const wchar_t* layer) {
        return array().MakeRegions(1, layer, true, nullptr, nullptr);
    };
    return outputs;
}

AcDbObjectId LayerNamed(AcDbDatabase& database, const wchar_t* name) {
    AcDbLayerTable* table = nullptr;
    EXPECT_EQ(Acad::eOk, database.getSymbolTable(table, AcDb::kForRead));
    AcDbObjectId id;
    EXPECT_EQ(Acad::eOk, table->getAt(name, id));
    table->close();
    return id;
}

class CurrentLayer : public ::testing::Test {
  protected:
    void SetUp() override { host_.variable(L"VIEWSIZE", 240.0); }

    static int Run(const Output& output, const wchar_t* layer) {
        try {
            return output(layer);
        } catch (const TamExpBase&) {
            return -1;
        }
    }

    host::editor::Scripted host_;
};

TEST_F(CurrentLayer, IsThatOfBeforeAfterEachOutput) {
    for (const auto& [name, output] : Outputs()) {
        // A layer of its own, one that is there, and the current one.
        for (const wchar_t* const layer : {L"new", L"0", L"LOCKED", L""}) {
            const TestDrawing drawing{};
            AcDbDatabase& database = drawing.Database();
            const AcDbObjectId current = LayerNamed(database, L"LOCKED");
            ASSERT_EQ(Acad::eOk, database.setClayer(current));
            const int status = Run(output, *layer != 0 ? layer : nullptr);
            EXPECT_EQ(current, database.clayer()) << name;
            if (status == 0) {
                EXPECT_FALSE(Entities(drawing).empty()) << name;
            }
        }
    }
}

TEST_F(CurrentLayer, IsThatOfBeforeWhicheverCallFails) {
    for (const auto& [name, output] : Outputs()) {
        for (std::size_t n = 1, fired = 1; fired != 0; ++n) {
            const TestDrawing drawing{};
            AcDbDatabase& database = drawing.Database();
            const AcDbObjectId current = LayerNamed(database, L"LOCKED");
            ASSERT_EQ(Acad::eOk, database.setClayer(current));
            host::fault::arm(n, Acad::eOutOfDisk);
            Run(output, L"new");
            fired = host::fault::fired() ? 1 : 0;
            host::fault::disarm();
            host::database::Ledger::instance().forget();  // a refused close leaves one open
            ASSERT_EQ(current, database.clayer()) << name << ", call " << n;
        }
    }
}

}  // namespace
}  // namespace TamLib
