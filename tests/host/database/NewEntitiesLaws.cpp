// Laws of random additions: what is saved is read again as it was given, undoing gives the bytes of
// before, and saving what was saved changes nothing.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include "tests/host/database/NewEntities.h"
#include "tests/host/support/LedgerListener.h"

using namespace host;

namespace {

const char* const kReleases[] = {"r9",    "r10",   "r12",   "r13",   "r14",  "r2000",
                                 "r2004", "r2007", "r2010", "r2013", "r2018"};

std::shared_ptr<const dxf::Document> release(const std::string& name) {
    static std::map<std::string, std::shared_ptr<const dxf::Document>> read;
    auto& document = read[name];
    if (document == nullptr) {
        document = dxf::Document::open(std::filesystem::u8path(ORLINTH_TEST_DATA) / "releases" /
                                       (name + ".dxf"));
    }
    return document;
}

rc::Gen<double> coordinate() {
    return rc::gen::map(
        rc::gen::pair(rc::gen::inRange(-8000000, 26000000), rc::gen::inRange(0, 1 << 20)),
        [](const std::pair<int, int>& p) { return p.first + p.second / 1048576.0 / 3; });
}

AcGePoint3d anyPoint() {
    return {*coordinate(), *coordinate(), *coordinate()};
}

AcDbEntity* anyEntity() {
    switch (*rc::gen::inRange(0, 7)) {
        case 0:
            return new AcDbLine(anyPoint(), anyPoint());
        case 1:
            return new AcDbPoint(anyPoint());
        case 2:
            return new AcDbCircle(anyPoint(), {0, 0, *rc::gen::element(1.0, -1.0)},
                                  1.0 + std::fabs(*coordinate()));
        case 3:
            return new AcDbText(anyPoint(), L"teksti", AcDbObjectId::kNull, 2.5, *coordinate());
        case 4: {
            auto* polyline = new AcDbPolyline;
            const auto count = static_cast<unsigned>(*rc::gen::inRange(2, 6));
            for (unsigned i = 0; i < count; ++i)
                polyline->addVertexAt(i, {*coordinate(), *coordinate()}, 0.25 * i);
            return polyline;
        }
        case 5: {
            AcGePoint3dArray points;
            const int count = *rc::gen::inRange(2, 5);
            for (int i = 0; i < count; ++i) points.append(anyPoint());
            return new AcDb3dPolyline(AcDb::k3dSimplePoly, points, *rc::gen::arbitrary<bool>());
        }
        default:
            return new AcDbFace(anyPoint(), anyPoint(), anyPoint(), anyPoint());
    }
}

}  // namespace

RC_GTEST_PROP(NewEntitiesLaws, WhatIsSavedIsReadAgainToTheBit, ()) {
    const auto before = release(
        *rc::gen::elementOf(std::vector<std::string>(std::begin(kReleases), std::end(kReleases))));
    const auto database = database::drawingOf(before);
    const test::Working working(*database);
    const int count = *rc::gen::inRange(1, 8);
    std::vector<AcDbExtents> boxes;
    for (int i = 0; i < count; ++i) {
        std::unique_ptr<AcDbEntity> entity(anyEntity());
        AcDbExtents box;
        // A curve without length has no box.
        RC_PRE(entity->getGeomExtents(box) == Acad::eOk);
        boxes.push_back(box);
        RC_ASSERT(test::append(*database, entity.release()) == Acad::eOk);
    }
    const auto saved = dxf::Document::fromBytes(test::savedBytes(*database), "saved.dxf");
    const auto again = database::drawingOf(saved);
    const auto ids = database::modelSpaceIds(*again);
    RC_ASSERT(ids.size() == database::modelSpaceIds(*database).size());
    for (int i = 0; i < count; ++i) {
        AcDbEntity* entity = nullptr;
        const auto at = ids.size() - boxes.size() + static_cast<std::size_t>(i);
        RC_ASSERT(acdbOpenAcDbEntity(entity, ids[at], AcDb::kForRead) == Acad::eOk);
        AcDbExtents box;
        RC_ASSERT(entity->getGeomExtents(box) == Acad::eOk);
        entity->close();
        const AcDbExtents& wanted = boxes[static_cast<std::size_t>(i)];
        // Angles are degrees in the drawing, which rounds those of texts once more.
        RC_ASSERT(box.minPoint().distanceTo(wanted.minPoint()) < 1e-6);
        RC_ASSERT(box.maxPoint().distanceTo(wanted.maxPoint()) < 1e-6);
    }
    RC_ASSERT(test::savedBytes(*again) == std::string(saved->bytes()));
}

RC_GTEST_PROP(NewEntitiesLaws, AnyStepsOfDrawingErasingAndUndoingAgreeWithKeptStates, ()) {
    const auto database = database::drawingOf(release(
        *rc::gen::elementOf(std::vector<std::string>(std::begin(kReleases), std::end(kReleases)))));
    const test::Working working(*database);
    std::vector<std::string> states{test::savedBytes(*database)};
    std::vector<AcDbObjectId> drawn;
    const int steps = *rc::gen::inRange(1, 12);
    for (int i = 0; i < steps; ++i) {
        if (states.size() > 1 && *rc::gen::inRange(0, 3) == 0) {
            RC_ASSERT(database::undo(*database));
            states.pop_back();
            RC_ASSERT(test::savedBytes(*database) == states.back());
            continue;
        }
        database::beginGroup(*database, L"STEP");
        AcDbEntity* entity = nullptr;
        const bool erasing = !drawn.empty() && *rc::gen::inRange(0, 4) == 0;
        if (erasing &&
            acdbOpenAcDbEntity(entity, *rc::gen::elementOf(drawn), AcDb::kForWrite) == Acad::eOk) {
            entity->erase();
            entity->close();
        } else {
            AcDbObjectId id;
            RC_ASSERT(test::append(*database, anyEntity(), &id) == Acad::eOk);
            drawn.push_back(id);
        }
        database::endGroup(*database);
        states.push_back(test::savedBytes(*database));
    }
}
