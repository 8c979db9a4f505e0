#include "ObjectOwnedVector.h"
#include "../Standard/ExecutionContext.h"
#include "../Core/Json.h"
#include "../Atomic/String.h"
#include "../Core/ClassRegistry.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (ObjectOwnedVector, { "target", "Object" })
TOV_END_CLASS()

ObjectOwnedVector::~ObjectOwnedVector()
{
    clear (false);
}

//==============================================================================
int ObjectOwnedVector::find (const Object* object) const
{
    for (size_t i = 0; i < objects.size(); ++i)
        if (objects[i] == object)
            return (int) i;
    return -1;
}

int ObjectOwnedVector::findIf (ObjectPredicate& predicate) const
{
    for (size_t i = 0; i < objects.size(); ++i)
        if (predicate.doesAcceptObject (objects[i]))
            return (int) i;
    return -1;
}

Object* ObjectOwnedVector::getByFriendlyName (const juce::String& name) const
{
    for (auto* object : objects)
        if (object->getFriendlyName() == name)
            return object;
    return nullptr;
}

Object* ObjectOwnedVector::getByLabel (const juce::String& label) const
{
    for (auto* object : objects)
    {
        const auto text = object->getLabelText();
        if (text.isNotEmpty() ? text == label : object->getFriendlyName() == label)
            return object;
    }
    return nullptr;
}

//==============================================================================
Class* ObjectOwnedVector::getTargetClass() const
{
    return targetClass.get (*this);
}

void ObjectOwnedVector::setTargetClass (Class* target)
{
    setClass (target != nullptr ? ownedVectorClass (target) : &ObjectOwnedVector::staticClass);
    targetClass.set (target);
}

void ObjectOwnedVector::setClass (Class* newClass)
{
    Container::setClass (newClass);
    targetClass.forget();
}

bool ObjectOwnedVector::canUserRemoveObject() const
{
    return getClass()->getBooleanAttribute (getSignature(), "canUserRemoveObject", true);
}

juce::String ObjectOwnedVector::getObjectFriendlyName (size_t index) const
{
    auto name = getFriendlyName();
    if (name.endsWithChar ('s'))
        name = name.dropLastCharacters (1);
    return name + " " + juce::String ((juce::int64) index + 1);
}

//==============================================================================
void ObjectOwnedVector::append (Object* object, bool notify, bool uniqueLabel)
{
    insert (objects.size(), object, notify, uniqueLabel);
}

void ObjectOwnedVector::append (const std::vector<Object*>& newObjects, bool notify, bool uniqueLabel)
{
    for (auto* object : newObjects)
        append (object, notify, uniqueLabel);
}

void ObjectOwnedVector::insert (size_t index, Object* object, bool notify, bool uniqueLabel)
{
    if (object == nullptr || index > objects.size())
        return;
    if (uniqueLabel)
        makeLabelUnique (*object);
    addOwnedObject (object, this);
    objects.insert (objects.begin() + (std::ptrdiff_t) index, object);
    if (notify)
        changed();
}

void ObjectOwnedVector::makeLabelUnique (Object& object) const
{
    auto* label = static_cast<String*> (object.getLabelVariable());
    if (label != nullptr && label->isNotEmpty())
        label->set (makeUniqueLabel (label->get()), true);
}

void ObjectOwnedVector::remove (size_t index, bool notify)
{
    objectRemoved (index, notify);
    Object* removed = objects[index];
    objects.erase (objects.begin() + (std::ptrdiff_t) index);
    if (notify)
        changed();
    releaseOwnedObject (removed, this);
}

bool ObjectOwnedVector::remove (const Object* object, bool notify)
{
    const int index = find (object);
    if (index < 0)
        return false;
    remove ((size_t) index, notify);
    return true;
}

bool ObjectOwnedVector::removeByFriendlyName (const juce::String& name, bool notify)
{
    for (size_t i = 0; i < objects.size(); ++i)
        if (objects[i]->getFriendlyName() == name)
        {
            remove (i, notify);
            return true;
        }
    return false;
}

void ObjectOwnedVector::move (size_t from, size_t to, bool notify)
{
    if (from == to)
        return;
    Object* moved = objects[from];
    objects.erase (objects.begin() + (std::ptrdiff_t) from);
    objects.insert (objects.begin() + (std::ptrdiff_t) to, moved);
    if (notify)
        changed();
}

void ObjectOwnedVector::resize (size_t count, bool notify)
{
    const size_t previousSize = objects.size();
    if (count > objects.size())
    {
        objects.reserve (count);
        while (objects.size() < count)
        {
            Object* created = getTargetClass()->createObject (nullptr);
            if (created == nullptr)
                break;
            objects.push_back (addOwnedObject (created, this));
        }
    }
    while (objects.size() > count)
        remove (objects.size() - 1, false);

    if (notify && objects.size() != previousSize)
        changed();
}

