// Commands and the stack that they are registered on.
//
// A command has a group, a global name (called with "_" in front in any language) and a local name.
// All comparisons ignore case. Two groups may hold commands of the same name: the group that was
// added last is asked first.
#pragma once

#include <adesk.h>
#include <rxboiler.h>
#include <rxobject.h>

// How a command runs.
#define ACRX_CMD_MODAL 0x00000000
#define ACRX_CMD_TRANSPARENT 0x00000001
#define ACRX_CMD_USEPICKSET 0x00000002
#define ACRX_CMD_REDRAW 0x00000004
#define ACRX_CMD_NOPERSPECTIVE 0x00000008
#define ACRX_CMD_NOMULTIPLE 0x00000010
#define ACRX_CMD_NOTILEMODE 0x00000020
#define ACRX_CMD_NOPAPERSPACE 0x00000040
#define ACRX_CMD_NOOEM 0x00000100
#define ACRX_CMD_UNDEFINED 0x00000200
#define ACRX_CMD_INPROGRESS 0x00000400
#define ACRX_CMD_DEFUN 0x00000800
#define ACRX_CMD_NONEWSTACK 0x00010000
#define ACRX_CMD_NOINTERNALLOCK 0x00020000
#define ACRX_CMD_DOCREADLOCK 0x00080000
#define ACRX_CMD_DOCEXCLUSIVELOCK 0x00100000
#define ACRX_CMD_SESSION 0x00200000
#define ACRX_CMD_INTERRUPTIBLE 0x00400000
#define ACRX_CMD_NOHISTORY 0x00800000
#define ACRX_CMD_NO_UNDO_MARKER 0x01000000
#define ACRX_CMD_NOBEDIT 0x02000000
#define ACRX_CMD_NOACTIONRECORDING 0x04000000
#define ACRX_CMD_ACTIONMACRO 0x08000000
#define ACRX_CMD_NOINFERCONSTRAINT 0x40000000

using AcRxFunctionPtr = void (*)();

class AcEdUIContext;

// One registered command; owned by the stack.
class AcEdCommand : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcEdCommand);

    virtual const ACHAR* globalName() const = 0;
    virtual const ACHAR* localName() const = 0;
    virtual const ACHAR* groupName() const = 0;
    virtual Adesk::Int32 commandFlags() const = 0;
    virtual AcRxFunctionPtr functionAddr() const = 0;
    virtual AcEdUIContext* UIContext() const = 0;
};

class AcEdCommandStack : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcEdCommandStack);

    // Registers a command. eInvalidInput for a null or empty name or a null function; eDuplicateKey
    // when the group has a command of this global or local name already. `cmd` (may be null) takes
    // the command. `fcode` is -1 but for functions of LISP; `resourceHandle` belongs to the module
    // of the names.
    virtual Acad::ErrorStatus addCommand(const ACHAR* groupName, const ACHAR* globalName,
                                         const ACHAR* localName, Adesk::Int32 flags,
                                         AcRxFunctionPtr function, AcEdUIContext* context = nullptr,
                                         int fcode = -1, void* resourceHandle = nullptr,
                                         AcEdCommand** cmd = nullptr) = 0;

    // Removes a command; its group goes with the last one. eKeyNotFound.
    virtual Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) = 0;

    // Removes a group with all its commands. eKeyNotFound.
    virtual Acad::ErrorStatus removeGroup(const ACHAR* groupName) = 0;

    // The command of this global or (unless `globalLookup`) local name, in all groups; null when
    // there is none.
    virtual AcEdCommand* lookupCmd(const ACHAR* name, bool globalLookup = false) const = 0;
    // The same in one group.
    virtual AcEdCommand* lookupCmd(const ACHAR* groupName, const ACHAR* name,
                                   bool globalLookup = false) const = 0;
};

// The stack; also in acrxSysRegistry() under ACRX_COMMAND_DOCK.
#define ACRX_COMMAND_DOCK ACRX_T("ACAD_REGISTERED_COMMANDS")
AcEdCommandStack* acedRegCmdsPtr();
#define acedRegCmds acedRegCmdsPtr()
