#pragma once

#include "MemoryBuffer.h"
#include "../Core/StateObjectExporter.h"
#include <cstring>
#include <type_traits>

namespace tov
{

/** The metaclass of the typed buffers: the layout that the C++ type fixes becomes the
    default of the variable "layout", so that the class's default object, and every object
    made from it, has that layout rather than BufferLayout's own defaults. */
template <class T>
class VectorBufferClass : public Class
{
public:
    void declareMemberVariables (ExecutionContext& context) override
    {
        Class::declareMemberVariables (context);
        const T sample;
        setVariableAttribute ("layout", "default", new State (*StateObjectExporter::make (sample.getLayout(), 0, false)));
    }
};

/** A memory buffer of elements of one C++ type, each numComponents components of
    componentType, which its layout says.

        Float32Buffer samples;
        samples.append (0.5f);
        samples[0] *= 2.0f;
        samples.changed();

    Sizes and indices here count elements; the byte forms of ResizableBuffer stay reachable
    through a ResizableBuffer reference. Typed edits do not notify: call changed() once a
    batch of them is done.
*/
template <class Type, int numComponents, BufferComponentTypeEnum componentType>
class VectorBuffer : public MemoryBuffer
{
public:
    static_assert (std::is_trivially_copyable_v<Type>, "the elements of a buffer are bytes");

    template <class Derived> using MetaclassFamily = VectorBufferClass<Derived>;

    static constexpr uint64_t elementSize = sizeof (Type);

    VectorBuffer()                                   { getLayout().setLayout ((uint64_t) numComponents, componentType, 0, elementSize, false); }

    int64_t size() const noexcept                    { return (int64_t) (getSizeInBytes() / elementSize); }
    void resize (int64_t numElements)                { MemoryBuffer::resize ((uint64_t) numElements * elementSize, false); }
    void reserve (int64_t numElements)               { MemoryBuffer::reserve ((uint64_t) numElements * elementSize); }
    void append (const Type& value)                  { std::memcpy (appendToBuffer (elementSize), &value, elementSize); }
    void popBack()                                   { if (size() > 0) resize (size() - 1); }
    /** Holds exactly these elements. */
    void copyFrom (const Type* values, int64_t numElements)
    {
        resize (numElements);
        if (numElements > 0)
            std::memcpy (getData(), values, (size_t) numElements * elementSize);
    }

    Type* getData() noexcept                         { return static_cast<Type*> (getBytes()); }
    const Type* getData() const noexcept             { return static_cast<const Type*> (getBytes()); }
    const Type& get (int64_t index) const            { return getData()[index]; }
    Type& operator[] (int64_t index)                 { return getData()[index]; }
    const Type& operator[] (int64_t index) const     { return getData()[index]; }
    Type& back()                                     { return getData()[size() - 1]; }
    void set (int64_t index, const Type& value)      { getData()[index] = value; }
};

} // namespace tov
