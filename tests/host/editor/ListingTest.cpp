#include "host/editor/Listing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"

namespace {

using namespace host::editor;
using host::test::DrawingText;
using host::test::Harness;
using Lines = std::vector<std::string>;

// What LIST shows of the entity "A" below its heading, indentation reduced by the first step.
Lines listed(const DrawingText& drawing, const std::wstring& handle = L"A") {
    Harness harness(drawing, {L"LIST", L"(handent \"" + handle + L"\")", L""});
    Session::HostCommand list;
    list.name = L"LIST";
    list.run = listEntities;
    harness.session().addHostCommand(list);
    Lines details;
    bool below = false;
    for (const std::wstring& line : split(harness.run(), L'\n')) {
        if (below) details.push_back(toUtf8(line.substr(4)));
        below = below || line.find(L" " + handle + L", layer \"0\"") != std::wstring::npos;
    }
    return details;
}

Lines listed(const std::string& record) {
    return listed(DrawingText().entity(record));
}

TEST(Listing, ALineHasItsLengthAndDirection) {
    EXPECT_EQ(listed("LINE|5 A|8 0|39 2.0|10 1.0|20 1.0|30 0.0|11 4.0|21 5.0|31 12.0"),
              (Lines{"from point, X=1.0000  Y=1.0000  Z=0.0000",
                     "to point, X=4.0000  Y=5.0000  Z=12.0000", "length 13.0000",
                     "angle in XY plane 53.1301", "delta, X=3.0000  Y=4.0000  Z=12.0000",
                     "thickness 2.0000"}));
}

TEST(Listing, ACircleInAnotherPlaneIsToldInTheWorld) {
    EXPECT_EQ(listed("CIRCLE|5 A|8 0|10 1.0|20 2.0|30 3.0|40 2.0|210 0.0|220 0.0|230 -1.0"),
              (Lines{"center point, X=-1.0000  Y=2.0000  Z=-3.0000", "radius 2.0000",
                     "extrusion direction, X=0.0000  Y=0.0000  Z=-1.0000", "length 12.5664",
                     "area 12.5664"}));
}

TEST(Listing, AnEllipseHasItsAxes) {
    EXPECT_EQ(listed("ELLIPSE|5 A|8 0|10 1.0|20 2.0|30 0.0|11 4.0|21 0.0|31 0.0|40 0.5|41 0.0|"
                     "42 6.283185307179586"),
              (Lines{"center point, X=1.0000  Y=2.0000  Z=0.0000",
                     "major axis, X=4.0000  Y=0.0000  Z=0.0000",
                     "minor axis, X=0.0000  Y=2.0000  Z=0.0000", "radius ratio 0.5000",
                     "length 19.3769", "area 25.1327"}));
    EXPECT_EQ(listed("ELLIPSE|5 A|8 0|10 0.0|20 0.0|30 0.0|11 4.0|21 0.0|31 0.0|40 1.0|41 0.0|"
                     "42 1.570796326794896"),
              (Lines{"center point, X=0.0000  Y=0.0000  Z=0.0000",
                     "major axis, X=4.0000  Y=0.0000  Z=0.0000",
                     "minor axis, X=0.0000  Y=4.0000  Z=0.0000", "radius ratio 1.0000",
                     "start angle 0.0000", "end angle 90.0000", "length 6.2832"}));
}

TEST(Listing, ALightPolylineHasBulgesAndWidths) {
    EXPECT_EQ(listed("LWPOLYLINE|5 A|8 0|90 3|70 1|38 5.0|10 0.0|20 0.0|42 1.0|10 4.0|20 0.0|"
                     "40 0.5|41 0.25|10 4.0|20 3.0"),
              (Lines{"closed", "length 14.2832", "area 12.2832",
                     "at point, X=0.0000  Y=0.0000  Z=5.0000", "    bulge 1.0000",
                     "    center point, X=2.0000  Y=0.0000  Z=5.0000", "    radius 2.0000",
                     "at point, X=4.0000  Y=0.0000  Z=5.0000", "    starting width 0.5000",
                     "    ending width 0.2500", "at point, X=4.0000  Y=3.0000  Z=5.0000"}));
    EXPECT_EQ(listed("LWPOLYLINE|5 A|8 0|90 2|70 0|43 0.3|10 0.0|20 0.0|10 1.0|20 0.0|42 1.0"),
              (Lines{"open", "length 1.0000", "constant width 0.3000",
                     "at point, X=0.0000  Y=0.0000  Z=0.0000",
                     "at point, X=1.0000  Y=0.0000  Z=0.0000", "    bulge 1.0000"}));
}

TEST(Listing, APlanePolylineListsItsVertices) {
    DrawingText drawing;
    drawing.entity("POLYLINE|5 A|8 0|66 1|70 1|10 0.0|20 0.0|30 7.0|210 0.0|220 0.0|230 -1.0");
    drawing.entity("VERTEX|5 B|8 0|10 0.0|20 0.0|30 0.0");
    drawing.entity("VERTEX|5 C|8 0|10 2.0|20 0.0|30 0.0|40 1.0|41 2.0|42 -1.0");
    drawing.entity("VERTEX|5 D|8 0|10 2.0|20 2.0|30 0.0");
    drawing.entity("SEQEND|5 E|8 0");
    EXPECT_EQ(listed(drawing),
              (Lines{"closed", "length 7.9700", "area 0.4292",
                     "extrusion direction, X=0.0000  Y=0.0000  Z=-1.0000",
                     "at point, X=0.0000  Y=0.0000  Z=-7.0000",
                     "at point, X=-2.0000  Y=0.0000  Z=-7.0000", "    bulge -1.0000",
                     "    center point, X=-2.0000  Y=1.0000  Z=-7.0000", "    radius 1.0000",
                     "    starting width 1.0000", "    ending width 2.0000",
                     "at point, X=-2.0000  Y=2.0000  Z=-7.0000"}));
}

TEST(Listing, ASplinedPolylineTellsItsControlPointsApart) {
    DrawingText drawing;
    drawing.entity("POLYLINE|5 A|8 0|66 1|70 4|75 5");
    drawing.entity("VERTEX|5 B|8 0|10 0.0|20 0.0|30 0.0|70 8");
    drawing.entity("VERTEX|5 C|8 0|10 1.0|20 9.0|30 0.0|70 16");
    drawing.entity("VERTEX|5 D|8 0|10 2.0|20 0.0|30 0.0|70 8");
    drawing.entity("SEQEND|5 E|8 0");
    EXPECT_EQ(listed(drawing), (Lines{"quadratic B-spline", "open", "length 2.0000",
                                      "spline point, X=0.0000  Y=0.0000  Z=0.0000",
                                      "control point, X=1.0000  Y=9.0000  Z=0.0000",
                                      "spline point, X=2.0000  Y=0.0000  Z=0.0000"}));
}

TEST(Listing, AClosedPolylineInSpaceHasAnAreaWhenItIsPlane) {
    const auto ring = [](const std::string& last) {
        DrawingText drawing;
        drawing.entity("POLYLINE|5 A|8 0|66 1|70 9");
        drawing.entity("VERTEX|5 B|8 0|10 0.0|20 0.0|30 0.0|70 32");
        drawing.entity("VERTEX|5 C|8 0|10 3.0|20 0.0|30 0.0|70 32");
        drawing.entity("VERTEX|5 D|8 0|10 3.0|20 0.0|30 4.0|70 32");
        drawing.entity("VERTEX|5 F|8 0|70 32|" + last);
        drawing.entity("SEQEND|5 E|8 0");
        return listed(drawing);
    };
    EXPECT_EQ(
        ring("10 0.0|20 0.0|30 4.0"),
        (Lines{"closed", "length 14.0000", "area 12.0000", "at point, X=0.0000  Y=0.0000  Z=0.0000",
               "at point, X=3.0000  Y=0.0000  Z=0.0000", "at point, X=3.0000  Y=0.0000  Z=4.0000",
               "at point, X=0.0000  Y=0.0000  Z=4.0000"}));
    EXPECT_EQ(ring("10 0.0|20 1.0|30 4.0")[2], "at point, X=0.0000  Y=0.0000  Z=0.0000");
}

TEST(Listing, MeshesListVerticesAndFaces) {
    DrawingText mesh;
    mesh.entity("POLYLINE|5 A|8 0|66 1|70 17|71 2|72 2|75 6");
    mesh.entity("VERTEX|5 B|8 0|10 0.0|20 0.0|30 0.0|70 64");
    mesh.entity("VERTEX|5 C|8 0|10 1.0|20 0.0|30 0.0|70 64");
    mesh.entity("VERTEX|5 D|8 0|10 0.0|20 1.0|30 0.0|70 64");
    mesh.entity("VERTEX|5 F|8 0|10 1.0|20 1.0|30 2.0|70 64");
    mesh.entity("SEQEND|5 E|8 0");
    EXPECT_EQ(listed(mesh), (Lines{"2 x 2 mesh", "closed in M, open in N", "cubic B-spline surface",
                                   "at point, X=0.0000  Y=0.0000  Z=0.0000",
                                   "at point, X=1.0000  Y=0.0000  Z=0.0000",
                                   "at point, X=0.0000  Y=1.0000  Z=0.0000",
                                   "at point, X=1.0000  Y=1.0000  Z=2.0000"}));
    DrawingText faces;
    faces.entity("POLYLINE|5 A|8 0|66 1|70 64|71 3|72 1");
    faces.entity("VERTEX|5 B|8 0|10 0.0|20 0.0|30 0.0|70 192");
    faces.entity("VERTEX|5 C|8 0|10 1.0|20 0.0|30 0.0|70 192");
    faces.entity("VERTEX|5 D|8 0|10 0.0|20 1.0|30 0.0|70 192");
    faces.entity("VERTEX|5 F|8 0|10 0.0|20 0.0|30 0.0|70 128|71 1|72 -2|73 3");
    faces.entity("SEQEND|5 E|8 0");
    EXPECT_EQ(listed(faces),
              (Lines{"vertices 3", "faces 1", "at point, X=0.0000  Y=0.0000  Z=0.0000",
                     "at point, X=1.0000  Y=0.0000  Z=0.0000",
                     "at point, X=0.0000  Y=1.0000  Z=0.0000", "face 1 -2 3"}));
}

TEST(Listing, ASplineHasControlPointsWeightsAndKnots) {
    EXPECT_EQ(listed("SPLINE|5 A|8 0|70 4|71 1|72 4|73 2|74 0|40 0.0|40 0.0|40 1.0|40 1.0|"
                     "41 1.0|41 2.0|10 0.0|20 0.0|30 0.0|10 3.0|20 4.0|30 0.0"),
              (Lines{"degree 1", "rational, non-periodic", "open", "length 5.0000",
                     "control points 2", "control point, X=0.0000  Y=0.0000  Z=0.0000",
                     "    weight 1.0000", "control point, X=3.0000  Y=4.0000  Z=0.0000",
                     "    weight 2.0000", "knots 0.0000 0.0000 1.0000 1.0000"}));
    EXPECT_EQ(
        listed("SPLINE|5 A|8 0|70 0|71 3|72 0|73 0|74 2|12 1.0|22 0.0|32 0.0|11 0.0|21 0.0|"
               "31 0.0|11 2.0|21 0.0|31 0.0"),
        (Lines{"degree 3", "non-rational, non-periodic", "open", "length 2.0000", "fit points 2",
               "fit point, X=0.0000  Y=0.0000  Z=0.0000", "fit point, X=2.0000  Y=0.0000  Z=0.0000",
               "start tangent, X=1.0000  Y=0.0000  Z=0.0000"}));
}

TEST(Listing, LinesWithoutEndsAndLeaders) {
    EXPECT_EQ(listed("XLINE|5 A|8 0|100 AcDbXline|10 1.0|20 2.0|30 3.0|11 0.0|21 -1.0|31 0.0"),
              (Lines{"base point, X=1.0000  Y=2.0000  Z=3.0000",
                     "direction, X=0.0000  Y=-1.0000  Z=0.0000", "angle in XY plane 270.0000"}));
    EXPECT_EQ(listed("LEADER|5 A|8 0|3 SMALL|71 0|72 0|76 2|10 0.0|20 0.0|30 0.0|10 3.0|20 4.0|"
                     "30 0.0"),
              (Lines{"without an arrowhead", "straight segments", "dimension style \"SMALL\"",
                     "length 5.0000", "at point, X=0.0000  Y=0.0000  Z=0.0000",
                     "at point, X=3.0000  Y=4.0000  Z=0.0000"}));
}

TEST(Listing, AMultiLine) {
    EXPECT_EQ(listed("MLINE|5 A|8 0|2 WALLS|40 20.0|70 1|71 3|72 2|73 2|10 0.0|20 0.0|30 0.0|"
                     "210 0.0|220 0.0|230 1.0|11 0.0|21 0.0|31 0.0|12 1.0|22 0.0|32 0.0|13 0.0|"
                     "23 1.0|33 0.0|74 0|75 0|11 5.0|21 0.0|31 0.0|12 1.0|22 0.0|32 0.0|13 0.0|"
                     "23 1.0|33 0.0|74 0|75 0"),
              (Lines{"style \"WALLS\"", "justification zero", "scale 20.0000", "closed",
                     "at point, X=0.0000  Y=0.0000  Z=0.0000",
                     "at point, X=5.0000  Y=0.0000  Z=0.0000"}));
}

TEST(Listing, FacesAndFilledFigures) {
    const std::string corners =
        "10 0.0|20 0.0|30 0.0|11 1.0|21 0.0|31 0.0|12 1.0|22 1.0|32 0.0|13 0.0|23 1.0|33 0.0";
    EXPECT_EQ(listed("3DFACE|5 A|8 0|70 2|" + corners),
              (Lines{"first point, X=0.0000  Y=0.0000  Z=0.0000",
                     "second point, X=1.0000  Y=0.0000  Z=0.0000", "    edge hidden",
                     "third point, X=1.0000  Y=1.0000  Z=0.0000",
                     "fourth point, X=0.0000  Y=1.0000  Z=0.0000"}));
    for (const std::string type : {"SOLID", "TRACE"}) {
        EXPECT_EQ(listed(type + "|5 A|8 0|39 1.5|" + corners),
                  (Lines{"first point, X=0.0000  Y=0.0000  Z=0.0000",
                         "second point, X=1.0000  Y=0.0000  Z=0.0000",
                         "third point, X=1.0000  Y=1.0000  Z=0.0000",
                         "fourth point, X=0.0000  Y=1.0000  Z=0.0000", "thickness 1.5000"}));
    }
}

TEST(Listing, ABodyOfADrawingKeepsToItself) {
    for (const std::string type : {"REGION", "3DSOLID"}) {
        EXPECT_EQ(listed(type + "|5 A|8 0|70 1|1 something"),
                  Lines{"its body is kept as it stands in the drawing"});
    }
}

TEST(Listing, DimensionsTellTheirDefiningPoints) {
    EXPECT_EQ(
        listed("DIMENSION|5 A|8 0|2 *D1|3 SMALL|1 <> m|70 32|10 0.0|20 5.0|30 0.0|11 2.0|"
               "21 5.0|31 0.0|13 0.0|23 0.0|33 0.0|14 4.0|24 0.0|34 0.0|42 4.0|50 0.0"),
        (Lines{"linear dimension", "first extension line origin, X=0.0000  Y=0.0000  Z=0.0000",
               "second extension line origin, X=4.0000  Y=0.0000  Z=0.0000",
               "dimension line point, X=0.0000  Y=5.0000  Z=0.0000", "dimension line angle 0.0000",
               "text position, X=2.0000  Y=5.0000  Z=0.0000", "text \"<> m\"", "measurement 4.0000",
               "dimension style \"SMALL\"", "drawn by block \"*D1\""}));
    EXPECT_EQ(
        listed("DIMENSION|5 A|8 0|70 2|10 0.0|20 5.0|30 0.0|13 0.0|23 0.0|33 0.0|14 4.0|"
               "24 0.0|34 0.0|15 0.0|25 1.0|35 0.0|16 1.0|26 1.0|36 0.0|42 1.5707963267948966|"
               "210 0.0|220 0.0|230 -1.0"),
        (Lines{"angular dimension", "first line from, X=0.0000  Y=0.0000  Z=0.0000",
               "first line to, X=4.0000  Y=0.0000  Z=0.0000",
               "second line from, X=0.0000  Y=1.0000  Z=0.0000",
               "second line to, X=0.0000  Y=5.0000  Z=0.0000",
               "arc point, X=-1.0000  Y=1.0000  Z=0.0000", "measurement 90.0000",
               "dimension style \"STANDARD\""}));
    EXPECT_EQ(listed("DIMENSION|5 A|8 0|70 70|10 0.0|20 0.0|30 0.0")[0], "ordinate X dimension");
    EXPECT_EQ(listed("DIMENSION|5 A|8 0|70 6|10 0.0|20 0.0|30 0.0")[0], "ordinate Y dimension");
}

TEST(Listing, AHatchHasItsPattern) {
    const std::string boundary =
        "91 1|92 7|72 0|73 1|93 3|10 0.0|20 0.0|10 1.0|20 0.0|10 1.0|20 1.0|97 0|75 1|76 1|";
    EXPECT_EQ(
        listed("HATCH|5 A|8 0|10 0.0|20 0.0|30 2.0|210 0.0|220 0.0|230 1.0|2 ANSI31|70 0|71 1|" +
               boundary + "52 45.0|41 3.0|77 1|78 0|98 0"),
        (Lines{"pattern \"ANSI31\"", "associative", "style outer", "scale 3.0000", "angle 45.0000",
               "double", "boundaries 1", "elevation 2.0000"}));
    EXPECT_EQ(
        listed("HATCH|5 A|8 0|10 0.0|20 0.0|30 0.0|210 0.0|220 0.0|230 1.0|2 SOLID|70 1|71 0|" +
               boundary + "98 0"),
        (Lines{"pattern \"SOLID\"", "solid fill", "not associative", "style outer", "boundaries 1",
               "elevation 0.0000"}));
}

TEST(Listing, SmallNotes) {
    EXPECT_EQ(listed("TOLERANCE|5 A|8 0|3 SMALL|10 1.0|20 2.0|30 0.0|1 {x}|11 1.0|21 0.0|31 0.0"),
              (Lines{"text \"{x}\"", "at point, X=1.0000  Y=2.0000  Z=0.0000",
                     "direction, X=1.0000  Y=0.0000  Z=0.0000", "dimension style \"SMALL\""}));
    EXPECT_EQ(listed("SHAPE|5 A|8 0|10 1.0|20 2.0|30 0.0|40 3.0|2 BOX|50 90.0"),
              (Lines{"shape \"BOX\"", "at point, X=1.0000  Y=2.0000  Z=0.0000", "size 3.0000",
                     "rotation angle 90.0000", "width factor 1.0000", "obliquing angle 0.0000"}));
    EXPECT_EQ(listed("IMAGE|5 A|8 0|10 1.0|20 2.0|30 0.0|11 0.0|21 0.5|31 0.0|12 -0.5|22 0.0|"
                     "32 0.0|13 640.0|23 480.0"),
              (Lines{"insertion point, X=1.0000  Y=2.0000  Z=0.0000", "width 320.0000",
                     "height 240.0000", "rotation angle 90.0000"}));
    EXPECT_EQ(listed("PDFUNDERLAY|5 A|8 0|10 1.0|20 2.0|30 0.0|41 2.0|42 2.0|43 2.0|50 30.0"),
              (Lines{"insertion point, X=1.0000  Y=2.0000  Z=0.0000", "X scale factor 2.0000",
                     "Y scale factor 2.0000", "Z scale factor 2.0000", "rotation angle 30.0000"}));
    EXPECT_EQ(listed("VIEWPORT|5 A|8 0|10 5.0|20 5.0|30 0.0|40 8.0|41 6.0|68 1|69 2|12 100.0|"
                     "22 50.0|45 60.0"),
              (Lines{"center point, X=5.0000  Y=5.0000  Z=0.0000", "width 8.0000", "height 6.0000",
                     "number 2", "on", "view center, X=100.0000  Y=50.0000  Z=0.0000",
                     "view height 60.0000", "scale relative to paper space 0.1000"}));
}

TEST(Listing, TextsAndReferencesTellWhatIsUnusual) {
    EXPECT_EQ(
        listed("TEXT|5 A|8 0|10 1.0|20 2.0|30 0.0|40 2.5|1 a|51 15.0|71 6|39 1.0"),
        (Lines{"text \"a\"", "style \"STANDARD\"", "start point, X=1.0000  Y=2.0000  Z=0.0000",
               "height 2.5000", "rotation angle 0.0000", "width factor 1.0000",
               "obliquing angle 15.0000", "backward", "upside down", "thickness 1.0000"}));
    EXPECT_EQ(listed("ATTDEF|5 A|8 0|10 1.0|20 2.0|30 0.0|40 2.5|1 a|2 NR|3 Number?|70 3"),
              (Lines{"tag \"NR\"", "invisible", "constant", "prompt \"Number?\"", "text \"a\"",
                     "style \"STANDARD\"", "start point, X=1.0000  Y=2.0000  Z=0.0000",
                     "height 2.5000", "rotation angle 0.0000", "width factor 1.0000"}));
    EXPECT_EQ(listed("MTEXT|5 A|8 0|10 1.0|20 2.0|30 0.0|40 2.5|41 20.0|71 5|1 a\\Pb"),
              (Lines{"text \"a\\Pb\"", "style \"STANDARD\"",
                     "location, X=1.0000  Y=2.0000  Z=0.0000", "height 2.5000", "width 20.0000",
                     "rotation angle 0.0000", "attachment middle center"}));
    DrawingText house;
    house.block("HOUSE", {});
    house.entity("INSERT|5 A|8 0|2 HOUSE|66 1|10 1.0|20 2.0|30 0.0|70 3|71 2|44 5.0|45 6.0");
    house.entity("ATTRIB|5 B|8 0|10 1.0|20 2.0|30 0.0|40 1.0|1 12|2 NR|70 0");
    house.entity("SEQEND|5 C|8 0");
    EXPECT_EQ(listed(house),
              (Lines{"block name \"HOUSE\"", "at point, X=1.0000  Y=2.0000  Z=0.0000",
                     "X scale factor 1.0000", "Y scale factor 1.0000", "Z scale factor 1.0000",
                     "rotation angle 0.0000", "columns 3", "rows 2", "column spacing 5.0000",
                     "row spacing 6.0000", "attribute \"NR\" \"12\""}));
}

TEST(Listing, WhatIsOnlyKeptIsToldWithItsOwner) {
    EXPECT_EQ(listed("MULTILEADER|5 A|8 0|10 1.0|20 2.0|30 0.0"),
              (Lines{"class AcDbMLeader", "owner  \"*Model_Space\"",
                     "kept as it stands in the drawing"}));
}

TEST(Listing, WhatRoundsToNothingHasNoSign) {
    EXPECT_EQ(listed("POINT|5 A|8 0|10 -0.00001|20 -0.00006|30 0.0"),
              Lines{"at point, X=0.0000  Y=-0.0001  Z=0.0000"});
}

TEST(Listing, StopsBetweenTwoLines) {
    DrawingText drawing;
    drawing.entity("POINT|5 A|8 0|10 1.0|20 2.0|30 0.0");
    Harness harness(drawing, {L"LIST", L"(handent \"A\")", L""}, Harness::By::person);
    Session::HostCommand list;
    list.name = L"LIST";
    list.run = listEntities;
    harness.session().addHostCommand(list);
    harness.output().onPrint = [&](std::wstring_view text) {
        if (text.find(L"POINT A") != std::wstring_view::npos) harness.session().interrupt();
    };
    const std::wstring shown = harness.run();
    EXPECT_NE(shown.find(L"POINT A, layer \"0\"\n*Cancel*"), std::wstring::npos) << toUtf8(shown);
    EXPECT_EQ(shown.find(L"at point"), std::wstring::npos);
}

}  // namespace
