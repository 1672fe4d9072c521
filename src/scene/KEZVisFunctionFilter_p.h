#ifndef KEZVISFUNCTIONFILTER_P_H
#define KEZVISFUNCTIONFILTER_P_H

// Private record of KEZVisFunctionFilter, held beside that of its base.

#include <functional>

class KEZVisObject;

class KEZVisFunctionFilterPrivate
{
public:
    std::function<bool(const KEZVisObject *)> function;
};

#endif // KEZVISFUNCTIONFILTER_P_H
