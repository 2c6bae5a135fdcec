// What each class of entities reads from its record, in every form that drawings come in.
#include <acutmem.h>
#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <dbspline.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/database/Drawing.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using host::database::className;
using host::database::idFromHandle;
using host::database::modelSpaceIds;
using host::test::DrawingText;

namespace {

constexpr double kPi = 3.14159265358979323846;

std::wstring taken(ACHAR* text) {
    std::wstring copy = text == nullptr ? L"(null)" : text;
    acutDelString(text);
    return copy;
}

// Reads entity 2F of the drawing from an ASCII file and from both binary forms.
template <class T>
void read(const std::string& record, const std::function<void(const T&)>& check) {
    const DrawingText text = DrawingText().entity(record);
    const auto look = [&](const std::unique_ptr<AcDbDatabase>& database) {
        T* entity = nullptr;
        ASSERT_EQ(acdbOpenObject(entity, idFromHandle(*database, L"2F")), Acad::eOk);
        EXPECT_EQ(entity->isA(), T::desc());
        check(*entity);
        EXPECT_EQ(entity->close(), Acad::eOk);
        EXPECT_TRUE(host::database::pendingChanges(*database).empty());
    };
    look(text.database());
    look(text.binaryDatabase(true));
    look(text.binaryDatabase(false));
}

std::wstring classOf(const std::string& record) {
    const auto database = DrawingText().entity(record).database();
    return className(idFromHandle(*database, L"2F"));
}

}  // namespace

TEST(Line, EndsAreInWorldCoordinatesWhateverTheNormal) {
    read<AcDbLine>("LINE|5 2F|8 roads|10 1.5|20 2.5|30 3.5|11 4|21 5|31 6|39 2|210 0|220 0|230 -1",
                   [](const AcDbLine& line) {
                       EXPECT_EQ(line.startPoint(), AcGePoint3d(1.5, 2.5, 3.5));
                       EXPECT_EQ(line.endPoint(), AcGePoint3d(4, 5, 6));
                       EXPECT_EQ(line.thickness(), 2.0);
                       EXPECT_EQ(line.normal(), AcGeVector3d(0, 0, -1));
                   });
}

TEST(Line, CoordinatesMayComeInAnyOrder) {
    read<AcDbLine>("LINE|5 2F|8 0|10 1|11 4|20 2|21 5|30 3|31 6", [](const AcDbLine& line) {
        EXPECT_EQ(line.startPoint(), AcGePoint3d(1, 2, 3));
        EXPECT_EQ(line.endPoint(), AcGePoint3d(4, 5, 6));
    });
}

TEST(Line, MissingCoordinatesAreZero) {
    read<AcDbLine>("LINE|5 2F|8 0|10 1|20 2|11 4|21 5", [](const AcDbLine& line) {
        EXPECT_EQ(line.startPoint(), AcGePoint3d(1, 2, 0));
        EXPECT_EQ(line.normal(), AcGeVector3d::kZAxis);
    });
}

TEST(Line, OldReleasesGiveOneElevationForBothEnds) {
    read<AcDbLine>("LINE|5 2F|8 0|38 7.5|10 1|20 2|11 4|21 5", [](const AcDbLine& line) {
        EXPECT_EQ(line.startPoint(), AcGePoint3d(1, 2, 7.5));
        EXPECT_EQ(line.endPoint(), AcGePoint3d(4, 5, 7.5));
    });
}

TEST(Entity, CommonFieldsAreRead) {
    read<AcDbLine>("LINE|5 2F|8 roads|6 DASHED|62 5|60 1|10 0|20 0|11 1|21 1",
                   [](const AcDbLine& line) {
                       EXPECT_EQ(taken(line.layer()), L"roads");
                       EXPECT_EQ(taken(line.linetype()), L"DASHED");
                       EXPECT_EQ(line.colorIndex(), 5);
                       EXPECT_EQ(line.visibility(), AcDb::kInvisible);
                   });
    read<AcDbLine>("LINE|5 2F|10 0|20 0|11 1|21 1", [](const AcDbLine& line) {
        EXPECT_EQ(taken(line.layer()), L"0");
        EXPECT_EQ(taken(line.linetype()), L"BYLAYER");
        EXPECT_EQ(line.colorIndex(), 256);
        EXPECT_EQ(line.visibility(), AcDb::kVisible);
        EXPECT_EQ(line.layerId(), line.database()->layerZero());
    });
}

