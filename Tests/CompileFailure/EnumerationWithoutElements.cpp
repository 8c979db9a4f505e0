// Must not compile: a class declared with Enumeration as base is an enumeration, and lists
// its elements.
#include <Tov/Atomic/Enumeration.h>

class Colour : public tov::Enumeration
{
public:
    TOV_DECLARE_CLASS (Colour, Enumeration)
};

TOV_BEGIN_CLASS (Colour)
TOV_END_CLASS()
