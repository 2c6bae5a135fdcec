// Block references taken apart: rows and columns, what stays round, blocks within themselves, and
// blocks that hold each other over and over. The plain way, one block after the other, is the
// oracle of what results.
#include <dbents.h>
#include <dbpl.h>
#include <dbptrar.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "host/database/Drawing.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

namespace {

using host::test::DrawingText;

constexpr std::uint64_t kReference = 0x50;

// A reference taken apart.
struct Exploded {
    Acad::ErrorStatus status = Acad::eOk;
    std::vector<std::unique_ptr<AcDbEntity>> parts;
};

Exploded explode(AcDbDatabase& database) {
    AcDbObjectId id;
    EXPECT_EQ(Acad::eOk, database.getAcDbObjectId(id, false, AcDbHandle(kReference)));
    AcDbEntity* reference = nullptr;
    EXPECT_EQ(Acad::eOk, acdbOpenAcDbEntity(reference, id, AcDb::kForRead));
    AcDbVoidPtrArray parts;
    Exploded exploded;
    exploded.status = reference->explode(parts);
    reference->close();
    for (int i = 0; i < parts.length(); ++i)
        exploded.parts.emplace_back(static_cast<AcDbEntity*>(parts[i]));
    return exploded;
}

std::string text(const AcGePoint3d& p) {
    std::ostringstream out;
    out.precision(17);
    out << p.x << ',' << p.y << ',' << p.z;
    return out.str();
}
// Starts of lines.
std::string text(const std::vector<std::unique_ptr<AcDbEntity>>& parts) {
    std::string all;
    for (const auto& part : parts) all += text(AcDbLine::cast(part.get())->startPoint()) + ' ';
    return all;
}

const char* const kLine = "LINE|5 40|8 0|10 0|20 0|30 0|11 1|21 0|31 0";

DrawingText withReference(const std::string& groups) {
    DrawingText drawing;
    drawing.layer("0").entity("INSERT|5 50|8 0|2 A|" + groups);
    return drawing;
}

TEST(Explode, RowsAndColumnsRunAlongTheTurnedReferenceUnscaled) {
    DrawingText drawing =
        withReference("10 100|20 0|30 0|41 2|42 2|43 2|50 90|70 3|71 2|44 10|45 20");
    drawing.block("A", {kLine});
    const Exploded exploded = explode(*drawing.database());
    ASSERT_EQ(6u, exploded.parts.size());
    std::size_t i = 0;
    for (const double x : {100.0, 80.0})
        for (const double y : {0.0, 10.0, 20.0}) {
            const auto* const line = AcDbLine::cast(exploded.parts[i++].get());
            EXPECT_NEAR(x, line->startPoint().x, 1e-12);
            EXPECT_NEAR(y, line->startPoint().y, 1e-12);
            EXPECT_NEAR(x, line->endPoint().x, 1e-12);
            EXPECT_NEAR(y + 2, line->endPoint().y, 1e-12);
        }
}

TEST(Explode, RowsAndColumnsWithinABlockAreTakenToo) {
    DrawingText drawing = withReference("10 100|20 0|30 0|70 2|71 1|44 1000");
    drawing.block("A", {"INSERT|5 41|8 0|2 B|10 0|20 0|30 0|70 1|71 3|45 10"});
    drawing.block("B", {kLine});
    EXPECT_EQ("100,0,0 100,10,0 100,20,0 1100,0,0 1100,10,0 1100,20,0 ",
              text(explode(*drawing.database()).parts));
}

TEST(Explode, CirclesAndArcsStayRoundWhenTurnedScaledAndMirrored) {
    for (const char* const scale : {"41 2|42 2|43 2", "41 -2|42 2|43 2", "41 2|42 -2|43 2"}) {
        SCOPED_TRACE(scale);
        DrawingText drawing =
            withReference("10 25496000|20 6672000|30 5|50 30|" + std::string(scale));
        drawing.block("A", {"CIRCLE|5 41|8 0|10 1|20 2|30 3|40 4",
                            "ARC|5 42|8 0|10 1|20 2|30 3|40 4|50 350|51 80"});
        const auto database = drawing.database();
        const Exploded exploded = explode(*database);
        ASSERT_EQ(2u, exploded.parts.size());
        AcDbObjectId id;
        database->getAcDbObjectId(id, false, AcDbHandle(kReference));
        AcDbEntity* reference = nullptr;
        ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(reference, id, AcDb::kForRead));
        const AcGeMatrix3d move = static_cast<AcDbBlockReference*>(reference)->blockTransform();
        reference->close();
        const auto* const circle = AcDbCircle::cast(exploded.parts[0].get());
        ASSERT_NE(nullptr, circle);
        EXPECT_TRUE(circle->center().isEqualTo(move * AcGePoint3d(1, 2, 3)));
        EXPECT_NEAR(8.0, circle->radius(), 1e-12);
        const auto* const arc = AcDbArc::cast(exploded.parts[1].get());
        ASSERT_NE(nullptr, arc);
        // From the moved start to the moved end, or the other way round when mirrored.
        const auto at = [&](double degrees) {
            const double angle = degrees * 3.141592653589793 / 180;
            return move * AcGePoint3d(1 + 4 * std::cos(angle), 2 + 4 * std::sin(angle), 3);
        };
        AcGePoint3d start, end, middle;
        double first = 0.0, last = 0.0;
        EXPECT_EQ(Acad::eOk, arc->getStartPoint(start));
        EXPECT_EQ(Acad::eOk, arc->getEndPoint(end));
        EXPECT_EQ(Acad::eOk, arc->getStartParam(first));
        EXPECT_EQ(Acad::eOk, arc->getEndParam(last));
        EXPECT_EQ(Acad::eOk, arc->getPointAtParam((first + last) / 2, middle));
        EXPECT_LT(start.distanceTo(at(350)), 1e-7);
        EXPECT_LT(end.distanceTo(at(80)), 1e-7);
        EXPECT_LT(middle.distanceTo(at(35)), 1e-7);
    }
}