void ObjectOwnedVector::clear (bool notify)
{
    if (objects.empty())
        return;
    std::vector<Object*> released;
    released.swap (objects);
    if (notify)
        changed();
    releaseAll (released);
}

void ObjectOwnedVector::releaseAll (std::vector<Object*>& released)
{
    for (auto*& object : released)
        releaseOwnedObject (object, this);
}

void ObjectOwnedVector::set (const std::vector<Object*>& newObjects, bool notify)
{
    if (equalsVector (newObjects))
        return;
    // The new ones are held before the old ones are let go of, so that an object in both survives.
    std::vector<Object*> previous;
    previous.swap (objects);
    objects.reserve (newObjects.size());
    for (auto* object : newObjects)
        if (object != nullptr)
            objects.push_back (addOwnedObject (object, this));
    if (notify)
        changed();
    releasePrevious (previous);
}

void ObjectOwnedVector::releasePrevious (const std::vector<Object*>& previous)
{
    // Only a survivor of the decrement can still be an element: the search is for those alone.
    for (auto* object : previous)
        releasePreviousObject (object, object->getReferenceCount() > 1 && contains (object));
}

//==============================================================================
size_t ObjectOwnedVector::getInsertionPositionAccordingToFriendlyName (const juce::String& name) const
{
    for (size_t i = 0; i < objects.size(); ++i)
        if (objects[i]->getFriendlyName().compare (name) > 0)
            return i;
    return objects.size();
}

void ObjectOwnedVector::insertByFriendlyNameOrder (Object* object, bool notify, bool uniqueLabel)
{
    if (object == nullptr)
        return;
    if (uniqueLabel)
        makeLabelUnique (*object);
    insert (getInsertionPositionAccordingToFriendlyName (object->getFriendlyName()), object, notify, false);
}

void ObjectOwnedVector::moveToFriendlyNameOrderedVector (size_t index, bool notify)
{
    Object* moved = objects[index];
    objects.erase (objects.begin() + (std::ptrdiff_t) index);
    const size_t position = getInsertionPositionAccordingToFriendlyName (moved->getFriendlyName());
    objects.insert (objects.begin() + (std::ptrdiff_t) position, moved);
    if (notify && position != index)
        changed();
}

juce::String ObjectOwnedVector::makeUniqueLabel (const juce::String& label) const
{
    if (getByLabel (label) == nullptr)
        return label;

    juce::StringArray taken;
    for (auto* object : objects)
        taken.add (object->getLabelText());

    constexpr int lastNumber = 9999;
    int digitsStart = label.length();
    while (digitsStart > 0 && juce::CharacterFunctions::isDigit (label[digitsStart - 1]))
        --digitsStart;

    if (digitsStart == label.length())
    {
        for (int number = 2; number <= lastNumber; ++number)
        {
            const auto candidate = label + " " + juce::String (number);
            if (! taken.contains (candidate))
                return candidate;
        }
        return label;
    }

    const auto prefix = label.substring (0, digitsStart);
    const int width = label.length() - digitsStart;
    for (auto number = label.substring (digitsStart).getLargeIntValue() + 1;; ++number)
    {
        const auto candidate = prefix + juce::String (number).paddedLeft ('0', width);
        if (! taken.contains (candidate) || number > lastNumber)
            return candidate;
    }
}

//==============================================================================
bool ObjectOwnedVector::equalsSameClass (const Object& other) const
{
    const auto& otherObjects = static_cast<const ObjectOwnedVector&> (other).objects;
    if (objects.size() != otherObjects.size())
        return false;
    for (size_t i = 0; i < objects.size(); ++i)
        if (objects[i] != otherObjects[i] && ! objects[i]->equals (*otherObjects[i]))
            return false;
    return true;
}

bool ObjectOwnedVector::equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const
{
    if (ignored.doesAcceptObject (const_cast<ObjectOwnedVector*> (this)) && ignored.doesAcceptObject (const_cast<Object*> (&other)))
        return true;
    auto* vector = dynamic_cast<const ObjectOwnedVector*> (&other);
    if (vector == nullptr || objects.size() != vector->objects.size())
        return false;
    for (size_t i = 0; i < objects.size(); ++i)
        if (objects[i] != vector->objects[i] && ! objects[i]->equalsIgnoringVariables (*vector->objects[i], ignored))
            return false;
    return true;
}