TEST(Point, HasItsPositionInWorldCoordinates) {
    read<AcDbPoint>("POINT|5 2F|8 0|10 1|20 2|30 3|210 0|220 0|230 -1", [](const AcDbPoint& point) {
        EXPECT_EQ(point.position(), AcGePoint3d(1, 2, 3));
        EXPECT_EQ(point.normal(), AcGeVector3d(0, 0, -1));
    });
}

TEST(Circle, CentreIsTurnedOutOfItsPlane) {
    read<AcDbCircle>("CIRCLE|5 2F|8 0|10 1|20 2|30 3|40 4.5", [](const AcDbCircle& circle) {
        EXPECT_EQ(circle.center(), AcGePoint3d(1, 2, 3));
        EXPECT_EQ(circle.radius(), 4.5);
        EXPECT_TRUE(circle.isClosed());
        EXPECT_TRUE(circle.isPeriodic());
    });
    read<AcDbCircle>(
        "CIRCLE|5 2F|8 0|10 1|20 2|30 3|40 4.5|210 0|220 0|230 -1",
        [](const AcDbCircle& circle) { EXPECT_EQ(circle.center(), AcGePoint3d(-1, 2, -3)); });
}

TEST(Arc, AnglesAreRadians) {
    read<AcDbArc>("ARC|5 2F|8 0|10 1|20 2|30 0|40 2|50 270|51 90", [](const AcDbArc& arc) {
        EXPECT_EQ(arc.center(), AcGePoint3d(1, 2, 0));
        EXPECT_DOUBLE_EQ(arc.startAngle(), 1.5 * kPi);
        EXPECT_DOUBLE_EQ(arc.endAngle(), 0.5 * kPi);
        EXPECT_FALSE(arc.isClosed());
        double end = 0.0;
        EXPECT_EQ(arc.getEndParam(end), Acad::eOk);
        EXPECT_DOUBLE_EQ(end, 2.5 * kPi);
    });
}

TEST(Ellipse, AxesAreInWorldCoordinates) {
    read<AcDbEllipse>(
        "ELLIPSE|5 2F|8 0|10 1|20 2|30 3|11 0|21 4|31 0|210 0|220 0|230 1|40 0.5|41 0|42 "
        "6.28318530717958",
        [](const AcDbEllipse& ellipse) {
            EXPECT_EQ(ellipse.center(), AcGePoint3d(1, 2, 3));
            EXPECT_EQ(ellipse.majorAxis(), AcGeVector3d(0, 4, 0));
            EXPECT_EQ(ellipse.minorAxis(), AcGeVector3d(-2, 0, 0));
            EXPECT_EQ(ellipse.radiusRatio(), 0.5);
            EXPECT_TRUE(ellipse.isClosed());
        });
    read<AcDbEllipse>("ELLIPSE|5 2F|8 0|10 1|20 2|30 3|11 4|21 0|31 0|40 0.5|41 3|42 1",
                      [](const AcDbEllipse& ellipse) {
                          EXPECT_EQ(ellipse.startParam(), 3.0);
                          EXPECT_DOUBLE_EQ(ellipse.endParam(), 1.0 + 2 * kPi);
                          EXPECT_FALSE(ellipse.isClosed());
                      });
}

TEST(Ellipse, FullTurnRoundedUpOrDownIsAFullTurn) {
    for (const char* end :
         {"6.283185307179586", "6.28318530717959", "6.2831853071795", "6.2831853075"}) {
        const std::string record =
            "ELLIPSE|5 2F|8 0|10 0|20 0|11 4|21 0|40 0.5|41 0|42 " + std::string(end);
        read<AcDbEllipse>(record, [](const AcDbEllipse& ellipse) {
            EXPECT_TRUE(ellipse.isClosed());
            double param = 0.0;
            EXPECT_EQ(ellipse.getEndParam(param), Acad::eOk);
            EXPECT_NEAR(param, 2 * kPi, 1e-9);
        });
    }
}

