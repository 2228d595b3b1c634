#pragma once

#include "cff/Type1Drawing.h"
#include "support/FreeTypeFace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include FT_OUTLINE_H

namespace KWTest {

using Contours = std::vector<Contour>;

inline Contour::Point pointOf(const FT_Vector* point) {
    return {static_cast<double>(point->x), static_cast<double>(point->y)};
}

inline Contours contoursOf(FT_Outline& outline) {
    const FT_Outline_Funcs functions{
        [](const FT_Vector* to, void* out) {
            static_cast<Contours*>(out)->push_back({{}, {pointOf(to)}});
            return 0;
        },
        [](const FT_Vector* to, void* out) {
            static_cast<Contours*>(out)->back().line(pointOf(to));
            return 0;
        },
        [](const FT_Vector*, const FT_Vector*, void*) { return 1; },
        [](const FT_Vector* a, const FT_Vector* b, const FT_Vector* to, void* out) {
            static_cast<Contours*>(out)->back().curve(pointOf(a), pointOf(b), pointOf(to));
            return 0;
        },
        0,
        0};
    Contours contours;
    EXPECT_EQ(FT_Outline_Decompose(&outline, &functions, &contours), 0);
    return contours;
}

inline bool isSame(const Contour::Point& a, const Contour::Point& b) {
    return a.x == b.x && a.y == b.y;
}

/// Without lines of no length, which FreeType leaves out.
inline Contour moving(const Contour& contour) {
    Contour out{{}, {contour.points.front()}};
    std::size_t at = 1;
    for (const char shape : contour.shape) {
        if (shape == 'C') {
            out.curve(contour.points[at], contour.points[at + 1], contour.points[at + 2]);
            at += 3;
            continue;
        }
        const Contour::Point& to = contour.points[at++];
        if (!isSame(to, out.points.back()))
            out.line(to);
    }
    return out;
}

/// Also without what closes a contour where it began, and without contours of one point.
inline Contours normal(const Contours& contours) {
    Contours out;
    for (const Contour& contour : contours) {
        Contour kept = moving(contour);
        while (kept.shape.ends_with('L') && isSame(kept.points.back(), kept.points.front())) {
            kept.shape.pop_back();
            kept.points.pop_back();
        }
        if (!kept.shape.empty())
            out.push_back(std::move(kept));
    }
    return out;
}

inline bool isWhole(const Contours& contours) {
    return std::ranges::all_of(contours, [](const Contour& contour) {
        return std::ranges::all_of(contour.points, [](const Contour::Point& point) {
            return isSame(point, {std::floor(point.x), std::floor(point.y)});
        });
    });
}

/// The outermost coordinates, left, bottom, right, top.
inline std::array<double, 4> boxOf(const Contours& contours) {
    std::array<double, 4> box{1e9, 1e9, -1e9, -1e9};
    for (const Contour& contour : contours) {
        for (const Contour::Point& point : contour.points) {
            box[0] = std::min(box[0], point.x);
            box[1] = std::min(box[1], point.y);
            box[2] = std::max(box[2], point.x);
            box[3] = std::max(box[3], point.y);
        }
    }
    return box;
}

/// Where two drawings part; empty when they are the same. FreeType cuts fractions off, and lines
/// that are shorter than a unit with them: of such drawings the extents are compared.
inline std::string difference(const Contours& ours, const Contours& theirs) {
    if (!isWhole(ours)) {
        const auto box = boxOf(ours);
        const auto theirBox = boxOf(theirs);
        for (std::size_t i = 0; i < box.size(); ++i) {
            if (std::fabs(box[i] - theirBox[i]) > 1)
                return "box " + std::to_string(i);
        }
        return {};
    }
    if (ours.size() != theirs.size())
        return std::to_string(ours.size()) + " and " + std::to_string(theirs.size()) + " contours";
    for (std::size_t i = 0; i < ours.size(); ++i) {
        if (ours[i].shape != theirs[i].shape)
            return ours[i].shape + " and " + theirs[i].shape;
        for (std::size_t k = 0; k < ours[i].points.size(); ++k) {
            if (!isSame(ours[i].points[k], theirs[i].points[k]))
                return "contour " + std::to_string(i) + " point " + std::to_string(k);
        }
    }
    return {};
}

} // namespace KWTest
