// Which segment of a street lies nearest to a house, on which side the house stands, and where the
// street leads there.
#include <cstdio>

#include "GeomStructs/PolyLine.h"

int main() {
    TamLib::PolyLine street;
    street.Append({0, 0, 0});
    street.Append({60, 0, 0});
    street.Append({100, 30, 0});
    const TamLib::Point3d house(75, 25, 0);

    double distance = 0;
    int side = 0;  // -1 left of the way, 1 right of it
    const int segment = street.NearestSegment(house, &distance, &side);
    const double middle = street.LengthToVertex(segment) + street.GetSegment(segment).Length() / 2;
    TamLib::Point3d direction;
    street.DirectionAtLength(&direction, middle);

    std::printf("segment %d of %.0f m, %.2f m away on the %s, direction (%.2f, %.2f)\n", segment,
                street.Length(), distance, side < 0 ? "left" : "right", direction.x, direction.y);
}
