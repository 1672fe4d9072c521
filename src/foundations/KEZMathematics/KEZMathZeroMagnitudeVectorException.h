#ifndef KEZMATHZEROMAGNITUDEVECTOREXCEPTION_H
#define KEZMATHZEROMAGNITUDEVECTOREXCEPTION_H

#include "kezmathematics_export.h"

#include <KEZSysException.h>

/*!
    A vector without magnitude was given where a direction is needed: a view
    vector, the normal of a plane or circle, the direction that a frame turns
    about. Its message is "vector has zero magnitude".
*/
class KEZMATHEMATICS_EXPORT KEZMathZeroMagnitudeVectorException : public KEZSysException
{
public:
    KEZMathZeroMagnitudeVectorException();
    KEZMathZeroMagnitudeVectorException(const KEZMathZeroMagnitudeVectorException &other);
    KEZMathZeroMagnitudeVectorException &operator=(const KEZMathZeroMagnitudeVectorException &other);
    ~KEZMathZeroMagnitudeVectorException() override;

    void raise() const override;
    KEZMathZeroMagnitudeVectorException *clone() const override;
};

#endif // KEZMATHZEROMAGNITUDEVECTOREXCEPTION_H
