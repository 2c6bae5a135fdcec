// Open drawings as documents. The host has at most one at a time.
#pragma once

#include <acadstrc.h>
#include <adesk.h>
#include <rxobject.h>

class AcDbDatabase;

namespace AcAp {

enum DocLockMode {
    kNone = 0x00,
    kAutoWrite = 0x01,
    kNotLocked = 0x02,
    kWrite = 0x04,
    kProtectedAutoWrite = 0x14,
    kRead = 0x20,
    kXWrite = 0x40
};

}  // namespace AcAp

class AcApDocument : public AcRxObject {
  public:
    virtual AcDbDatabase* database() const = 0;
    // The drawing's file name, empty for a new one.
    virtual const ACHAR* fileName() const = 0;
    // True when no command is running in it.
    virtual bool isQuiescent() const = 0;
    // The strictest of the locks: kXWrite, kWrite, kProtectedAutoWrite, kAutoWrite, kRead; kNone
    // without one.
    virtual AcAp::DocLockMode myLockMode() const = 0;
};

class AcApDocManager : public AcRxObject {
  public:
    // The document that is worked on; null when none is open.
    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual AcApDocument* document(const AcDbDatabase* database) const = 0;

    // Locks nest, an unlock takes back the last one; those that a command leaves are taken back at
    // its end. eInvalidInput for a document that is not open, a mode that locks nothing (kNone,
    // kNotLocked), and an unlock without a lock.
    virtual Acad::ErrorStatus lockDocument(AcApDocument* document,
                                           AcAp::DocLockMode mode = AcAp::kWrite,
                                           const ACHAR* globalCommandName = nullptr,
                                           const ACHAR* localCommandName = nullptr,
                                           bool prompt = true) = 0;
    virtual Acad::ErrorStatus unlockDocument(AcApDocument* document) = 0;

    // Puts a text behind what is still to be typed at the command line; it is read when the running
    // command has ended. eInvalidInput for a document that is not open or a null text.
    virtual Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                                  bool activate = true,
                                                  bool wrapUpInactiveDoc = false,
                                                  bool echoString = true) = 0;

    // Replies that wait at the command line.
    virtual int inputPending(AcApDocument* document) const = 0;
};

AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()
