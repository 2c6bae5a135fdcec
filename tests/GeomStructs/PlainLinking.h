// Linking and closing gaps written down step by step, each search a walk over everything: what the
// faster forms are compared with, bit for bit.
#pragma once

#include <cmath>
#include <limits>
#include <vector>

#include "tests/GeomStructs/PolyArrayShapes.h"

namespace TamLib {

inline bool RingEnds(const Points& line) {
    return line.size() >= 2 && Equals(line.back(), line.front());
}

class PlainLinking {
  public:
    PlainLinking(const LineArray& lines, bool use3d, double tol) : use3d_(use3d) {
        LineArray tidied(lines);
        tidied.Tidy(false, true, false);
        for (const Line& line : tidied) {
            lines_.push_back(line);
            const bool isPoint =
                std::fabs(line.x2 - line.x1) < 0.0001 && std::fabs(line.y2 - line.y1) < 0.0001;
            usable_.push_back(!isPoint || (use3d && std::fabs(line.z2 - line.z1) >= 0.0001));
        }
        const std::vector<double> passes =
            tol < 1e-6 ? std::vector<double>{tol} : std::vector<double>{1e-7, tol};
        for (std::size_t s = 0; s < lines_.size(); ++s)
            if (usable_[s]) result.push_back(Follow(s, passes));
    }

    std::vector<Points> result;

  private:
    Points Follow(std::size_t s, const std::vector<double>& passes) {
        Points line{lines_[s].Start(), lines_[s].End()};
        usable_[s] = false;
        for (const double tolerance : passes)
            for (const bool atTail : {true, false})
                if (Walk(s, tolerance, atTail, line)) return line;
        return line;
    }

    bool Walk(std::size_t s, double tolerance, bool atTail, Points& line) {
        const std::size_t n = lines_.size();
        std::size_t j = s;
        for (std::size_t steps = 0; steps < n; ++steps) {
            j = (j + 1) % n;
            if (!usable_[j]) continue;
            const Point3d place = atTail ? line.back() : line.front();
            Point3d other;
            if (Meets(lines_[j].Start(), place, tolerance)) {
                other = lines_[j].End();
            } else if (Meets(lines_[j].End(), place, tolerance)) {
                other = lines_[j].Start();
            } else {
                continue;
            }
            usable_[j] = false;
            line.insert(atTail ? line.end() : line.begin(), other);
            if (RingEnds(line)) return true;
            steps = static_cast<std::size_t>(-1);
        }
        return false;
    }

    bool Meets(const Point3d& a, const Point3d& b, double tolerance) const {
        return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance &&
               (!use3d_ || std::fabs(a.z - b.z) < tolerance);
    }

    bool use3d_;
    std::vector<Line> lines_;
    std::vector<bool> usable_;
};

struct GapSettings {
    double angle = 0, length = 0, width = 0, zTol = 1;
    const PolyLine* region = nullptr;
    bool closeOpen = false, fromBothEnds = false;
};

class PlainGaps {
  public:
    PlainGaps(const std::vector<Points>& lines, const GapSettings& settings)
        : settings_(settings),
          halfAngle_(settings.angle * 3.141592653589793 / 180.0),
          wedge_(settings.length / std::cos(halfAngle_)),
          reach_(std::max(settings.width, wedge_) + 0.03) {
        std::vector<Points> open;
        for (const Points& line : lines)
            (line.size() < 2 || RingEnds(line) || Text({line[0]}) == Text({line.back()}) ? result
                                                                                         : open)
                .push_back(line);
        PolyArray sorted = MakeArray(open);
        sorted.Sort();
        input_ = PointsOf(sorted);
        while (!input_.empty()) {
            Points line = input_.back();
            input_.pop_back();
            while (JoinAt(line, true) || JoinAt(line, false)) {
            }
            result.push_back(line);
        }
    }

    std::vector<Points> result;

  private:
    struct Candidate {
        int index;
        Point3d place;
    };

    bool Inside(PolyLine ring, const Point3d& point) const {
        ring.Close();
        return ring.Inside(point, false, false) == 1;
    }

