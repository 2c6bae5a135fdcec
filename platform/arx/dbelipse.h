// AcDbEllipse: an ellipse or an arc of one; centre and axes in world coordinates.
#pragma once

#include <dbcurve.h>

class AcDbEllipse : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbEllipse);
    AcDbEllipse();
    AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                const AcGeVector3d& majorAxis, double radiusRatio, double startAngle = 0.0,
                double endAngle = 6.28318530717958647692);

    AcGePoint3d center() const;
    AcGeVector3d normal() const;
    // From the centre to the end of the larger axis, and of the smaller one.
    AcGeVector3d majorAxis() const;
    AcGeVector3d minorAxis() const;
    // Smaller axis by larger axis.
    double radiusRatio() const;
    // Parameters of the ends, as in the drawing; the end is taken above the start.
    double startParam() const;
    double endParam() const;
};
