// What the command does when the host refuses: every call failed once in turn, exceptions out of
// the command, and memory refused.
#include <aced.h>

#include <algorithm>
#include <functional>
#include <map>
#include <ostream>
#include <set>

#include "BruteForce.h"
#include "CommandHost.h"
#include "app/AlignCommand.h"
#include "app/AlignPolyLine.h"
#include "datastruct/Memory.h"

namespace {

using namespace app_test;

const std::vector<Vertex> bend{{0, 0}, {100, 0}, {140, 70}};
const std::vector<std::string> members{"A0", "B0", "A1", "B1"};
const std::vector<Vertex> places{{20, 5}, {60, -8}, {125, 30}, {110, 30}};

bool IsSymbol(std::size_t member) {
    return members[member][0] == 'B';
}

void AddMembers(DrawingText& drawing) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (IsSymbol(i)) {
            drawing.Insert(members[i], places[i]);
        } else {
            drawing.Text(members[i], places[i]);
        }
    }
}

DrawingText Street() {
    DrawingText drawing;
    drawing.LightPolyline("2F", bend);
    AddMembers(drawing);
    return drawing;
}

double AfterPass(std::size_t member, bool flip) {
    return IsSymbol(member) ? SymbolRotation(bend, places[member], flip)
                            : TextRotation(bend, places[member]);
}

// One call of an undisturbed run with the reply "k": which function, and on behalf of what.
struct CallPlace {
    enum class Stage { pick, selection, firstPass, question, secondPass };
    std::string name;
    Stage stage = Stage::pick;
    std::size_t member = 0;  // of the selection, where the stage has one
};
using Stage = CallPlace::Stage;

// Finds out from the order of the names where in the command each call stands.
std::vector<CallPlace> PlacesOf(const std::vector<std::string>& names) {
    std::vector<CallPlace> found;
    Stage stage = Stage::pick;
    std::size_t member = 0;
    std::size_t started = 0;
    for (const std::string& name : names) {
        if (name == "acutPrintf" || name == "acedSSGet") stage = Stage::selection;
        if (name == "acedGetString") stage = Stage::question;
        if (name == "acedSSName") member = started++ % members.size();
        if (name == "acdbOpenAcDbEntity") {
            stage = stage == Stage::question || stage == Stage::secondPass ? Stage::secondPass
                                                                           : Stage::firstPass;
            member = started++ % members.size();
        }
        found.push_back({name, stage, member});
    }
    return found;
}

// The rotations that a run leaves behind when this call is refused.
std::vector<double> ExpectedAfter(const CallPlace& refused) {
    std::vector<double> rotations;
    for (std::size_t i = 0; i < members.size(); ++i) rotations.push_back(AfterPass(i, true));
    const auto setAll = [&](auto value) {
        for (std::size_t i = 0; i < members.size(); ++i) rotations[i] = value(i);
    };
    const std::string& name = refused.name;
    switch (refused.stage) {
        case Stage::pick:
            // Drawing the flash and closing decide nothing; everything else ends the command.
            if (name != "acedGrDraw" && name != "AcDbObject::close")
                setAll([](std::size_t) { return 0.0; });
            break;
        case Stage::selection:
            if (name == "acedSSGet" || name == "acedSSLength")
                setAll([](std::size_t) { return 0.0; });
            if (name == "acedSSName" || name == "acdbGetObjectId" || name == "AcArray") {
                rotations[refused.member] = 0.0;  // never gets into the list
            }
            break;
        case Stage::question:  // as an empty reply: the first pass stands
            setAll([](std::size_t i) { return AfterPass(i, false); });
            break;
        case Stage::firstPass:
            // The second pass makes up for it, unless the entity could not be closed: then it is
            // still open for write and cannot be opened again.
            if (name == "AcDbObject::close")
                rotations[refused.member] = AfterPass(refused.member, false);
            break;
        case Stage::secondPass:
            if (name != "AcDbObject::close")
                rotations[refused.member] = AfterPass(refused.member, false);
            break;
    }
    return rotations;
}

class CommandFailure : public CommandTest {
  protected:
    void Answer() {
        scripted->pick(Id("2F"));
        scripted->select(Ids(members));
        scripted->type(L"k");
    }
};