TEST(Explode, WhatBecomesAnEllipseIsPassedOver) {
    DrawingText drawing = withReference("10 0|20 0|30 0|41 2|42 3|43 2");
    drawing.block("A", {"CIRCLE|5 41|8 0|10 0|20 0|30 0|40 4",
                        "ARC|5 42|8 0|10 1|20 2|30 3|40 4|50 350|51 80",
                        "LWPOLYLINE|5 43|8 0|90 2|70 0|10 10|20 0|42 1|10 12|20 0", kLine});
    const Exploded exploded = explode(*drawing.database());
    EXPECT_EQ(Acad::eOk, exploded.status);
    ASSERT_EQ(1u, exploded.parts.size());
    EXPECT_NE(nullptr, AcDbLine::cast(exploded.parts[0].get()));
}

TEST(Explode, ABlockWithinItselfIsTaken64BlocksDeep) {
    DrawingText drawing = withReference("10 0|20 0|30 0");
    drawing.block("A", {kLine, "INSERT|5 41|8 0|2 A|10 1|20 0|30 0"});
    const Exploded exploded = explode(*drawing.database());
    ASSERT_EQ(64u, exploded.parts.size());
    EXPECT_EQ("63,0,0", text(AcDbLine::cast(exploded.parts[63].get())->startPoint()));
}

TEST(Explode, ABlockTwiceWithinItselfThatHoldsNothingElseEndsWithNothing) {
    DrawingText drawing = withReference("10 0|20 0|30 0");
    drawing.block("A", {"INSERT|5 41|8 0|2 A|10 1|20 0|30 0", "INSERT|5 42|8 0|2 A|10 2|20 0|30 0",
                        "TEXT|5 43|8 0|10 0|20 0|30 0|40 2.5|1 Name"});
    const Exploded exploded = explode(*drawing.database());
    EXPECT_EQ(Acad::eOk, exploded.status);
    EXPECT_TRUE(exploded.parts.empty());
}

