// The open drawing as a document.
#include <acdocman.h>

#include <string>

#include "host/database/Fault.h"
#include "host/editor/SessionState.h"

namespace {

using host::editor::currentState;
using State = host::editor::Session::Implementation;

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
        return state != nullptr && state->documentLocks > 0 ? AcAp::kWrite : AcAp::kNone;
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

    Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode, const ACHAR*,
                                   const ACHAR*, bool) override {
        HOST_CALL("AcApDocManager::lockDocument");
        if (document == nullptr || document != curDocument()) return Acad::eInvalidInput;
        ++currentState()->documentLocks;
        return Acad::eOk;
    }
    Acad::ErrorStatus unlockDocument(AcApDocument* document) override {
        HOST_CALL("AcApDocManager::unlockDocument");
        if (document == nullptr || document != curDocument() ||
            currentState()->documentLocks == 0) {
            return Acad::eInvalidInput;
        }
        --currentState()->documentLocks;
        return Acad::eOk;
    }
    Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text, bool, bool,
                                          bool) override {
        HOST_CALL("AcApDocManager::sendStringToExecute");
        if (document == nullptr || document != curDocument() || text == nullptr)
            return Acad::eInvalidInput;
        currentState()->sendString(text);
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
