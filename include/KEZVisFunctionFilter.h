#ifndef KEZVISFUNCTIONFILTER_H
#define KEZVISFUNCTIONFILTER_H

#include "KEZVisSelectionFilter.h"

#include <functional>

class KEZVisFunctionFilterPrivate;

/*!
    A filter that asks a function.

    IsSelectable() calls a copy of the function given to the constructor with
    the object. An empty function raises std::bad_function_call there.
*/
class KEZVISUALIZATION_EXPORT KEZVisFunctionFilter : public KEZVisSelectionFilter
{
    Q_OBJECT

public:
    //! A filter without parent that keeps a copy of \a function; \a multiSelection is fixed for its life.
    KEZVisFunctionFilter(bool multiSelection, const std::function<bool(const KEZVisObject *)> &function);
    ~KEZVisFunctionFilter() override;

    //! The function's answer for \a object; std::bad_function_call if the function is empty.
    bool IsSelectable(const KEZVisObject *object) const override;

private:
    Q_DECLARE_PRIVATE_D(d_function, KEZVisFunctionFilter)
    Q_DISABLE_COPY(KEZVisFunctionFilter)
    KEZVisFunctionFilterPrivate *d_function;
};

#endif // KEZVISFUNCTIONFILTER_H
