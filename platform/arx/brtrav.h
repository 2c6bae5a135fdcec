// AcBrTraverser: what walks over the parts of a part of a body, one after the other. A traverser
// that was not set stands at its end.
#pragma once

#include <brent.h>

class AcBrTraverser : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcBrTraverser);

    Adesk::Boolean done() const { return m_at >= m_count; }
    // eNotApplicable at the end.
    AcBr::ErrorStatus next();

  protected:
    friend struct AcBrImpAccess;
    std::shared_ptr<const AcBrImpBody> m_body;
    std::size_t m_face = 0, m_loop = 0;  // whose parts these are
    std::size_t m_at = 0, m_count = 0;
};