// 40 blocks, each twice in the one before it.
DrawingText doublings(const std::vector<std::string>& last) {
    DrawingText drawing = withReference("10 0|20 0|30 0");
    const auto name = [](int i) { return i == 0 ? "A" : "B" + std::to_string(i); };
    int handle = 0x100;
    for (int i = 0; i < 40; ++i) {
        std::vector<std::string> content;
        for (int k = 0; k < 2; ++k) {
            std::ostringstream insert;
            insert << "INSERT|5 " << std::hex << handle++ << "|8 0|2 " << name(i + 1)
                   << "|10 1|20 0|30 0";
            content.push_back(insert.str());
        }
        drawing.block(name(i), content);
    }
    drawing.block(name(40), last);
    return drawing;
}

TEST(Explode, FortyDoublingsOfNothingEndWithNothing) {
    const Exploded exploded = explode(*doublings({}).database());
    EXPECT_EQ(Acad::eOk, exploded.status);
    EXPECT_TRUE(exploded.parts.empty());
}

TEST(Explode, TwoMillionAreTheMost) {
    const Exploded doubled = explode(*doublings({kLine}).database());
    EXPECT_EQ(Acad::eOutOfMemory, doubled.status);
    EXPECT_TRUE(doubled.parts.empty());
    // Circles that become ellipses: counted, but nothing comes of them.
    for (const int rows : {2000, 2001}) {
        DrawingText drawing =
            withReference("10 0|20 0|30 0|41 2|70 1000|71 " + std::to_string(rows) + "|44 1|45 1");
        drawing.block("A", {"CIRCLE|5 41|8 0|10 0|20 0|30 0|40 4"});
        EXPECT_EQ(rows == 2000 ? Acad::eOk : Acad::eOutOfMemory,
                  explode(*drawing.database()).status);
    }
}

// The plain way: every block entered, whether it gives anything or not.
void plain(const AcDbBlockReference& reference, const AcGeMatrix3d& move, int depth,
           std::string& all) {
    if (depth == 64) return;
    const AcGeMatrix3d inside = move * reference.blockTransform();
    for (const AcDbObjectId id : host::database::blockIds(reference.blockTableRecord())) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, AcDb::kForRead));
        if (const auto* nested = AcDbBlockReference::cast(entity)) {
            plain(*nested, inside, depth + 1, all);
        } else if (const auto* line = AcDbLine::cast(entity)) {
            all += text(inside * line->startPoint()) + ' ';
        }
        entity->close();
    }
}

TEST(Explode, GivesWhatThePlainWayGivesInItsOrder) {
    constexpr unsigned seed = 20260401;
    SCOPED_TRACE(seed);
    std::mt19937 engine(seed);
    const auto random = [&] { return static_cast<int>(engine() % 1000U); };
    for (int round = 0; round < 50; ++round) {
        DrawingText drawing = withReference("10 3|20 4|30 5|41 1.5|50 20");
        int handle = 0x100;
        for (int i = 0; i < 8; ++i) {
            std::vector<std::string> content;
            for (int k = random() % 4; k > 0; --k) {
                std::ostringstream record;
                const int kind = random() % 3;
                record << (kind == 0   ? "LINE|5 "
                           : kind == 1 ? "TEXT|5 "
                                       : "INSERT|5 ")
                       << std::hex << handle++ << std::dec << "|8 0|10 " << random() << "|20 "
                       << random() << "|30 " << random() % 10;
                // Only blocks behind this one, and, now and then, one in itself at the end.
                if (kind == 2)
                    record << "|50 " << random() % 360 << "|2 "
                           << static_cast<char>('A' + std::min(8, i + 1 + random() % 3));
                content.push_back(record.str());
            }
            if (i == 7 && round % 5 == 0)
                content.emplace_back("INSERT|5 FFF|8 0|10 1|20 1|30 0|2 H");
            drawing.block(std::string(1, static_cast<char>('A' + i)), content);
        }
        const auto database = drawing.database();
        AcDbObjectId id;
        ASSERT_EQ(Acad::eOk, database->getAcDbObjectId(id, false, AcDbHandle(kReference)));
        AcDbEntity* reference = nullptr;
        ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(reference, id, AcDb::kForRead));
        std::string expected;
        plain(static_cast<AcDbBlockReference&>(*reference), AcGeMatrix3d::kIdentity, 0, expected);
        reference->close();
        EXPECT_EQ(expected, text(explode(*database).parts)) << round;
    }
}

}  // namespace
