// What the boundary reader answers: statuses of the host's list under names of its own.
#pragma once

#include <acadstrc.h>

namespace AcBr {

enum ErrorStatus {
    eOk = Acad::eOk,
    eNotImplementedYet = Acad::eNotImplementedYet,
    eNotApplicable = Acad::eNotApplicable,
    eInvalidInput = Acad::eInvalidInput,
    eOutOfMemory = Acad::eOutOfMemory,
    eNullObjectPointer = Acad::eNullObjectPointer,
    eNullObjectId = Acad::eNullObjectId,
    eInvalidObjectId = Acad::eInvalidObjectId,
    eWrongObjectType = Acad::eWrongObjectType
};

// How much is checked when an object of the reader is used: everything, or nothing.
enum ValidationLevel { kFullValidation = 0, kNoValidation = 1 };

}  // namespace AcBr
