// AcGeTol: the tolerances of comparisons of points and vectors.
#pragma once

class AcGeTol {
  public:
    AcGeTol() = default;

    double equalPoint() const { return m_equalPoint; }
    double equalVector() const { return m_equalVector; }
    void setEqualPoint(double value) { m_equalPoint = value; }
    void setEqualVector(double value) { m_equalVector = value; }

  private:
    double m_equalPoint = 1e-10;
    double m_equalVector = 1e-10;
};
