#pragma once

#include "Object.h"
#include <atomic>

namespace tov
{

class ExecutionContext;

/** Conversion between two classes, as an object: one concrete converter class per source and
    target, with one instance each, which ObjectConverters holds and finds.

    A converter's class says what it converts with two class attributes: "source", the class of
    the objects it reads, and "target", the class it makes. A converter usually derives from
    Converter<Source, Target> (ConverterClassGenerators.h), which gives both by inheritance. The
    boolean attribute "secret" keeps it out of the names offered to users.
*/
class ObjectConverter : public Object
{
public:
    TOV_DECLARE_CLASS (ObjectConverter, Object)

    /** The class attribute "target", cached. A converter can compute it from the actual source
        class and the wanted target instead. */
    virtual Class* getTargetClass (Class* sourceClass, Class* wantedClass) const;
    /** The boolean class attribute "secret", false by default. */
    virtual bool isSecret() const;
    /** Whether this object can be converted to that class; true here. */
    virtual bool canConvert (const Object& object, Class* targetClass) const   { return true; }
    /** Writes the conversion of source into target; pure, and false with the reason on the context. */
    virtual bool convert (ExecutionContext& context, const Object& source, Object& target, int64_t argument) const = 0;

    /** The class attribute "source", cached. */
    Class* getSourceClass() const;

    /** The object's class inherits from the source class, the target class is compatible with
        the wanted one, and canConvert holds. */
    bool doesMatch (const Object& object, Class* wantedClass) const;

    /** a inherits from b, or both are applications of one template whose class arguments are
        compatible position by position (OwnedPointer(Derived) with OwnedPointer(Base)). */
    static bool isCompatible (Class* a, Class* b);

    /** The friendly name of the converter's class: the name offered to users. */
    juce::String toString() const override;

    /** A new class clears the caches. */
    void setClass (Class* newClass) override;

private:
    mutable std::atomic<Class*> sourceClass { nullptr };
    mutable std::atomic<Class*> targetClass { nullptr };
};

} // namespace tov