TEST(Spline, ListsAreRead) {
    read<AcDbSpline>(
        "SPLINE|5 2F|8 0|70 12|71 2|72 6|73 3|74 2|40 0|40 0|40 0|40 1|40 1|40 1|41 1|41 0.7|41 "
        "1|10 0|20 0|30 0|10 1|20 1|30 0|10 2|20 0|30 5|11 7|21 8|31 9|11 1|21 1|31 1",
        [](const AcDbSpline& spline) {
            EXPECT_EQ(spline.degree(), 2);
            EXPECT_TRUE(spline.isRational());
            EXPECT_EQ(spline.numControlPoints(), 3);
            EXPECT_EQ(spline.numFitPoints(), 2);
            AcGePoint3d point;
            EXPECT_EQ(spline.getControlPointAt(2, point), Acad::eOk);
            EXPECT_EQ(point, AcGePoint3d(2, 0, 5));
            EXPECT_EQ(spline.getFitPointAt(0, point), Acad::eOk);
            EXPECT_EQ(point, AcGePoint3d(7, 8, 9));
            EXPECT_EQ(spline.getControlPointAt(3, point), Acad::eInvalidIndex);
            EXPECT_EQ(spline.getFitPointAt(-1, point), Acad::eInvalidIndex);
            EXPECT_EQ(point, AcGePoint3d(7, 8, 9));
            EXPECT_FALSE(spline.isClosed());
        });
}

TEST(Polyline, VerticesAreTurnedOutOfTheirPlane) {
    const std::string record =
        "LWPOLYLINE|5 2F|8 0|90 3|70 1|43 0.5|38 7|10 1|20 2|42 0.5|10 3|20 4|10 5|20 6";
    read<AcDbPolyline>(record, [](const AcDbPolyline& line) {
        EXPECT_EQ(line.numVerts(), 3U);
        EXPECT_TRUE(line.isClosed());
        EXPECT_TRUE(line.hasBulges());
        EXPECT_EQ(line.elevation(), 7.0);
        EXPECT_EQ(line.getConstantWidth(), 0.5);
        AcGePoint3d point;
        EXPECT_EQ(line.getPointAt(2, point), Acad::eOk);
        EXPECT_EQ(point, AcGePoint3d(5, 6, 7));
        AcGePoint2d own;
        EXPECT_EQ(line.getPointAt(1, own), Acad::eOk);
        EXPECT_EQ(own.y, 4.0);
        double bulge = 0.0;
        EXPECT_EQ(line.getBulgeAt(0, bulge), Acad::eOk);
        EXPECT_EQ(bulge, 0.5);
        EXPECT_EQ(line.getPointAt(3, point), Acad::eInvalidIndex);
        EXPECT_EQ(line.getPointAt(3, own), Acad::eInvalidIndex);
        EXPECT_EQ(line.getBulgeAt(3, bulge), Acad::eInvalidIndex);
        EXPECT_EQ(point, AcGePoint3d(5, 6, 7));
    });
    read<AcDbPolyline>(record + "|210 0|220 0|230 -1", [](const AcDbPolyline& line) {
        AcGePoint3d point;
        EXPECT_EQ(line.getPointAt(2, point), Acad::eOk);
        EXPECT_EQ(point, AcGePoint3d(-5, 6, -7));
    });
}

TEST(Polyline, BulgesThatAreZeroAreNone) {
    read<AcDbPolyline>("LWPOLYLINE|5 2F|8 0|90 2|70 0|10 1|20 2|42 0|10 3|20 4",
                       [](const AcDbPolyline& line) {
                           EXPECT_FALSE(line.hasBulges());
                           EXPECT_FALSE(line.isClosed());
                       });
}

TEST(Polyline, CountOfVerticesIsNotTrusted) {
    read<AcDbPolyline>("LWPOLYLINE|5 2F|8 0|90 2000000000|70 0|10 1|20 2",
                       [](const AcDbPolyline& line) { EXPECT_EQ(line.numVerts(), 1U); });
}

TEST(Text, FieldsAreRead) {
    read<AcDbText>(
        "TEXT|5 2F|8 0|39 1|10 1|20 2|30 3|40 2.5|1 Main road|50 90|41 0.8|51 15|7 ROMANS|71 6|72 "
        "1|11 4|21 5|31 "
        "6|73 2",
        [](const AcDbText& text) {
            EXPECT_EQ(text.position(), AcGePoint3d(1, 2, 3));
            EXPECT_EQ(text.alignmentPoint(), AcGePoint3d(4, 5, 6));
            EXPECT_EQ(text.height(), 2.5);
            EXPECT_EQ(taken(text.textString()), L"Main road");
            EXPECT_STREQ(text.textStringConst(), L"Main road");
            EXPECT_DOUBLE_EQ(text.rotation(), kPi / 2);
            EXPECT_EQ(text.widthFactor(), 0.8);
            EXPECT_DOUBLE_EQ(text.oblique(), kPi / 12);
            EXPECT_TRUE(text.isMirroredInX());
            EXPECT_TRUE(text.isMirroredInY());
            EXPECT_EQ(text.horizontalMode(), AcDb::kTextCenter);
            EXPECT_EQ(text.verticalMode(), AcDb::kTextVertMid);
            EXPECT_EQ(text.thickness(), 1.0);
            EXPECT_TRUE(text.textStyle().isNull());
        });
}

