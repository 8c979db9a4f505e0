// Must not compile: only a Method can perform a method.
#include <Tov/Atomic/Integer.h>
#include <Tov/Atomic/String.h>

class Counter : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Counter, Object)
};

TOV_BEGIN_CLASS (Counter)
    TOV_METHOD (describe, tov::String, tov::Integer)
TOV_END_CLASS()
