// SPDX-License-Identifier: Apache-2.0
//
// The three gestures told a second time, as plainly as possible and without a look at the library: what its recognisers
// are compared with. For gestures whose state nobody sets.
#pragma once

#include <QtWidgets/QGestureRecognizer>

#include <cmath>
#include <vector>

namespace GestureModel {

struct Point
{
    double x = 0;
    double y = 0;
};

inline bool operator==(const Point &a, const Point &b)
{
    return a.x == b.x && a.y == b.y;
}

struct Finger
{
    Point now;
    Point start;
    Point last;
    Point inItem;
    bool isNew = false;
};

/// begin, update, end of a touch; press, move, release, double click of the mouse
enum Kind { Begin, Update, End, Press, Move, Release, DoubleClick };

struct Input
{
    Kind kind = Begin;
    std::vector<Finger> fingers;
    Point mouse;
};

using Result = QGestureRecognizer::Result;
constexpr Result Ignore = QGestureRecognizer::Ignore;
constexpr Result MayBe = QGestureRecognizer::MayBeGesture;
constexpr Result Trigger = QGestureRecognizer::TriggerGesture;
constexpr Result Cancel = QGestureRecognizer::CancelGesture;

inline bool isUsable(const Point &p)
{
    return std::fabs(p.x) <= 1e9 && std::fabs(p.y) <= 1e9;
}

inline bool areUsable(const std::vector<Finger> &fingers)
{
    for (const Finger &finger : fingers) {
        if (!isUsable(finger.now) || !isUsable(finger.start)) {
            return false;
        }
    }
    return true;
}

struct Pan
{
    explicit Pan(int fingerCount)
        : fingers(fingerCount)
    {}

    Result take(const Input &input)
    {
        if (input.kind >= Press && fingers != 1) {
            return Ignore;
        }
        const auto count = input.fingers.size();
        switch (input.kind) {
        case Begin:
            if (count == 0 || !areUsable(input.fingers)) {
                return Ignore;
            }
            start = input.fingers[0].now;
            offset = lastOffset = {};
            startedWith = fingers;
            return MayBe;
        case Update: {
            if (count == 0 || static_cast<int>(count) != startedWith || !areUsable(input.fingers)) {
                return Ignore;
            }
            Point sum;
            for (const Finger &finger : input.fingers) {
                sum.x += finger.now.x - finger.start.x;
                sum.y += finger.now.y - finger.start.y;
            }
            lastOffset = offset;
            offset = {sum.x / startedWith, sum.y / startedWith};
            return std::fabs(offset.x) <= 10 && std::fabs(offset.y) <= 10 ? MayBe : Trigger;
        }
        case Press:
            start = input.mouse;
            offset = lastOffset = {};
            startedWith = 1;
            return MayBe;
        case Move:
        case Release:
            if (startedWith != 1) {
                return Ignore;
            }
            lastOffset = offset;
            offset = {input.mouse.x - start.x, input.mouse.y - start.y};
            return input.kind == Move ? Trigger : Cancel;
        case End:
        case DoubleClick:
            break;
        }
        return Cancel;
    }

    int fingers;
    int startedWith = 0;
    Point start;
    Point offset;
    Point lastOffset;
};

struct Swipe
{
    enum State { None, Started, Moving };

    explicit Swipe(int fingerCount)
        : fingers(fingerCount)
    {}

    void reset()
    {
        horizontal = vertical = 0;
        steps.clear();
        state = None;
    }

    Result take(const Input &input)
    {
        if (input.kind >= Press && fingers != 1) {
            return Ignore;
        }
        switch (input.kind) {
        case Press:
            start = input.mouse;
            Q_FALLTHROUGH();
        case Begin:
            reset();
            state = Started;
            touchCount = fingers;
            return MayBe;
        case Update:
            return touch(input.fingers);
        case Move:
            if (state == None) {
                return Cancel;
            }
            state = Moving;
            return move({input.mouse});
        case End:
        case Release:
        case DoubleClick:
            break;
        }
        return Cancel;
    }

