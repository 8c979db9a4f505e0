#pragma once

#include "AutoDeclaredSingletons.h"
#include <vector>

namespace tov
{

class ObjectConverter;

/** The registry of converters: one instance of every concrete class derived from
    ObjectConverter, made as each class is initialised and tried in that order.

    It is itself a singleton, made on first use. The Core library registers it with the library
    tree when it is built, and the tree destroys it when the library goes.
*/
class ObjectConverters : public AutoDeclaredSingletons
{
public:
    ObjectConverters();
    ~ObjectConverters() override;

    static ObjectConverters* getInstance();
    static ObjectConverters* getInstanceWithoutCreating() noexcept;
    static void deleteInstance();
    /** Forgets the instance without deleting it: whoever owns it now deletes it. */
    static void clearSingletonInstance() noexcept;

    size_t getNumConverters() const noexcept           { return getNumSingletons(); }
    ObjectConverter* getConverter (size_t index) const;

    /** The first converter, in table order, that matches; null when none does. */
    ObjectConverter* getFirstConverter (const Object& object, Class* wantedClass) const;
    bool isConvertibleTo (const Object& object, Class* wantedClass) const  { return getFirstConverter (object, wantedClass) != nullptr; }
    /** The first match whose toString is that name; null when none. */
    ObjectConverter* getConverter (const Object& object, Class* wantedClass, const juce::String& name) const;
    void getAvailableConverters (const Object& object, Class* wantedClass, std::vector<ObjectConverter*>& result) const;
    /** Those whose source class the object's class inherits from and which can convert the
        object to Object: any target. */
    void getAvailableConverters (const Object& object, std::vector<ObjectConverter*>& result) const;
    /** The toString of each match, the secret ones only when asked for. */
    juce::StringArray getAvailableConverterNames (const Object& object, Class* wantedClass, bool includeSecret) const;

private:
    template <class Visitor>
    void forEachMatch (const Object& object, Class* wantedClass, Visitor&& visitor) const;
};

} // namespace tov
