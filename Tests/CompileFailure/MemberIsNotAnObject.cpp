// Must not compile: only reflected objects can be member variables.
#include <Tov/Core/Object.h>

class Holder : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Holder, Object)

    int count = 0;
};

TOV_BEGIN_CLASS (Holder)
    TOV_VARIABLE (count)
TOV_END_CLASS()