TEST(Text, DefaultsHoldWhereTheRecordIsSilent) {
    read<AcDbText>("TEXT|5 2F|8 0|10 1|20 2|40 2.5|1 a", [](const AcDbText& text) {
        EXPECT_EQ(text.rotation(), 0.0);
        EXPECT_EQ(text.widthFactor(), 1.0);
        EXPECT_EQ(text.horizontalMode(), AcDb::kTextLeft);
        EXPECT_EQ(text.verticalMode(), AcDb::kTextBase);
        EXPECT_EQ(text.alignmentPoint(), AcGePoint3d(1, 2, 0));
        EXPECT_FALSE(text.textStyle().isNull());
    });
}

TEST(Text, MirroredPlaneMirrorsPositionAndAlignmentPoint) {
    read<AcDbText>(
        "TEXT|5 2F|8 0|10 1|20 2|30 3|40 1|1 a|50 30|72 1|11 4|21 5|31 6|210 0|220 0|230 -1",
        [](const AcDbText& text) {
            EXPECT_EQ(text.position(), AcGePoint3d(-1, 2, -3));
            EXPECT_EQ(text.alignmentPoint(), AcGePoint3d(-4, 5, -6));
            EXPECT_DOUBLE_EQ(text.rotation(), kPi / 6);
        });
}

TEST(Text, LettersAreDecodedByTheCodePage) {
    const auto database = DrawingText("AC1015")
                              .variable("$DWGCODEPAGE|3 ANSI_1252")
                              .entity("TEXT|5 2F|8 0|10 1|20 2|40 1|1 \xC4yr\xE4s \\U+20AC")
                              .database();
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F")), Acad::eOk);
    EXPECT_STREQ(text->textStringConst(), L"\u00C4yr\u00E4s \u20AC");
    EXPECT_EQ(text->close(), Acad::eOk);
}

TEST(Attribute, IsAClassOfItsOwn) {
    read<AcDbAttribute>("ATTRIB|5 2F|8 0|10 1|20 2|40 1|1 12|2 NUMBER|70 3|74 3|72 2|11 5|21 6",
                        [](const AcDbAttribute& attribute) {
                            EXPECT_NE(attribute.isA(), AcDbText::desc());
                            EXPECT_TRUE(attribute.isKindOf(AcDbText::desc()));
                            EXPECT_EQ(taken(attribute.tag()), L"NUMBER");
                            EXPECT_STREQ(attribute.textStringConst(), L"12");
                            EXPECT_EQ(attribute.verticalMode(), AcDb::kTextTop);
                            EXPECT_TRUE(attribute.isInvisible());
                            EXPECT_TRUE(attribute.isConstant());
                        });
}

TEST(AttributeDefinition, IsAClassOfItsOwn) {
    read<AcDbAttributeDefinition>(
        "ATTDEF|5 2F|8 0|10 1|20 2|40 1|1 default|3 House number?|2 NUMBER|70 0|73 1|74 2",
        [](const AcDbAttributeDefinition& definition) {
            EXPECT_TRUE(definition.isKindOf(AcDbText::desc()));
            EXPECT_EQ(taken(definition.tag()), L"NUMBER");
            EXPECT_EQ(taken(definition.prompt()), L"House number?");
            EXPECT_EQ(definition.verticalMode(), AcDb::kTextVertMid);
            EXPECT_FALSE(definition.isInvisible());
            EXPECT_FALSE(definition.isConstant());
        });
}