TEST_F(CommandFailure, EveryHostCallRefusedOnceLeavesWhatIsTold) {
    Open(Street());
    Answer();
    host::fault::disarm();
    ASSERT_EQ(session.runCommand(L"ZEPTAlignEntities").end, End::done);
    const std::vector<CallPlace> calls = PlacesOf(host::fault::names());
    ASSERT_GT(calls.size(), 40u);
    for (std::size_t n = 1; n <= calls.size(); ++n) {
        const CallPlace& refused = calls[n - 1];
        SCOPED_TRACE("call " + std::to_string(n) + " of " + std::to_string(calls.size()) + ": " +
                     refused.name);
        Open(Street());
        Answer();
        const bool edits = refused.name.rfind("ac", 0) == 0 && refused.name.rfind("acdb", 0) != 0;
        host::fault::arm(n, edits ? RTERROR : static_cast<int>(Acad::eInvalidInput));
        const CommandResult result = session.runCommand(L"ZEPTAlignEntities");
        EXPECT_TRUE(host::fault::fired());
        host::fault::disarm();

        // Open afterwards: an entity that the host refuses to close, and a picked line that could
        // not be read, which is not closed on this way. Nothing else.
        const bool throws = refused.name == "AcDbPolyline::getPointAt";
        const bool keepsOpen = refused.name == "AcDbObject::close";
        EXPECT_EQ(result.leaks.size(), throws || keepsOpen ? 1u : 0u);
        EXPECT_EQ(result.end == End::exceptionLeft, throws);
        const std::vector<double> expected = ExpectedAfter(refused);
        for (std::size_t i = 0; i < members.size(); ++i) {
            EXPECT_EQ(Rotation(members[i]), expected[i]) << members[i];
        }
        session.undo();
        EXPECT_EQ(Saved(), original);
    }
}

// --- Every kind of line.

struct LineCase {
    const char* name;
    std::function<void(DrawingText&)> draw;
    std::set<std::string> calls;  // what reading it asks of the host, beside opening and closing
};

std::ostream& operator<<(std::ostream& out, const LineCase& tested) {
    return out << tested.name;
}

const std::set<std::string> ofEveryLine{"acedEntSel",
                                        "acdbGetObjectId",
                                        "acdbOpenAcDbObject",
                                        "AcDbObject::close",
                                        "acedGrDraw",
                                        "acutPrintf",
                                        "acedSSGet",
                                        "acedSSLength",
                                        "acedSSName",
                                        "acedSSFree",
                                        "AcArray",
                                        "acdbOpenAcDbEntity",
                                        "AcDbObject::upgradeOpen",
                                        "AcDbText::setRotation",
                                        "AcDbBlockReference::setRotation",
                                        "acedGetString"};
const std::set<std::string> ofCurves{"AcDbCurve::getEndParam", "AcDbCurve::getDistAtParam",
                                     "AcDbCurve::getPointAtDist", "AcDbCurve::getEndPoint"};

class RefusedWith : public CommandFailure, public ::testing::WithParamInterface<LineCase> {
  protected:
    DrawingText Drawing() const {
        DrawingText drawing;
        GetParam().draw(drawing);
        AddMembers(drawing);
        return drawing;
    }
};

TEST_P(RefusedWith, EveryHostCallOnceNothingStaysOpenAndUndoRestoresEveryByte) {
    const DrawingText drawing = Drawing();
    Open(drawing);
    Answer();
    host::fault::disarm();
    ASSERT_EQ(session.runCommand(L"ZEPTAlignEntities").end, End::done);
    const std::vector<std::string> calls = host::fault::names();
    std::set<std::string> expected = ofEveryLine;
    expected.insert(GetParam().calls.begin(), GetParam().calls.end());
    EXPECT_EQ(std::set<std::string>(calls.begin(), calls.end()), expected);
    const std::string usual = Saved();

    std::map<std::string, int> met;
    for (std::size_t n = 1; n <= calls.size(); ++n) {
        const std::string& refused = calls[n - 1];
        // A curve is walked in hundreds of calls that differ in nothing but the distance.
        if (const int time = ++met[refused]; time > 24 && time % 16 != 0) continue;
        SCOPED_TRACE("call " + std::to_string(n) + " of " + std::to_string(calls.size()) + ": " +
                     refused);
        Open(drawing);
        Answer();
        const bool edits = refused.rfind("ac", 0) == 0 && refused.rfind("acdb", 0) != 0;
        host::fault::arm(n, edits ? RTERROR : static_cast<int>(Acad::eInvalidInput));
        const CommandResult result = session.runCommand(L"ZEPTAlignEntities");
        EXPECT_TRUE(host::fault::fired());
        host::fault::disarm();
        // A light polyline that refuses a vertex is left open by the exception.
        const bool raises = refused == "AcDbPolyline::getPointAt";
        EXPECT_EQ(result.end == End::exceptionLeft, raises);
        EXPECT_EQ(result.leaks.size(), raises || refused == "AcDbObject::close" ? 1u : 0u);
        session.undo();
        EXPECT_EQ(Saved(), original);

        scripted.reset();
        scripted.emplace();
        Answer();
        EXPECT_EQ(session.runCommand(L"ZEPTAlignEntities").end, End::done);
        EXPECT_EQ(Saved(), usual);
    }
}

