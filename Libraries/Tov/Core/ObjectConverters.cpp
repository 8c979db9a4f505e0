#include "ObjectConverters.h"
#include "Class.h"
#include "ObjectConverter.h"
#include <atomic>

namespace tov
{

static std::atomic<ObjectConverters*> instance { nullptr };
static juce::CriticalSection instanceLock;

ObjectConverters::ObjectConverters() : AutoDeclaredSingletons ("ObjectConverter")
{
}

ObjectConverters::~ObjectConverters()
{
    ObjectConverters* self = this;
    instance.compare_exchange_strong (self, nullptr);
}

ObjectConverters* ObjectConverters::getInstance()
{
    if (auto* existing = instance.load())
        return existing;
    const juce::ScopedLock lock (instanceLock);
    if (instance.load() == nullptr)
        instance = new ObjectConverters();
    return instance.load();
}

ObjectConverters* ObjectConverters::getInstanceWithoutCreating() noexcept
{
    return instance.load();
}

void ObjectConverters::deleteInstance()
{
    const juce::ScopedLock lock (instanceLock);
    delete instance.exchange (nullptr);
}

void ObjectConverters::clearSingletonInstance() noexcept
{
    instance = nullptr;
}

ObjectConverter* ObjectConverters::getConverter (size_t index) const
{
    return static_cast<ObjectConverter*> (getSingleton (index));
}

//==============================================================================
template <class Visitor>
void ObjectConverters::forEachMatch (const Object& object, Class* wantedClass, Visitor&& visitor) const
{
    for (size_t i = 0; i < getNumConverters(); ++i)
    {
        auto* converter = getConverter (i);
        if (converter->doesMatch (object, wantedClass) && ! visitor (*converter))
            return;
    }
}

ObjectConverter* ObjectConverters::getFirstConverter (const Object& object, Class* wantedClass) const
{
    ObjectConverter* found = nullptr;
    forEachMatch (object, wantedClass, [&found] (ObjectConverter& converter) { found = &converter; return false; });
    return found;
}

ObjectConverter* ObjectConverters::getConverter (const Object& object, Class* wantedClass, const juce::String& name) const
{
    ObjectConverter* found = nullptr;
    forEachMatch (object, wantedClass, [&] (ObjectConverter& converter)
    {
        if (converter.toString() == name)
            found = &converter;
        return found == nullptr;
    });
    return found;
}

void ObjectConverters::getAvailableConverters (const Object& object, Class* wantedClass, std::vector<ObjectConverter*>& result) const
{
    forEachMatch (object, wantedClass, [&result] (ObjectConverter& converter) { result.push_back (&converter); return true; });
}

void ObjectConverters::getAvailableConverters (const Object& object, std::vector<ObjectConverter*>& result) const
{
    for (size_t i = 0; i < getNumConverters(); ++i)
    {
        auto* converter = getConverter (i);
        if (Class::inheritsFrom (object.getClass(), converter->getSourceClass()) && converter->canConvert (object, &Object::staticClass))
            result.push_back (converter);
    }
}

juce::StringArray ObjectConverters::getAvailableConverterNames (const Object& object, Class* wantedClass, bool includeSecret) const
{
    juce::StringArray names;
    forEachMatch (object, wantedClass, [&] (ObjectConverter& converter)
    {
        if (includeSecret || ! converter.isSecret())
            names.add (converter.toString());
        return true;
    });
    return names;
}

} // namespace tov
