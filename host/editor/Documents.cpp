// The open drawing as a document.
#include <acdocman.h>

#include <algorithm>
#include <iterator>

#include "host/database/Fault.h"
#include "host/editor/Scripted.h"
#include "host/editor/SessionState.h"

namespace {

using host::editor::currentState;
using host::editor::Scripted;
using State = host::editor::Session::Implementation;

// From the weakest to the strictest.
constexpr AcAp::DocLockMode locks[] = {AcAp::kRead, AcAp::kAutoWrite, AcAp::kProtectedAutoWrite,
                                       AcAp::kWrite, AcAp::kXWrite};

// 0 for what is no lock.
std::ptrdiff_t strictness(AcAp::DocLockMode mode) {
    const auto* found = std::find(std::begin(locks), std::end(locks), mode);
    return found == std::end(locks) ? 0 : found - std::begin(locks) + 1;
}

class Document : public AcApDocument {
  public:
    AcDbDatabase* database() const override {
        const State* state = currentState();
        return state == nullptr ? nullptr : state->drawing();
    }
    const ACHAR* fileName() const override {
        const ACHAR* name = nullptr;
        const AcDbDatabase* drawing = database();
        if (drawing == nullptr || drawing->getFilename(name) != Acad::eOk || name == nullptr)
            return L"";
        return name;
    }
    bool isQuiescent() const override {
        const State* state = currentState();
        return state == nullptr || !state->commandIsRunning();
    }
    AcAp::DocLockMode myLockMode() const override {
        const State* state = currentState();
        if (state == nullptr || state->documentLocks().empty()) return AcAp::kNone;
        return *std::max_element(state->documentLocks().begin(), state->documentLocks().end(),
                                 [](auto a, auto b) { return strictness(a) < strictness(b); });
    }
};

class DocumentManager : public AcApDocManager {
  public:
    AcApDocument* curDocument() const override {
        return document_.database() == nullptr ? nullptr : &document_;
    }
    AcApDocument* mdiActiveDocument() const override { return curDocument(); }
    AcApDocument* document(const AcDbDatabase* database) const override {
        return database != nullptr && database == document_.database() ? &document_ : nullptr;
    }

    Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode mode, const ACHAR*,
                                   const ACHAR*, bool) override {
        HOST_CALL("AcApDocManager::lockDocument");
        if (document == nullptr || document != curDocument() || strictness(mode) == 0)
            return Acad::eInvalidInput;
        currentState()->lockDocument(mode);
        return Acad::eOk;
    }
    Acad::ErrorStatus unlockDocument(AcApDocument* document) override {
        HOST_CALL("AcApDocManager::unlockDocument");
        if (document == nullptr || document != curDocument() ||
            currentState()->documentLocks().empty()) {
            return Acad::eInvalidInput;
        }
        currentState()->unlockDocument(currentState()->documentLocks().size() - 1);
        return Acad::eOk;
    }
    Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text, bool activate,
                                          bool wrapUp, bool echo) override {
        HOST_CALL("AcApDocManager::sendStringToExecute");
        if (document == nullptr || document != curDocument() || text == nullptr)
            return Acad::eInvalidInput;
        if (Scripted* scripted = Scripted::current())
            scripted->recordSent({text, activate, wrapUp, echo});
        currentState()->sendString(text, echo);
        return Acad::eOk;
    }
    int inputPending(AcApDocument* document) const override {
        return document != nullptr && document == curDocument() && currentState()->inputPending()
                   ? 1
                   : 0;
    }

  private:
    mutable Document document_;
};

}  // namespace

AcApDocManager* acDocManagerPtr() {
    static DocumentManager manager;
    return host::editor::currentState() == nullptr ? nullptr : &manager;
}
