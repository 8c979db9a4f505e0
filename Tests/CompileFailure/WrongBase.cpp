// Must not compile: the declaration names a base that the class does not derive from.
#include <Tov/Atomic/String.h>

class Unrelated : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Unrelated, tov::String)
};

TOV_BEGIN_CLASS (Unrelated)
TOV_END_CLASS()
