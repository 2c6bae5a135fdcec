// What the command does when the host refuses: every call failed once in turn, exceptions out of
// the command, and memory refused.
#include <aced.h>

#include <algorithm>

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

DrawingText Street() {
    DrawingText drawing;
    drawing.LightPolyline("2F", bend);
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (IsSymbol(i)) {
            drawing.Insert(members[i], places[i]);
        } else {
            drawing.Text(members[i], places[i]);
        }
    }
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
        if (!keepsOpen) {
            for (std::size_t i = 0; i < members.size(); ++i) {
                EXPECT_EQ(Rotation(members[i]), expected[i]) << members[i];
            }
            session.undo();
            EXPECT_EQ(Saved(), original);
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
