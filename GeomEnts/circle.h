// Circle: a plan circle with a height, the intermediate form of arc intersections.
//
// Angles are radians, counter-clockwise from +x. Nothing throws; divisions by zero are unguarded.
#pragma once

#include "GeomEnts/Point3d.h"

namespace TamLib {

class Arc;
template <class T>
class Point3dArrayBase;

class Circle {
  public:
    Point3d centre;  // centre.z is the height of the circle
    double radius;

    Circle(const Point3d& circleCentre, double circleRadius);
    // The circle of which an arc is a part: its `Centre` and `Radius`.
    explicit Circle(const Arc& arc);
    // `a` and `b` are a diameter: the centre is their 3D midpoint, the radius half
    // their plan distance.
    Circle(const Point3d& a, const Point3d& b);
    // Through three points in plan. Intended: the height is the mean of the three heights plus the
    // height of the point that the solution starts from: `a`, or `c` when `a` and `b` are within
    // 0.0001 in y, or `b` when `a` and `c` are, or when the ratios dx / dy of both chords are
    // within 0.0001. Points on one line divide by zero.
    Circle(const Point3d& a, const Point3d& b, const Point3d& c);
    // `center()` and `radius()` of an entity whose class is exactly AcDbCircle; then `disposal` 1
    // closes it, 2 erases and closes it, anything else leaves it open. Another class or null gives
    // centre and radius 0, and the entity is left open.
    Circle(AcDbEntity* entity, int disposal);
    // The same of the entity with that id, opened for read and closed; centre and radius 0 when it
    // can't be opened. Intended: it is closed a second time, whose status is ignored.
    explicit Circle(const AcDbObjectId& id);

    // radius^2 * 3.141592653589793.
    double Area() const;
    // Intended: 3.141592653589793 * radius, without the factor 2.
    double Circumference() const;
    // In plan: 1 inside; otherwise, with `touch`, 2 on the circle, the squares of distance and
    // radius differing by less than 0.0001; else 0.
    int Contains(const Point3d& point, bool touch) const;

    // The points in which a segment meets the circle in plan, at the height of the centre; `points`
    // is emptied first (E. Weisstein, "Circle-Line Intersection", MathWorld). A discriminant within
    // 0.0001 of 0 is a tangent and gives the same point twice. Otherwise two points, the one with
    // the larger y first. Points outside the segment's plan box, widened by 1e-9, are left out.
    void Intersect(const Line& line, Point3dArrayBase<Point3d>& points) const;
    // The points in which two circles meet; `points` is emptied first. By the 3D distance of the
    // centres: within 0.0001 of the sum of the radii one point, on the way to the other centre;
    // above the sum none; otherwise two, the one left of that way first. A circle inside the other
    // is not distinguished: it gives the same point twice, on the line of the centres. Circles
    // about one centre, or of radius 0, divide by zero.
    void Intersect(const Circle& other, Point3dArrayBase<Point3d>& points) const;

    // --- Host output.

    // Adds an AcDbCircle to the drawing. For arguments and result see `Line::ToDb`. Throws
    // `TamExpAcad`, "Allocation of AcDbCircle failed", without memory.
    int ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    // Draws 20 chords on the screen, at the height of the centre. Intended: 21 lines, the first
    // without length.
    void Draw(int colour) const;
    // The labels of Point3d at the centre.
    int LabelXYZ(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    int LabelZ(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    int LabelXY(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
};

}  // namespace TamLib
