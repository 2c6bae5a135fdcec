// AcGeScale3d: scale factors along three axes.
#pragma once

class AcGeScale3d {
  public:
    AcGeScale3d() = default;
    explicit AcGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
    AcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}

    bool operator==(const AcGeScale3d& s) const { return sx == s.sx && sy == s.sy && sz == s.sz; }
    bool operator!=(const AcGeScale3d& s) const { return !(*this == s); }

    double sx = 1.0;
    double sy = 1.0;
    double sz = 1.0;
};