void ObjectOwnedVector::copyTo (Object& target) const
{
    auto* vector = dynamic_cast<ObjectOwnedVector*> (&target);
    if (vector == nullptr || vector == this || equals (*vector))
        return;
    copyClassTo (target);
    if (objects.size() > vector->objects.size())
        vector->objects.reserve (objects.size());

    bool replacedOrAdded = false;
    for (size_t i = 0; i < objects.size(); ++i)
    {
        Object* existing = i < vector->objects.size() ? vector->objects[i] : nullptr;
        if (existing != nullptr && existing->getClass() == objects[i]->getClass())
        {
            // The target's element keeps its identity, its views and the weak pointers to it.
            objects[i]->copyTo (*existing);
            continue;
        }
        Object* clone = addOwnedObject (objects[i]->clone (vector), vector);
        if (i < vector->objects.size())
        {
            releaseOwnedObject (vector->objects[i], vector);
            vector->objects[i] = clone;
        }
        else
        {
            vector->objects.push_back (clone);
        }
        replacedOrAdded = true;
    }

    if (vector->objects.size() > objects.size())
    {
        vector->resize (objects.size(), false);
        vector->changed();
    }
    else if (replacedOrAdded)
    {
        vector->changed();
    }
}

juce::String ObjectOwnedVector::toString() const
{
    constexpr size_t maxShownWhole = 32, shownOfLonger = 30;
    const size_t shown = objects.size() > maxShownWhole ? shownOfLonger : objects.size();
    juce::String text ("[");
    for (size_t i = 0; i < shown; ++i)
        text += (i > 0 ? ", " : "") + objects[i]->toString();
    if (shown < objects.size())
        text += " and " + juce::String ((juce::int64) (objects.size() - shown)) + " others";
    return text + "]";
}

//==============================================================================
void ObjectOwnedVector::save (ObjectExporter& exporter) const
{
    if (! objects.empty())
        exporter.reserveVariables (objects.size());
    exporter.saveOwnedObjects (objects, getTargetClass());
}

bool ObjectOwnedVector::load (ObjectImporter& importer)
{
    std::vector<Object*> previous;
    previous.swap (objects);

    bool result = true;
    const size_t count = importer.getNumVariables();
    objects.reserve (count);
    for (size_t i = 0; i < count; ++i)
    {
        ObjectImporter::Scope scope (importer, i);
        Object* loaded = nullptr;
        if (loadElement (importer, loaded))
            objects.push_back (addOwnedObject (loaded, this));
        else
            result = false;
    }

    // Let go of only now, so that an element that is also among the new ones survives.
    const bool differs = objects != previous;
    releasePrevious (previous);
    if (differs)
        changed();
    return result;
}

bool ObjectOwnedVector::loadElement (ObjectImporter& importer, Object*& loaded)
{
    if (! importer.readObject (this, loaded, getTargetClass()))
        return false;
    if (loaded == nullptr)
    {
        importer.sendError ("ObjectOwnedVector::load", "null pointer");
        return false;
    }
    if (! Class::inheritsFrom (loaded->getClass(), getTargetClass()))
    {
        importer.sendError ("ObjectOwnedVector::load", loaded->getClassName() + " does not inherit from " + getTargetClass()->getName());
        destroyRefusedObject (loaded);
        loaded = nullptr;
        return false;
    }
    return true;
}

//==============================================================================
void ObjectOwnedVector::initializeObject()
{
    Container::initializeObject();
    for (auto* object : objects)
        initializeOwnedObject (object);
}

void ObjectOwnedVector::deinitializeObject()
{
    for (auto* object : objects)
        deinitializeOwnedObject (object);
    Container::deinitializeObject();
}

void ObjectOwnedVector::markObjectsAsBeingDestroyed()
{
    Container::markObjectsAsBeingDestroyed();
    for (auto* object : objects)
        markOwnedObjectAsBeingDestroyed (object);
}

//==============================================================================
juce::var ObjectOwnedVector::saveToJson (uint32_t flags) const
{
    juce::Array<juce::var> elements;
    elements.ensureStorageAllocated ((int) objects.size());
    for (auto* element : objects)
        elements.add (saveObjectToJsonWithClass (element, getTargetClass(), flags));
    return elements;
}

// Elements are made anew; one that fails to load is left out and the others still come in.
bool ObjectOwnedVector::loadFromJson (ExecutionContext& context, const juce::var& value)
{
    std::vector<Object*> loaded;
    const bool result = loadJsonArray (context, value, *this, [&] (const juce::var& element, juce::String& error)
    {
        Object* created = createObjectFromJsonWithClass (element, getTargetClass(), nullptr, &error);
        if (created != nullptr)
            loaded.push_back (created);
        return created != nullptr;
    });
    if (value.isArray())
        set (loaded);
    return result;
}

} // namespace tov