    bool Qualifies(const Point3d& e, const Point3d& eInward, const Point3d& q,
                   const Point3d& qInward) const {
        if (std::fabs(q.x - e.x) > reach_ || std::fabs(q.y - e.y) > reach_) return false;
        const bool near = Inside(PolyArray::MakeSquare(e, settings_.width), q) ||
                          Inside(PolyArray::MakeWedge(e, eInward, halfAngle_, wedge_), q) ||
                          Inside(PolyArray::MakeWedge(q, qInward, halfAngle_, wedge_), e);
        return near && std::fabs(q.z - e.z) < settings_.zTol &&
               (settings_.region == nullptr || settings_.region->Inside(q, false, false) == 1);
    }

    static bool Touches(const Point3d& a, const Point3d& b) {
        return std::fabs(a.y - b.y) < 0.0001 && std::fabs(a.x - b.x) < 0.0001;
    }

    std::vector<Candidate> Candidates(const Points& line, bool atTail) const {
        const Point3d e = atTail ? line.back() : line.front();
        const Point3d inward = atTail ? line[line.size() - 2] : line[1];
        std::vector<Candidate> all;
        for (int i = static_cast<int>(input_.size()) - 1; i >= 0; --i) {
            const Points& q = input_[static_cast<std::size_t>(i)];
            if (Touches(q.back(), e)) {
                all.push_back({i, q.back()});
                continue;
            }
            if (Touches(q.front(), e)) {
                all.push_back({i, q.front()});
                continue;
            }
            const bool first = Qualifies(e, inward, q.front(), q[1]);
            if (first) all.push_back({i, q.front()});
            if ((!first || settings_.fromBothEnds) &&
                Qualifies(e, inward, q.back(), q[q.size() - 2]))
                all.push_back({i, q.back()});
        }
        if (settings_.closeOpen) {
            const Point3d other = atTail ? line.front() : line.back();
            const Point3d otherInward = atTail ? line[1] : line[line.size() - 2];
            if (Touches(other, e) || Qualifies(e, inward, other, otherInward))
                all.push_back({-1, other});
        }
        return all;
    }

    // True when something was joined and the work goes on.
    bool JoinAt(Points& line, bool atTail) {
        if (closed_) {
            if (!atTail) closed_ = false;
            return false;
        }
        const std::vector<Candidate> all = Candidates(line, atTail);
        const Candidate* const nearest = Nearest(all, atTail ? line.back() : line.front());
        if (nearest == nullptr) return false;
        const int chosen = nearest->index;
        if (chosen >= 0) {
            Join(line, input_[static_cast<std::size_t>(chosen)]);
            input_.erase(input_.begin() + chosen);
            return true;
        }
        if (!RingEnds(line)) line.push_back(line.front());
        closed_ = atTail;  // the head is not asked any more
        return false;
    }

    // Null when there is none, or none at a distance that is a number below the largest.
    static const Candidate* Nearest(const std::vector<Candidate>& all, const Point3d& e) {
        for (const Candidate& one : all)
            if (Point3d::CompareArray(&e, &one.place) == 0) return &one;
        const Candidate* best = nullptr;
        double least = 1.7976931348623157e308;
        for (const Candidate& one : all)
            if (SquaredDistance(e, one.place) < least) {
                least = SquaredDistance(e, one.place);
                best = &one;
            }
        return best;
    }

    static void Join(Points& line, Points other) {
        const double distance[] = {
            Distance(line.back(), other.front()), Distance(line.back(), other.back()),
            Distance(line.front(), other.back()), Distance(line.front(), other.front())};
        int best = 0;
        for (int i = 1; i < 4; ++i)
            if (distance[i] < distance[best]) best = i;
        if (best % 2 == 1) std::reverse(other.begin(), other.end());
        if (best < 2) {
            if (Equals(line.back(), other.front())) line.pop_back();
            line.insert(line.end(), other.begin(), other.end());
        } else {
            if (Equals(line.front(), other.back())) other.pop_back();
            line.insert(line.begin(), other.begin(), other.end());
        }
    }

    GapSettings settings_;
    double halfAngle_, wedge_, reach_;
    std::vector<Points> input_;
    bool closed_ = false;
};

}  // namespace TamLib
