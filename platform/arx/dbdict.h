// AcDbDictionary: objects of a database by name. Names are found ignoring case.
#pragma once

#include <dbmain.h>

class AcDbDictionary : public AcDbObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbDictionary);
    AcDbDictionary();

    // eNotOpenForRead, eInvalidInput for null, eKeyNotFound, eWasErased; `id` is untouched then.
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id) const;
    bool has(const ACHAR* name) const;
};
