#ifndef KEZTESTHELPERS_H
#define KEZTESTHELPERS_H

// Helpers shared by the tests: building sets of points and raw arrays,
// comparing coordinates, reading vertexes out of flat coordinate arrays,
// streaming a value alone and catching the exception that a piece of code
// throws. Header-only, in namespace KEZTest; a test that includes it links
// the mathematics and system libraries.

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>
#include <KEZSysOutOfBoundsException.h>

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QList>
#include <QMetaType>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <vector>

namespace KEZTest {

// A set holding the given points in the given order.
inline KEZMathSetOfPoints Points(std::initializer_list<KEZMathPoint> points)
{
    KEZMathSetOfPoints set;
    for (const KEZMathPoint &point : points)
        set.append(point);
    return set;
}

// Expects each coordinate of a point or a vector to be exactly the one given.
template <typename Coordinates>
void ExpectCoordinates(const Coordinates &actual, double x, double y, double z)
{
    EXPECT_EQ(actual.GetX(), x);
    EXPECT_EQ(actual.GetY(), y);
    EXPECT_EQ(actual.GetZ(), z);
}

// Expects each coordinate of a point or a vector within tolerance of the one
// given.
template <typename Coordinates>
void ExpectCoordinatesNear(const Coordinates &actual, double x, double y, double z, double tolerance)
{
    EXPECT_NEAR(actual.GetX(), x, tolerance);
    EXPECT_NEAR(actual.GetY(), y, tolerance);
    EXPECT_NEAR(actual.GetZ(), z, tolerance);
}

inline void ExpectPoint(const KEZMathPoint &actual, double x, double y, double z)
{
    ExpectCoordinates(actual, x, y, z);
}

inline void ExpectVector(const KEZMathVector &actual, double x, double y, double z)
{
    ExpectCoordinates(actual, x, y, z);
}

inline void ExpectPointNear(const KEZMathPoint &actual, double x, double y, double z, double tolerance)
{
    ExpectCoordinatesNear(actual, x, y, z, tolerance);
}

inline void ExpectVectorNear(const KEZMathVector &actual, double x, double y, double z, double tolerance)
{
    ExpectCoordinatesNear(actual, x, y, z, tolerance);
}

// The point whose coordinates stand at 3 * index, 3 * index + 1 and
// 3 * index + 2 of a flat coordinate array.
inline KEZMathPoint VertexAt(const QList<double> &coords, qsizetype index)
{
    return KEZMathPoint(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

// The vector stored like VertexAt's point.
inline KEZMathVector VectorAt(const QList<double> &coords, qsizetype index)
{
    return KEZMathVector(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

// A new[]-allocated copy of the values, for the constructors that take
// ownership of a raw array. A braced list of values makes an array of double.
template <typename T = double>
T *NewArray(const std::vector<T> &values)
{
    auto *array = new T[values.size()];
    std::copy(values.begin(), values.end(), array);
    return array;
}

// The bytes of one value written alone to a fresh stream with the given byte
// order and the stream's default version.
template <typename T>
QByteArray StreamedAlone(const T &value, QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(order);
    out << value;
    return bytes;
}

// Runs function and gives the Exception it throws, or nothing when it throws
// none. Other exceptions pass through and fail the test.
template <typename Exception, typename Function>
std::optional<Exception> ThrownBy(Function function)
{
    try {
        function();
    } catch (const Exception &exception) {
        return exception;
    }
    return std::nullopt;
}

template <typename Function>
std::optional<KEZSysOutOfBoundsException> OutOfBoundsThrownBy(Function function)
{
    return ThrownBy<KEZSysOutOfBoundsException>(function);
}

// Expects the refusal of a side count below one: an exception carrying the
// count as an int, an int lower limit of 1 that is included, and no upper
// limit (whose flag stays included).
inline void ExpectSideCountRefused(const std::optional<KEZSysOutOfBoundsException> &exception, int count)
{
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue().typeId(), QMetaType::Int);
    EXPECT_EQ(exception->GetValue().toInt(), count);
    EXPECT_EQ(exception->GetLowerLimit().typeId(), QMetaType::Int);
    EXPECT_EQ(exception->GetLowerLimit().toInt(), 1);
    EXPECT_FALSE(exception->GetUpperLimit().isValid());
    EXPECT_TRUE(exception->IsLowerLimitIncluded());
    EXPECT_TRUE(exception->IsUpperLimitIncluded());
}

} // namespace KEZTest

#endif // KEZTESTHELPERS_H
