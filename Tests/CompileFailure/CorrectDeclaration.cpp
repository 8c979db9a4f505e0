// Compiles: the same shapes as the failing declarations beside it, written correctly, so that
// their failures come from the faults alone.
#include <Tov/Atomic/Enumeration.h>
#include <Tov/Atomic/String.h>
#include <Tov/Core/Method.h>

class Related : public tov::String
{
public:
    TOV_DECLARE_CLASS (Related, tov::String)
};

TOV_BEGIN_CLASS (Related)
TOV_END_CLASS()

class Colour : public tov::Enumeration
{
public:
    TOV_DECLARE_CLASS (Colour, Enumeration)
    TOV_ELEMENTS ((red, 0), (green, 1), (blue, 2))
};

TOV_BEGIN_CLASS (Colour)
TOV_END_CLASS()

class Holder : public tov::Object
{
public:
    TOV_DECLARE_CLASS (Holder, Object)

    tov::String name;
};

class DescribeMethod : public tov::Method
{
public:
    TOV_DECLARE_CLASS (DescribeMethod, Method)
    Object* callOnThis (Object&) const override     { return nullptr; }
};

TOV_BEGIN_CLASS (DescribeMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Holder)
    TOV_VARIABLE (name)
    TOV_METHOD (describe, tov::String, DescribeMethod)
TOV_END_CLASS()
