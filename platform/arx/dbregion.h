// AcDbRegion: a bounded plane figure. Its body is kept as the drawing has it.
#pragma once

#include <dbmain.h>

class AcDbRegion : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbRegion);
    AcDbRegion();
};
