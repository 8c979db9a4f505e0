#pragma once

#include <Tov/Core/Library.h>

// Small value classes for tests of the object model, standing in for the
// library's own value classes.
namespace tov::test
{

/** One integer, saved as an integer State. */
class TestInteger : public Object
{
public:
    TOV_DECLARE_CLASS (TestInteger, Object)

    int64_t get() const noexcept { return value; }
    void set (int64_t newValue, bool notify = true);

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    juce::String toString() const override { return juce::String (value); }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    int64_t value = 0;
};

/** One text, saved as a string State. */
class TestText : public Object
{
public:
    TOV_DECLARE_CLASS (TestText, Object)

    const juce::String& get() const noexcept { return value; }
    void set (const juce::String& newValue, bool notify = true);

    bool equalsSameClass (const Object& other) const override;
    void copyTo (Object& target) const override;
    juce::String toString() const override { return value; }
    void save (ObjectExporter& exporter) const override;
    bool load (ObjectImporter& importer) override;

private:
    juce::String value;
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

/** A class that cannot be instantiated. */
class AbstractShape : public Object
{
public:
    TOV_DECLARE_CLASS (AbstractShape, Object)
    virtual double getArea() const = 0;
};

/** Heap objects of tests go through deleteThis, as their owners would. */
struct ObjectDeleter
{
    void operator() (Object* object) const { object->deleteThis(); }
};

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