const DrawingText::Spline wave{
    8, 3, {0, 0, 0, 0, 1, 1, 1, 1}, {}, {{0, 0}, {60, 60}, {90, -40}, {140, 70}}, {}};

INSTANTIATE_TEST_SUITE_P(
    Line, RefusedWith,
    ::testing::Values(
        LineCase{"Line",
                 [](DrawingText& d) {
                     d.Line("2F", {0, 0}, {140, 70});
                 },
                 {}},
        LineCase{"Point",
                 [](DrawingText& d) {
                     d.PointEntity("2F", {5, 5});
                 },
                 {}},
        LineCase{"Polyline3d",
                 [](DrawingText& d) { d.Polyline3d("2F", bend); },
                 {"AcDb3dPolyline::vertexIterator"}},
        LineCase{"Polyline2d",
                 [](DrawingText& d) {
                     d.Polyline2d("2F", 0, {{bend[0]}, {bend[1]}, {bend[2]}});
                 },
                 {"AcDb2dPolyline::vertexIterator"}},
        LineCase{"FittedPolyline",
                 [](DrawingText& d) {
                     d.Polyline2d("2F", 2, {{bend[0], 0, 0.2}, {bend[1], 1, 0.1}, {bend[2]}});
                 },
                 ofCurves},
        LineCase{"Spline", [](DrawingText& d) { d.SplineEntity("2F", wave); }, ofCurves},
        LineCase{"Ellipse",
                 [](DrawingText& d) {
                     d.Ellipse("2F", {50, 0}, {80, 30}, 0.4, 0.3, 2.0);
                 },
                 ofCurves},
        LineCase{"Circle",
                 [](DrawingText& d) {
                     d.Circle("2F", {80, 10}, 60);
                 },
                 {}},
        LineCase{"Arc",
                 [](DrawingText& d) {
                     d.Arc("2F", {80, -30}, 60, 20, 160);
                 },
                 {"acdbGetAdsName", "AcDbCurve::getStartPoint", "AcDbCurve::getEndPoint"}},
        LineCase{"BulgedPolyline",
                 [](DrawingText& d) {
                     d.BulgedPolyline("2F", {{bend[0], 0, 0.3}, {bend[1], 0, -0.2}, {bend[2]}});
                 },
                 {"AcDbPolyline::getPointAt", "AcDbPolyline::getBulgeAt"}},
        LineCase{"BulgedPolyline2d",
                 [](DrawingText& d) {
                     d.Polyline2d("2F", 1, {{bend[0], 0, 0.3}, {bend[1], 0, -0.2}, {bend[2]}});
                 },
                 {"AcDb2dPolyline::vertexIterator"}}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(CommandFailure, AVertexThatIsNotOpenedIsPassedOver) {
    const std::vector<Vertex> ramp{{0, 0, 0}, {60, 20, 5}, {100, 0, 5}, {140, 70, 9}};
    for (std::size_t refused = 0; refused <= ramp.size(); ++refused) {
        SCOPED_TRACE(refused);
        DrawingText drawing;
        drawing.Polyline3d("2F", ramp);
        AddMembers(drawing);
        Open(drawing);
        Answer();
        // The first opening is that of the polyline itself.
        host::fault::arm("acdbOpenAcDbObject", refused + 2, Acad::eLockViolation);
        EXPECT_EQ(session.runCommand(L"ZEPTAlignEntities").end, End::done);
        EXPECT_EQ(host::fault::fired(), refused < ramp.size());
        host::fault::disarm();
        std::vector<Vertex> left = ramp;
        if (refused < ramp.size()) left.erase(left.begin() + static_cast<std::ptrdiff_t>(refused));
        for (std::size_t i = 0; i < members.size(); ++i) {
            EXPECT_EQ(Rotation(members[i]), IsSymbol(i) ? SymbolRotation(left, places[i], true)
                                                        : TextRotation(left, places[i]))
                << members[i];
        }
    }
}

// --- Exceptions.

// Tells the exception that is being handled, as the library's classes have it.
std::wstring Report() {
    try {
        throw;
    } catch (const TamLib::TamExpAcad& exception) {
        return L"TamExpAcad: " + std::wstring(exception.message);
    } catch (const TamLib::TamExpNoMem& exception) {
        return L"TamExpNoMem from " + std::wstring(exception.file);
    } catch (...) {
        return L"something else";
    }
}

TEST_F(CommandFailure, AVertexThatTheHostRefusesLeavesAsAnExceptionAndTheSessionGoesOn) {
    Open(Street());
    session.setExceptionReporter(Report);
    Answer();
    host::fault::arm("AcDbPolyline::getPointAt", 2, Acad::eInvalidIndex);
    const CommandResult result = session.runCommand(L"ZEPTAlignEntities");
    host::fault::disarm();
    EXPECT_EQ(result.end, End::exceptionLeft);
    EXPECT_EQ(result.exception, L"TamExpAcad: LightWeight PolyLine conversion to PolyLine failed!");
    EXPECT_EQ(result.leaks.size(), 1u) << "the picked line is not closed on this way";
    EXPECT_EQ(Saved(), original);
    EXPECT_EQ(scripted->prompts().size(), 1u);

    Open(Street());
    EXPECT_EQ(Run("2F", members, L"k").end, End::done);
    EXPECT_EQ(Rotation("A1"), AfterPass(2, true));
}

// The command of this program's own copy, whose memory the test can refuse.
class OwnCommand : public CommandFailure {
  protected:
    void SetUp() override {
        ASSERT_EQ(acedRegCmds->addCommand(L"TEST", L"OWNALIGN", L"OWNALIGN", ACRX_CMD_MODAL,
                                          RunAlignEntities),
                  Acad::eOk);
    }
    void TearDown() override {
        TamLib::runTimeMemory = untouched_;
        acedRegCmds->removeGroup(L"TEST");
        CommandFailure::TearDown();
    }

    // Lets so many requests of the library pass and refuses the next; negative refuses none.
    void RefuseAfter(int requests) {
        allowed = requests;
        TamLib::runTimeMemory.allocate = [](std::size_t bytes) -> void* {
            return allowed < 0 || allowed-- > 0 ? untouched_.allocate(bytes) : nullptr;
        };
        TamLib::runTimeMemory.reallocate = [](void* block, std::size_t bytes) -> void* {
            return allowed < 0 || allowed-- > 0 ? untouched_.reallocate(block, bytes) : nullptr;
        };
    }

    static int allowed;

  private:
    static const TamLib::RunTimeMemory untouched_;
};

int OwnCommand::allowed = -1;
const TamLib::RunTimeMemory OwnCommand::untouched_ = TamLib::runTimeMemory;

TEST_F(OwnCommand, MemoryRefusedAtAnyRequestRollsBackAndTheSessionGoesOn) {
    session.setExceptionReporter(Report);
    int refused = 0;
    for (int passed = 0;; ++passed) {
        SCOPED_TRACE(passed);
        ASSERT_LT(passed, 1000);
        Open(Street());
        Answer();
        RefuseAfter(passed);
        const CommandResult result = session.runCommand(L"OWNALIGN");
        const bool exhausted = allowed <= 0;
        RefuseAfter(-1);
        host::database::Ledger::instance().forget();  // the line may be left open by the exception
        if (!exhausted || result.end == End::done) break;
        ++refused;
        EXPECT_EQ(result.end, End::exceptionLeft);
        EXPECT_EQ(result.exception, L"TamExpNoMem from datastruct/Array");
        EXPECT_EQ(Saved(), original);
    }
    EXPECT_GT(refused, 0);
    EXPECT_EQ(Rotation("A1"), AfterPass(2, true));
}

}  // namespace