TEST(MText, DirectionWinsOverTheAngle) {
    read<AcDbMText>(
        "MTEXT|5 2F|8 0|10 1|20 2|30 3|40 2|41 50|71 5|3 first |1 second|11 0|21 2|31 0|50 10",
        [](const AcDbMText& text) {
            EXPECT_EQ(text.location(), AcGePoint3d(1, 2, 3));
            EXPECT_EQ(taken(text.contents()), L"first second");
            EXPECT_EQ(text.direction(), AcGeVector3d(0, 1, 0));
            EXPECT_DOUBLE_EQ(text.rotation(), kPi / 2);
            EXPECT_EQ(text.textHeight(), 2.0);
            EXPECT_EQ(text.width(), 50.0);
            EXPECT_EQ(text.attachment(), 5);
        });
    read<AcDbMText>("MTEXT|5 2F|8 0|10 1|20 2|40 2|1 a|50 90", [](const AcDbMText& text) {
        EXPECT_DOUBLE_EQ(text.rotation(), kPi / 2);
        EXPECT_EQ(text.direction(), AcGeVector3d(0, 1, 0));
    });
}

TEST(MText, EmbeddedObjectIsNotItsOwn) {
    read<AcDbMText>(
        "MTEXT|5 2F|8 0|10 1|20 2|40 2|1 a|101 Embedded Object|70 1|10 0|20 1|11 9|21 9|40 7|1 b",
        [](const AcDbMText& text) {
            EXPECT_EQ(text.location(), AcGePoint3d(1, 2, 0));
            EXPECT_EQ(text.textHeight(), 2.0);
            EXPECT_EQ(taken(text.contents()), L"a");
        });
}

TEST(BlockReference, FieldsAreRead) {
    read<AcDbBlockReference>(
        "INSERT|5 2F|8 0|2 TREE|10 1|20 2|30 3|41 2|42 -1|43 0.5|50 45|210 0|220 0|230 -1",
        [](const AcDbBlockReference& reference) {
            EXPECT_EQ(reference.position(), AcGePoint3d(-1, 2, -3));
            EXPECT_EQ(reference.scaleFactors(), AcGeScale3d(2, -1, 0.5));
            EXPECT_DOUBLE_EQ(reference.rotation(), kPi / 4);
            EXPECT_EQ(reference.normal(), AcGeVector3d(0, 0, -1));
            EXPECT_TRUE(reference.blockTableRecord().isNull());
        });
}

TEST(BlockReference, RowsOrColumnsMakeAnArray) {
    read<AcDbMInsertBlock>("INSERT|5 2F|8 0|2 TREE|10 1|20 2|70 3|71 2|44 5|45 6",
                           [](const AcDbMInsertBlock& array) {
                               EXPECT_TRUE(array.isKindOf(AcDbBlockReference::desc()));
                               EXPECT_NE(array.isA(), AcDbBlockReference::desc());
                               EXPECT_EQ(array.columns(), 3);
                               EXPECT_EQ(array.rows(), 2);
                               EXPECT_EQ(array.columnSpacing(), 5.0);
                               EXPECT_EQ(array.rowSpacing(), 6.0);
                           });
    EXPECT_EQ(classOf("INSERT|5 2F|2 T|70 2"), L"AcDbMInsertBlock");
    EXPECT_EQ(classOf("INSERT|5 2F|2 T|71 2"), L"AcDbMInsertBlock");
    EXPECT_EQ(classOf("INSERT|5 2F|2 T|70 1|71 1"), L"AcDbBlockReference");
    EXPECT_EQ(classOf("INSERT|5 2F|2 T|70 0|71 0"), L"AcDbBlockReference");
    EXPECT_EQ(classOf("INSERT|5 2F|2 T|44 5|45 5"), L"AcDbBlockReference");
}

TEST(BlockReference, TransformTakesTheBasePointToThePosition) {
    const auto database = DrawingText()
                              .block("TREE", {"POINT|8 0|10 0|20 0"}, "70 0|10 5|20 6|30 0")
                              .entity("INSERT|5 2F|8 0|2 tree|10 100|20 200|41 2|42 3|50 90")
                              .database();
    AcDbBlockReference* reference = nullptr;
    ASSERT_EQ(acdbOpenObject(reference, idFromHandle(*database, L"2F")), Acad::eOk);
    EXPECT_FALSE(reference->blockTableRecord().isNull());
    const AcGeMatrix3d transform = reference->blockTransform();
    EXPECT_TRUE((transform * AcGePoint3d(5, 6, 0)).isEqualTo(AcGePoint3d(100, 200, 0)));
    EXPECT_TRUE((transform * AcGePoint3d(6, 6, 0)).isEqualTo(AcGePoint3d(100, 202, 0)));
    EXPECT_TRUE((transform * AcGePoint3d(5, 7, 0)).isEqualTo(AcGePoint3d(97, 200, 0)));
    EXPECT_EQ(reference->close(), Acad::eOk);
}

