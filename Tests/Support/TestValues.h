#pragma once

#include <Tov/Core/Library.h>
#include <Tov/Core/ValueObject.h>

// Small value classes for tests of the object model, standing in for the
// library's own value classes.
namespace tov::test
{

/** One integer, saved as an integer State. */
class TestInteger : public ValueObject<int64_t>
{
public:
    TOV_DECLARE_CLASS (TestInteger, Object)
    using ValueObject::ValueObject;
};

/** One text, saved as a string State. */
class TestText : public ValueObject<juce::String>
{
public:
    TOV_DECLARE_CLASS (TestText, Object)
    using ValueObject::ValueObject;
};

/** A value that never equals anything but itself. */
class Incomparable : public Object
{
public:
    TOV_DECLARE_CLASS (Incomparable, Object)
    bool equalsSameClass (const Object&) const override { return false; }
};

/** Base of the test hierarchy, with class attributes. */
class Shape : public Object
{
public:
    TOV_DECLARE_CLASS (Shape, Object)

    TestText title;
    TestInteger width;
};

/** First level of inheritance. */
class Rectangle : public Shape
{
public:
    TOV_DECLARE_CLASS (Rectangle, Shape)

    TestInteger height;
    Incomparable marker;
};

/** Second level of inheritance. */
class RoundedRectangle : public Rectangle
{
public:
    TOV_DECLARE_CLASS (RoundedRectangle, Rectangle)

    TestInteger cornerRadius;
};

/** A class without variables. */
class Empty : public Object
{
public:
    TOV_DECLARE_CLASS (Empty, Object)
};

/** A parent that lets none of its variables be edited: what it holds is read-only. */
class ReadOnlyParent : public Object
{
public:
    bool isVariableEditable (const Object*, VariableDependenciesDeclarator&) const override  { return false; }
};

/** A class that cannot be instantiated. */
class AbstractShape : public Object
{
public:
    TOV_DECLARE_CLASS (AbstractShape, Object)
    virtual double getArea() const = 0;
};

/** Heap objects of tests go through deleteThis, as their owners would. */
template <class T>
using Owned = std::unique_ptr<T, ObjectDeleter>;

/** A new object of T's class, as Class::createObject makes it. */
template <class T>
T* create (Object* parent = nullptr)
{
    return static_cast<T*> (T::getStaticClass().createObject (parent));
}

template <class T>
Owned<T> createOwned (Object* parent = nullptr)
{
    return Owned<T> (create<T> (parent));
}

/** A library named "Tests" holding the classes above. */
Library* createTestLibrary();

} // namespace tov::test
