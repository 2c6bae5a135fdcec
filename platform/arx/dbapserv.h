// What the database asks of the running host, and who the current database is.
#pragma once

#include <dbmain.h>

class AcDbHostApplicationServices : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbHostApplicationServices);

    // The database that commands work on; null when no drawing is open. A database that is
    // destroyed while it is the working one leaves null here.
    AcDbDatabase* workingDatabase() const { return m_workingDatabase; }
    void setWorkingDatabase(AcDbDatabase* database) { m_workingDatabase = database; }

  private:
    AcDbDatabase* m_workingDatabase = nullptr;
};

// Never null.
AcDbHostApplicationServices* acdbHostApplicationServices();
