#pragma once

#include "Object.h"
#include "ObjectExporter.h"
#include "ObjectImporter.h"
#include <cstring>
#include <type_traits>

namespace tov
{

/** How the value of a value class compares, prints, saves and loads.

    The primary template only compares with ==. The specialisations below give the types
    that State holds natively their saved form; a value class over any other type writes
    its own save, load and toString.
*/
template <class T>
struct ValueTraits
{
    static bool equals (const T& a, const T& b)  { return a == b; }
};

template <>
struct ValueTraits<bool>
{
    static bool equals (bool a, bool b)                              { return a == b; }
    static juce::String toString (bool value)                        { return value ? "true" : "false"; }
    static void save (ObjectExporter& exporter, bool value)          { exporter.writeBoolean (value); }
    static bool load (ObjectImporter& importer, bool& value)         { return importer.readBoolean (value); }
    static juce::var toJson (bool value)                             { return value; }
    static bool fromJson (const juce::var& json)                     { return (bool) json; }
};

template <>
struct ValueTraits<int64_t>
{
    static bool equals (int64_t a, int64_t b)                        { return a == b; }
    static juce::String toString (int64_t value)                     { return juce::String (value); }
    static void save (ObjectExporter& exporter, int64_t value)       { exporter.writeInteger (value); }
    static bool load (ObjectImporter& importer, int64_t& value)      { return importer.readInteger (value); }
    static juce::var toJson (int64_t value)                          { return (juce::int64) value; }
    static int64_t fromJson (const juce::var& json)                  { return (juce::int64) json; }
};

template <>
struct ValueTraits<double>
{
    /** By bit pattern, as States compare reals: NaN equals itself, so saving can prune it. */
    static bool equals (double a, double b)                          { return std::memcmp (&a, &b, sizeof (double)) == 0; }
    static juce::String toString (double value)                      { return juce::String (value); }
    static void save (ObjectExporter& exporter, double value)        { exporter.writeReal (value); }
    static bool load (ObjectImporter& importer, double& value)       { return importer.readReal (value); }
    static juce::var toJson (double value)                           { return value; }
    static double fromJson (const juce::var& json)                   { return (double) json; }
};

template <>
struct ValueTraits<juce::String>
{
    static bool equals (const juce::String& a, const juce::String& b)        { return a == b; }
    static juce::String toString (const juce::String& value)                 { return value; }
    static void save (ObjectExporter& exporter, const juce::String& value)   { exporter.writeString (value); }
    static bool load (ObjectImporter& importer, juce::String& value)         { return importer.readString (value); }
    static juce::var toJson (const juce::String& value)                      { return value; }
    static juce::String fromJson (const juce::var& json)                     { return json.toString(); }
};

template <>
struct ValueTraits<std::shared_ptr<State>>
{
    /** By content: two trees with the same nodes are the same value. */
    static bool equals (const std::shared_ptr<State>& a, const std::shared_ptr<State>& b)  { return State::equals (a, b); }
    static juce::String toString (const std::shared_ptr<State>& value)                     { return value != nullptr ? value->toShortString() : juce::String(); }
    static void save (ObjectExporter& exporter, const std::shared_ptr<State>& value)       { exporter.writeState (value); }
    static bool load (ObjectImporter& importer, std::shared_ptr<State>& value)             { return importer.readState (value); }
};

/** True when ValueTraits<T> gives T a saved form and a text. */
template <class T, class = void>
struct HasStateForm : std::false_type {};

template <class T>
struct HasStateForm<T, std::void_t<decltype (ValueTraits<T>::save (std::declval<ObjectExporter&>(), std::declval<const T&>()))>>
    : std::true_type {};

/** True when ValueTraits<T> converts T to and from a juce::var. */
template <class T, class = void>
struct HasJsonForm : std::false_type {};

template <class T>
struct HasJsonForm<T, std::void_t<decltype (ValueTraits<T>::fromJson (std::declval<const juce::var&>()))>>
    : std::true_type {};

//==============================================================================
/** The base of a class that holds one value of type T.

    get, set with its notification, comparison, copying, and for the types of ValueTraits
    saving, loading and toString, all come from here, so that a value class states only
    what is its own:

        class Count : public ValueObject<int64_t>
        {
        public:
            TOV_DECLARE_CLASS (Count, Object)
            using ValueObject::ValueObject;
        };

    Base is the reflected base class (Object, Number, ...). The template declares no class
    of its own: the class tree stays the one the declarations name.
*/
template <class T, class Base = Object>
class ValueObject : public Base
{
public:
    using ValueType = T;
    /** Scalars go by value, everything else by reference. */
    using ParameterType = std::conditional_t<std::is_scalar_v<T>, T, const T&>;

    ValueObject() = default;
    explicit ValueObject (ParameterType value) : value (value) {}

    ParameterType get() const noexcept               { return value; }

    /** Stores and, with notify, calls changed(); nothing happens when the value is the same. */
    virtual void set (ParameterType newValue, bool notify = true)
    {
        if (ValueTraits<T>::equals (newValue, value))
            return;
        value = newValue;
        if (notify)
            this->changed();
    }

    bool equalsSameClass (const Object& other) const override
    {
        return ValueTraits<T>::equals (value, static_cast<const ValueObject&> (other).value);
    }

    void copyTo (Object& target) const override
    {
        this->copyClassTo (target);
        if (auto* copy = dynamic_cast<ValueObject*> (&target))
            copy->value = value;
    }

    juce::String toString() const override
    {
        if constexpr (HasStateForm<T>::value)
            return ValueTraits<T>::toString (value);
        else
            return Base::toString();
    }

    void save (ObjectExporter& exporter) const override
    {
        if constexpr (HasStateForm<T>::value)
            ValueTraits<T>::save (exporter, value);
        else
            Base::save (exporter);
    }

    /** Reads into a copy and sets it, so that a failed read leaves the value as it was. */
    bool load (ObjectImporter& importer) override
    {
        if constexpr (HasStateForm<T>::value)
        {
            T newValue = value;
            if (! ValueTraits<T>::load (importer, newValue))
                return false;
            set (newValue);
            return true;
        }
        else
        {
            return Base::load (importer);
        }
    }

    /** The value itself for the types that a juce::var holds; the variables' object otherwise. */
    juce::var saveToJson (uint32_t flags) const override
    {
        if constexpr (HasJsonForm<T>::value)
            return ValueTraits<T>::toJson (value);
        else
            return Base::saveToJson (flags);
    }

    /** Converts whatever the var holds and sets it with notification; never fails. */
    bool loadFromJson (ExecutionContext& context, const juce::var& json) override
    {
        if constexpr (HasJsonForm<T>::value)
        {
            set (ValueTraits<T>::fromJson (json));
            return true;
        }
        else
        {
            return Base::loadFromJson (context, json);
        }
    }

protected:
    T value {};
};

} // namespace tov
