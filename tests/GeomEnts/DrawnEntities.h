// What geometry has written into a drawing, read back; and writing it with each call into the host
// failing in turn.
#pragma once

#include <acutmem.h>
#include <dbents.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "GeomEnts/EntityReading.h"
#include "host/database/Drawing.h"
#include "host/editor/Scripted.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/support/Points.h"

namespace TamLib {

inline std::vector<AcDbObjectId> Entities(const TestDrawing& drawing) {
    return host::database::modelSpaceIds(drawing.Database());
}

// An object opened for read as what it must be, and closed at the end.
template <class T>
class ReadAs {
  public:
    explicit ReadAs(AcDbObjectId id) {
        const host::fault::Quiet quiet;
        EXPECT_EQ(Acad::eOk, acdbOpenObject(object_, id, AcDb::kForRead));
        if (object_ == nullptr) throw std::runtime_error("not an object of that class");
        EXPECT_EQ(T::desc(), object_->isA());
    }
    ~ReadAs() {
        const host::fault::Quiet quiet;
        object_->close();
    }
    ReadAs(const ReadAs&) = delete;
    ReadAs& operator=(const ReadAs&) = delete;
    T* operator->() const { return object_; }

  private:
    T* object_ = nullptr;
};

inline std::wstring Taken(ACHAR* text) {
    std::wstring result = text != nullptr ? text : L"<null>";
    acutDelString(text);
    return result;
}

// Names of the drawing's layers, in its order.
inline std::vector<std::wstring> Layers(AcDbDatabase& database) {
    const host::fault::Quiet quiet;
    std::vector<std::wstring> names;
    AcDbLayerTable* table = nullptr;
    if (database.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return names;
    AcDbSymbolTableIterator* made = nullptr;
    table->newIterator(made);
    table->close();
    const std::unique_ptr<AcDbSymbolTableIterator> records(made);
    for (; !records->done(); records->step()) {
        AcDbSymbolTableRecord* record = nullptr;
        if (records->getRecord(record) != Acad::eOk) continue;
        ACHAR* name = nullptr;
        record->getName(name);
        names.push_back(Taken(name));
        record->close();
    }
    return names;
}

// How an entity that was written looks.
struct Look {
    std::wstring className;
    std::wstring layer;
    int colour;
    bool operator==(const Look& other) const {
        return className == other.className && layer == other.layer && colour == other.colour;
    }
};
inline void PrintTo(const Look& look, std::ostream* out) {
    *out << std::string(look.className.begin(), look.className.end()) << " on "
         << std::string(look.layer.begin(), look.layer.end()) << " in " << look.colour;
}
inline Look LookOf(AcDbObjectId id) {
    const host::fault::Quiet quiet;
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return {L"none", L"", -1};
    const Look look{host::database::className(id), Taken(entity->layer()), entity->colorIndex()};
    entity->close();
    return look;
}

// Writes with the 1st, 2nd, ... call into the host failing, each time into a fresh drawing, and
// says what was reported and left behind.
struct FailedWrite {
    std::string call;          // the one that failed
    int status = 0;            // what the writing reported
    std::size_t entities = 0;  // how many the drawing got
    std::vector<std::string> leaks;
};
inline std::vector<FailedWrite> WriteWithEachCallFailing(
    const std::function<int(const TestDrawing&)>& write) {
    constexpr int ordered = Acad::eOutOfDisk;
    std::vector<FailedWrite> outcomes;
    for (std::size_t n = 1;; ++n) {
        const TestDrawing drawing{};
        host::fault::arm(n, ordered);
        FailedWrite outcome;
        outcome.status = write(drawing);
        const bool fired = host::fault::fired();
        const std::vector<std::string> names = host::fault::names();
        host::fault::disarm();
        if (!fired) return outcomes;
        outcome.call = names.at(n - 1);
        outcome.entities = Entities(drawing).size();
        outcome.leaks = host::database::Ledger::instance().leaks();
        // A refused close leaves open what nobody can close any more.
        if (outcome.call == "AcDbObject::close") {
            EXPECT_EQ(1u, outcome.leaks.size());
            host::database::Ledger::instance().forget();
            outcome.leaks.clear();
        }
        outcomes.push_back(outcome);
    }
}

// One entity is added or none, and the status says which; it is the failed call's, and stands for
// what is raised when an entity or its layer can't be made. Nothing stays open.
inline void ExpectAllOrNothing(const std::vector<FailedWrite>& outcomes) {
    EXPECT_FALSE(outcomes.empty());
    std::vector<std::string> deadly;
    for (const FailedWrite& outcome : outcomes) {
        EXPECT_TRUE(outcome.leaks.empty()) << outcome.call << ": " << outcome.leaks.front();
        EXPECT_EQ(outcome.status == Acad::eOk ? 1u : 0u, outcome.entities) << outcome.call;
        if (outcome.status == Acad::eOk) continue;
        EXPECT_EQ(Acad::eOutOfDisk, outcome.status) << outcome.call;
        deadly.push_back(outcome.call);
    }
    const std::vector<std::string> expected{
        "AcDbObject::operator new", "AcDbObject::operator new", "AcDbDatabase::getSymbolTable",
        "AcDbSymbolTable::getAt", "AcDbBlockTableRecord::appendAcDbEntity"};
    EXPECT_EQ(expected, deadly);
}

// For what is written in more than one step: the status, or a raise in its stead, says whether the
// one entity is there, whichever call fails. Nothing stays open.
inline void ExpectWrittenOrNot(const std::function<int()>& write, const std::string& what) {
    const auto outcomes = WriteWithEachCallFailing([&](const TestDrawing&) {
        try {
            return write();
        } catch (const TamExpAcad&) {
            return static_cast<int>(Acad::eOutOfDisk);
        }
    });
    EXPECT_GT(outcomes.size(), 8u) << what;
    for (const FailedWrite& outcome : outcomes) {
        EXPECT_TRUE(outcome.leaks.empty()) << outcome.call << ": " << outcome.leaks.front();
        EXPECT_EQ(outcome.status == Acad::eOk ? 1u : 0u, outcome.entities)
            << outcome.call << ", " << what;
    }
}

}  // namespace TamLib