TEST(Face, CornersAreInWorldCoordinates) {
    read<AcDbFace>(
        "3DFACE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6|12 7|22 8|32 9|13 10|23 11|33 12|70 5",
        [](const AcDbFace& face) {
            AcGePoint3d point;
            EXPECT_EQ(face.getVertexAt(0, point), Acad::eOk);
            EXPECT_EQ(point, AcGePoint3d(1, 2, 3));
            EXPECT_EQ(face.getVertexAt(3, point), Acad::eOk);
            EXPECT_EQ(point, AcGePoint3d(10, 11, 12));
            EXPECT_EQ(face.getVertexAt(4, point), Acad::eInvalidIndex);
            bool visible = true;
            EXPECT_EQ(face.isEdgeVisibleAt(0, visible), Acad::eOk);
            EXPECT_FALSE(visible);
            EXPECT_EQ(face.isEdgeVisibleAt(1, visible), Acad::eOk);
            EXPECT_TRUE(visible);
            EXPECT_EQ(face.isEdgeVisibleAt(4, visible), Acad::eInvalidIndex);
        });
    read<AcDbFace>("3DFACE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6|12 7|22 8|32 9",
                   [](const AcDbFace& face) {
                       AcGePoint3d point;
                       EXPECT_EQ(face.getVertexAt(3, point), Acad::eOk);
                       EXPECT_EQ(point, AcGePoint3d(7, 8, 9));
                   });
}

TEST(Solid, CornersAreTurnedOutOfTheirPlane) {
    read<AcDbSolid>(
        "SOLID|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 3|12 7|22 8|32 3|210 0|220 0|230 -1",
        [](const AcDbSolid& solid) {
            AcGePoint3d point;
            EXPECT_EQ(solid.getPointAt(0, point), Acad::eOk);
            EXPECT_EQ(point, AcGePoint3d(-1, 2, -3));
            EXPECT_EQ(solid.getPointAt(3, point), Acad::eOk);
            EXPECT_EQ(point, AcGePoint3d(-7, 8, -3));
            EXPECT_EQ(solid.getPointAt(4, point), Acad::eInvalidIndex);
        });
    read<AcDbTrace>("TRACE|5 2F|8 0|10 1|20 2|11 4|21 5|12 7|22 8|13 0|23 0",
                    [](const AcDbTrace& trace) {
                        AcGePoint3d point;
                        EXPECT_EQ(trace.getPointAt(1, point), Acad::eOk);
                        EXPECT_EQ(point, AcGePoint3d(4, 5, 0));
                    });
}

TEST(Region, IsKnownAndKept) {
    read<AcDbRegion>("REGION|5 2F|8 0|70 1|1 nnnn", [](const AcDbRegion& region) {
        AcDbExtents box;
        EXPECT_EQ(region.getGeomExtents(box), Acad::eNullExtents);
    });
}

TEST(Kept, EntitiesAreKnownByTheirClass) {
    EXPECT_EQ(classOf("HATCH|5 2F|8 0|10 0|20 0|30 0|2 SOLID"), L"AcDbHatch");
    EXPECT_EQ(classOf("DIMENSION|5 2F|8 0|70 32"), L"AcDbRotatedDimension");
    EXPECT_EQ(classOf("DIMENSION|5 2F|8 0|70 33"), L"AcDbAlignedDimension");
    EXPECT_EQ(classOf("DIMENSION|5 2F|8 0|70 38"), L"AcDbOrdinateDimension");
    EXPECT_EQ(classOf("3DSOLID|5 2F|8 0"), L"AcDb3dSolid");
    EXPECT_EQ(classOf("XLINE|5 2F|8 0"), L"AcDbXline");
    EXPECT_EQ(classOf("MULTILEADER|5 2F|8 0"), L"AcDbMLeader");
    EXPECT_EQ(classOf("HELIX|5 2F|8 0"), L"AcDbHelix");
    EXPECT_EQ(classOf("ACAD_PROXY_ENTITY|5 2F|8 0"), L"AcDbProxyEntity");
    EXPECT_EQ(classOf("VIEWPORT|5 2F|8 0"), L"AcDbViewport");
}

