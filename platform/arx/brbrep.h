// AcBrBrep: the boundary of a body: its faces, their loops, the edges of those.
#pragma once

#include <brent.h>

class AcBrBrep : public AcBrEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcBrBrep);
};