    Result touch(const std::vector<Finger> &touched)
    {
        const int count = static_cast<int>(touched.size());
        if (state == None || count > touchCount) {
            return Cancel;
        }
        if (count < touchCount) {
            bool hasNew = false;
            for (const Finger &finger : touched) {
                hasNew = hasNew || finger.isNew;
            }
            return state == Moving && hasNew ? Cancel : Ignore;
        }
        if (!areUsable(touched)) {
            return Ignore;
        }
        state = Moving;
        start = touched[0].start;
        std::vector<Point> positions;
        for (const Finger &finger : touched) {
            positions.push_back(finger.now);
        }
        return move(positions);
    }

    Result move(const std::vector<Point> &positions)
    {
        bool isUnset = true;
        for (const Point &step : steps) {
            isUnset = isUnset && step == Point{};
        }
        if (isUnset) {
            steps = positions;
        }
        double dx = 0;
        double dy = 0;
        for (size_t i = 0; i < positions.size(); ++i) {
            dx += positions[i].x - steps[i].x;
            dy += positions[i].y - steps[i].y;
        }
        dx /= static_cast<double>(positions.size());
        dy /= static_cast<double>(positions.size());
        if (std::fabs(dx) <= 50 && std::fabs(dy) <= 50) {
            return MayBe;
        }
        steps = positions;
        const bool isBack = turn(vertical, dy, 3, 4);
        return turn(horizontal, dx, 1, 2) || isBack ? Cancel : Trigger;
    }

    static bool turn(int &direction, double length, int negative, int positive)
    {
        const int next = length > 0 ? positive : negative;
        const int previous = direction;
        if (previous == 0 || std::fabs(length) > 6) {
            direction = next;
        }
        return previous != 0 && direction != previous;
    }

    int fingers;
    int touchCount = 0;
    State state = None;
    Point start;
    int horizontal = 0; // 1 left, 2 right
    int vertical = 0;   // 3 up, 4 down
    std::vector<Point> steps;
};

struct Pinch
{
    static double distance(const Point &a, const Point &b) { return std::hypot(a.x - b.x, a.y - b.y); }

    /// Degrees counter-clockwise on a screen, more than -180 to 180.
    static double angle(const Point &a, const Point &b)
    {
        const double degrees = std::atan2(-(b.y - a.y), b.x - a.x) * 180 / M_PI;
        return degrees <= -180 ? degrees + 360 : degrees;
    }

    void reset() { *this = {}; }

    Result take(const Input &input)
    {
        if (input.kind == Begin) {
            reset();
            return MayBe;
        }
        if (input.kind == End) {
            return Cancel;
        }
        if (input.kind != Update) {
            return Ignore;
        }
        if (input.fingers.size() != 2) {
            isNew = true;
            return Ignore;
        }
        const Finger &p1 = input.fingers[0];
        const Finger &p2 = input.fingers[1];
        if (!areUsable(input.fingers) || !isUsable(p1.last) || !isUsable(p2.last)) {
            return Ignore;
        }
        center = {(p1.inItem.x + p2.inItem.x) / 2, (p1.inItem.y + p2.inItem.y) / 2};
        double scale = 1;
        if (!isNew) {
            scale = distance(p1.now, p2.now) / distance(p1.last, p2.last);
            if (!(scale >= 0.1 && scale <= 2)) {
                return Ignore;
            }
        }
        totalScale *= scale;
        const double turned = angle(p1.start, p2.start) - angle(p1.now, p2.now);
        totalRotation += isNew ? turned : turned - rotation;
        rotation = turned;
        isNew = false;
        return Trigger;
    }

    bool isNew = true;
    Point center;
    double totalScale = 1;
    double rotation = 0;
    double totalRotation = 0;
};

} // namespace GestureModel