TEST(Kept, UnknownTypeIsNamedByTheClassesSection) {
    const auto database = DrawingText()
                              .declare("CLASS|1 MYWALL|2 MyDbWall|3 MyApp|90 0|280 0|281 1")
                              .entity("MYWALL|5 2F|8 0|100 AcDbEntity|100 Other")
                              .database();
    EXPECT_EQ(className(idFromHandle(*database, L"2F")), L"MyDbWall");
    EXPECT_EQ(host::database::recordName(idFromHandle(*database, L"2F")), L"MYWALL");
}

TEST(Kept, UnknownTypeIsNamedByItsLastSubclassMarker) {
    EXPECT_EQ(classOf("MYWALL|5 2F|100 AcDbEntity|8 0|100 MyDbBase|100 MyDbWall2"), L"MyDbWall2");
}

TEST(Kept, UnknownTypeWithoutANameIsAProxy) {
    EXPECT_EQ(classOf("MYWALL|5 2F|8 0"), L"AcDbProxyEntity");
    EXPECT_EQ(classOf("MYWALL|5 2F|100 AcDbEntity|8 0"), L"AcDbProxyEntity");
}

// A drawing could otherwise pass anything off as a text.
TEST(Kept, UnknownTypeCannotBearTheNameOfAClassThatIsRead) {
    for (const char* name :
         {"AcDbText", "AcDbBlockReference", "AcDbLine", "AcDbCurve", "AcDbObject"}) {
        EXPECT_EQ(classOf("MYTEXT|5 2F|8 0|100 " + std::string(name)), L"AcDbProxyEntity");
    }
}

TEST(Kept, EntityOpensForReadAndWriteAndHasItsLayer) {
    const auto database = DrawingText().entity("MYWALL|5 2F|8 walls|62 3").database();
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, idFromHandle(*database, L"2F"), AcDb::kForWrite),
              Acad::eOk);
    EXPECT_EQ(taken(entity->layer()), L"walls");
    EXPECT_EQ(entity->colorIndex(), 3);
    EXPECT_FALSE(entity->isKindOf(AcDbCurve::desc()));
    EXPECT_EQ(entity->close(), Acad::eOk);
}

TEST(Releases, DrawingsWithoutHandlesHaveIdsAllTheSame) {
    const auto database = DrawingText("AC1009")
                              .entity("LINE|8 0|10 1|20 2|11 3|21 4")
                              .entity("TEXT|8 0|10 1|20 2|40 1|1 a")
                              .database();
    const auto ids = modelSpaceIds(*database);
    ASSERT_EQ(ids.size(), 2U);
    EXPECT_NE(ids[0], ids[1]);
    EXPECT_TRUE(ids[0].handle().isNull());
    EXPECT_EQ(host::database::handleText(ids[0]), L"");
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, ids[1], AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(text->setRotation(kPi), Acad::eOk);
    EXPECT_EQ(text->close(), Acad::eOk);
    EXPECT_NE(host::test::savedBytes(*database).find(" 50\n180\n"), std::string::npos);
}

TEST(Releases, OfDuplicateHandlesTheFirstCounts) {
    const auto database =
        DrawingText().entity("LINE|5 2F|8 0").entity("TEXT|5 2F|8 0|40 1|1 a").database();
    EXPECT_EQ(className(idFromHandle(*database, L"2F")), L"AcDbLine");
    EXPECT_EQ(modelSpaceIds(*database).size(), 2U);
}

TEST(Releases, NumbersThatAreNoneAreToldWithTheirPlace) {
    for (const char* value : {"NaN", "1,5", "", "1e999", "abc", "-nan(ind)"}) {
        const auto database =
            DrawingText().entity("TEXT|5 2F|8 0|10 1|20 " + std::string(value)).database();
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, idFromHandle(*database, L"2F"), AcDb::kForRead),
                  Acad::eInvalidInput)
            << value;
        EXPECT_NE(host::database::unreadableReason(idFromHandle(*database, L"2F")), L"");
        EXPECT_EQ(host::test::savedBytes(*database), host::database::document(*database).bytes());
    }
}

TEST(Releases, BadVertexKeepsItsPolylineFromOpening) {
    const auto database =
        DrawingText().entity("LWPOLYLINE|5 2F|8 0|90 2|10 1|20 2|10 3|20 nan").database();
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, idFromHandle(*database, L"2F"), AcDb::kForRead),
              Acad::eInvalidInput);
}
