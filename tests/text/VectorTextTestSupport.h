#ifndef VECTORTEXTTESTSUPPORT_H
#define VECTORTEXTTESTSUPPORT_H

// Helpers of the vector font and text tests: comparing strokes, and a plain
// model of how a glyph record's coordinates become strokes, written from the
// rules of the file format for the tests' own use.

#include "KEZTestHelpers.h"

#include <KEZMathPoint2D.h>
#include <KEZMathSetOfPoints2D.h>

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

namespace KEZTextTest {

using Stroke = std::vector<std::pair<double, double>>;

// Expects the stroke to hold exactly these points, coordinate by coordinate.
inline void ExpectPolyline(const KEZMathSetOfPoints2D &actual, const Stroke &expected)
{
    ASSERT_EQ(actual.size(), qsizetype(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual.at(qsizetype(i)).GetX(), expected[i].first) << "point " << i;
        EXPECT_EQ(actual.at(qsizetype(i)).GetY(), expected[i].second) << "point " << i;
    }
}

// Equal, or both NaN.
inline bool SameValue(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

// True when the stroke holds exactly these points; NaN matches NaN.
inline bool SamePolyline(const KEZMathSetOfPoints2D &actual, const Stroke &expected)
{
    if (actual.size() != qsizetype(expected.size()))
        return false;
    for (size_t i = 0; i < expected.size(); ++i) {
        if (!SameValue(actual.at(qsizetype(i)).GetX(), expected[i].first)
            || !SameValue(actual.at(qsizetype(i)).GetY(), expected[i].second))
            return false;
    }
    return true;
}

inline bool IsAsciiSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// The numbers of a coordinate text: runs of non-space bytes.
inline QList<QByteArray> Tokens(const QByteArray &text)
{
    QList<QByteArray> tokens;
    QByteArray token;
    for (char c : text) {
        if (IsAsciiSpace(c)) {
            if (!token.isEmpty())
                tokens.append(token);
            token.clear();
        } else {
            token.append(c);
        }
    }
    if (!token.isEmpty())
        tokens.append(token);
    return tokens;
}

// The strokes that coordinate text must give: complete pairs only, split at
// pairs with both coordinates negative and equal, no empty strokes.
inline std::vector<Stroke> ExpectedStrokes(const QByteArray &coordinates)
{
    const QList<QByteArray> tokens = Tokens(coordinates);
    std::vector<Stroke> strokes;
    Stroke current;
    for (qsizetype i = 0; i + 1 < tokens.size(); i += 2) {
        const double x = tokens.at(i).toDouble();
        const double y = tokens.at(i + 1).toDouble();
        if (x < 0 && y < 0 && x == y) {
            if (!current.empty())
                strokes.push_back(current);
            current.clear();
        } else {
            current.emplace_back(x, y);
        }
    }
    if (!current.empty())
        strokes.push_back(current);
    return strokes;
}

} // namespace KEZTextTest

#endif // VECTORTEXTTESTSUPPORT_H
