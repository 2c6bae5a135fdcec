// What holds whatever is linked, chained, joined, thinned, taken apart and stored.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdio>
#include <memory>
#include <set>

#include "tests/GeomStructs/PolyArrayShapes.h"

namespace TamLib {
namespace {

Point3d AnyVertex(int size, bool onMap) {
    const auto coordinate = [size] { return *rc::gen::inRange(0, size) * 1.0; };
    Point3d p(coordinate(), coordinate(), *rc::gen::inRange(0, 2) * 1.0);
    if (onMap) p += Point3d(25e6, 7e6, 0);
    return p;
}

Points AnyPoints(int least, int most, int size, bool onMap) {
    Points points(static_cast<std::size_t>(*rc::gen::inRange(least, most + 1)));
    for (Point3d& p : points) p = AnyVertex(size, onMap);
    return points;
}

// The same at one height, where what is the same in plan is the same.
Points AnyFlatPoints(int least, int most, int size, bool onMap) {
    Points points = AnyPoints(least, most, size, onMap);
    for (Point3d& p : points) p.z = 0;
    return points;
}

std::vector<Points> AnyPieces(int size, bool onMap) {
    std::vector<Points> pieces(static_cast<std::size_t>(*rc::gen::inRange(1, 15)));
    for (Points& piece : pieces) piece = AnyPoints(2, 5, size, onMap);
    return pieces;
}

RC_GTEST_PROP(PolyArrayLaws, LinkingUsesEveryLineOnce, (bool onMap)) {
    // Different lines in plan, of some length.
    std::set<std::string> seen;
    LineArray lines;
    std::vector<Points> used;
    for (int i = *rc::gen::inRange(0, 40); i > 0; --i) {
        Point3d a = AnyVertex(5, onMap), b = AnyVertex(5, onMap);
        a.z = b.z = 0;
        if (Equals2d(a, b) || !seen.insert(Text({a, b})).second) continue;
        lines.Append(Line(a, b));
        used.push_back({a, b});
    }
    const PolyArray linked(lines, *rc::gen::arbitrary<bool>(), 0.001);
    RC_ASSERT(Edges(PointsOf(linked)) == Edges(used));
    RC_ASSERT(linked.ToLines().count == lines.count);
}

RC_GTEST_PROP(PolyArrayLaws, NoTwoOpenEndsOfLinkedLinesMeet, (bool onMap)) {
    LineArray lines;
    for (int i = *rc::gen::inRange(0, 40); i > 0; --i)
        lines.Append(Line(AnyVertex(6, onMap), AnyVertex(6, onMap)));
    const PolyArray linked(lines, true, 0.001);
    for (std::uint32_t i = 0; i < linked.count; ++i)
        for (std::uint32_t j = 0; j < i; ++j) {
            const PolyLine &a = *linked.data[i], &b = *linked.data[j];
            if (a.IsClosed() || b.IsClosed()) continue;
            for (const Point3d& p : {a[0], a[-1]})
                for (const Point3d& q : {b[0], b[-1]}) RC_ASSERT(!Equals(p, q));
        }
}

RC_GTEST_PROP(PolyArrayLaws, ChainingUsesEveryPieceOnce, (bool onMap)) {
    std::vector<Points> pieces(static_cast<std::size_t>(*rc::gen::inRange(1, 15)));
    for (Points& piece : pieces) piece = AnyFlatPoints(2, 5, 6, onMap);
    PolyArray array = MakeArray(pieces);
    const PolyLine chain(array);
    // Each piece but for near duplicates, and edges between them.
    std::vector<std::string> left = Edges({PointsOf(chain)});
    for (const Points& piece : pieces) {
        PolyLine cleaned = MakeLine(piece);
        cleaned.RemoveNearDuplicates(1e-7);
        for (const std::string& edge : Edges({PointsOf(cleaned)})) {
            const auto found = std::find(left.begin(), left.end(), edge);
            RC_ASSERT(found != left.end());
            left.erase(found);
        }
    }
    RC_ASSERT(left.size() <= pieces.size());
    for (const PolyLine* piece : array) RC_ASSERT(piece->maxPoint.x == -1.0);
}

RC_GTEST_PROP(PolyArrayLaws, ChainingUsesEveryLineOnce, (bool onMap)) {
    std::vector<Line> all;
    for (int i = *rc::gen::inRange(1, 25); i > 0; --i)
        all.emplace_back(AnyVertex(6, onMap), AnyVertex(6, onMap));
    LineArray lines = MakeLines(all);
    const PolyLine chain(lines);
    std::vector<std::string> left = Edges({PointsOf(chain)});
    for (const Line& line : all) {
        const auto found =
            std::find(left.begin(), left.end(), Edges({{line.Start(), line.End()}}).front());
        RC_ASSERT(found != left.end());
        left.erase(found);
    }
    RC_ASSERT(left.size() <= all.size());
    for (const Line& line : lines) RC_ASSERT(line.valid == 0);
}

RC_GTEST_PROP(PolyArrayLaws, JoiningKeepsAllEdgesAndAddsOneAtMost, (bool onMap)) {
    const Points a = AnyPoints(1, 6, 3, onMap), b = AnyPoints(1, 6, 3, onMap);
    const PolyLine joined = MakeLine(a).Join(MakeLine(b));
    const std::vector<std::string> edges = Edges({PointsOf(joined)}), parts = Edges({a, b});
    RC_ASSERT(std::includes(edges.begin(), edges.end(), parts.begin(), parts.end()));
    const bool meet = Equals(a.front(), b.front()) || Equals(a.back(), b.front()) ||
                      Equals(a.back(), b.back()) || Equals(a.front(), b.back());
    RC_ASSERT(joined.count == a.size() + b.size() - (meet ? 1 : 0));
    RC_ASSERT(edges.size() == parts.size() + (meet ? 0 : 1));
}

RC_GTEST_PROP(PolyArrayLaws, LoopsPutTogetherHaveTheEdgesOfTheLine, (bool onMap)) {
    const Points points = AnyFlatPoints(0, 30, 4, onMap);
    PolyLine line = MakeLine(points);
    const PolyArray loops = line.SplitLoops();
    RC_ASSERT(Edges(PointsOf(loops)) == Edges({points}));
    RC_ASSERT(Text(*loops[-1]) == Text(line));
    // Each but the last comes back to where it began, and nowhere else.
    for (std::uint32_t i = 0; i < loops.count; ++i) {
        const PolyLine& loop = *loops.data[i];
        if (i + 1 < loops.count) RC_ASSERT(Equals2d(loop[0], loop[-1]));
        for (std::uint32_t j = 0; j + 1 < loop.count; ++j)
            for (std::uint32_t k = j + 1; k + 1 < loop.count; ++k)
                RC_ASSERT(!Equals2d(loop.data[j], loop.data[k]));
    }
}

RC_GTEST_PROP(PolyArrayLaws, LoopsOfSelfCrossingsDoNotCrossThemselves, ()) {
    Points points(static_cast<std::size_t>(*rc::gen::inRange(3, 8)));
    for (Point3d& p : points)
        p = {*rc::gen::inRange(0, 1000) * 0.1, *rc::gen::inRange(0, 1000) * 0.1, 0};
    points.push_back(points[0]);
    PolyArray loops;
    MakeLine(points).SplitSelfCrossings(loops);
    for (const PolyLine* loop : loops) {
        PolyArray again;
        loop->SplitSelfCrossings(again);
        RC_ASSERT(again.count == 1u);
    }
}

RC_GTEST_PROP(PolyArrayLaws, SimplifyingMovesNoVertexThatItKeeps, (bool onMap)) {
    const Points points = AnyPoints(3, 40, 30, onMap);
    PolyLine line = MakeLine(points);
    const double deviation = *rc::gen::inRange(0, 20) * 0.5;
    const int kept = line.Simplify(deviation, *rc::gen::inRange(0, 3) * 10.0);
    RC_ASSERT(kept <= static_cast<int>(points.size()));
    RC_ASSERT(Text({line[0]}) == Text({points[0]}));
    // A subsequence of what was there.
    std::size_t at = 0;
    for (const Point3d& vertex : line) {
        while (at < points.size() && Text({points[at]}) != Text({vertex})) ++at;
        RC_ASSERT(at++ < points.size());
    }
}

RC_GTEST_PROP(PolyArrayLaws, ClosingGapsKeepsAllEdges, (bool onMap)) {
    const std::vector<Points> pieces = AnyPieces(9, onMap);
    PolyArray array = MakeArray(pieces);
    array.CloseGaps(*rc::gen::inRange(0, 80), *rc::gen::inRange(0, 4), *rc::gen::inRange(0, 4), 0.5,
                    nullptr, *rc::gen::arbitrary<bool>(), *rc::gen::arbitrary<bool>());
    const std::vector<std::string> edges = Edges(PointsOf(array)), parts = Edges(pieces);
    RC_ASSERT(std::includes(edges.begin(), edges.end(), parts.begin(), parts.end()));
    RC_ASSERT(array.count <= pieces.size());
}

RC_GTEST_PROP(PolyArrayLaws, WhatIsSavedIsLoaded, (bool onMap)) {
    std::vector<Points> all(static_cast<std::size_t>(*rc::gen::inRange(0, 8)));
    for (Points& points : all) points = AnyPoints(0, 6, 100, onMap);
    const PolyArray array = MakeArray(all);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
    RC_ASSERT(array.Save(file.get()) == static_cast<int>(all.size()));
    std::rewind(file.get());
    PolyArray read;
    RC_ASSERT(read.Load(file.get()) == static_cast<int>(all.size()));
    RC_ASSERT(Text(read) == Text(array));
    RC_ASSERT(read.Hash() == array.Hash());
}

}  // namespace
}  // namespace TamLib
