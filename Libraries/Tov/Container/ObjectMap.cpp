#include "ObjectMap.h"
#include "../Standard/ExecutionContext.h"
#include "../Core/Json.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"
#include "../Pointer/ObjectWeakPointerBase.h"
#include <algorithm>

namespace tov
{

TOV_BEGIN_CLASS (ObjectMap, { "key", "Object" }, { "value", "Object" })
TOV_END_CLASS()

//==============================================================================
const ObjectMap::Entries::iterator* ObjectMap::Table::find (const Object& key, uint64_t hash) const
{
    if (buckets.empty())
        return nullptr;
    for (auto& entry : buckets[bucketIndex (hash)])
        if (entry->hash == hash && entry->key->equals (key))
            return &entry;
    return nullptr;
}

void ObjectMap::Table::add (Object* key, Object* value, uint64_t hash)
{
    // At most one entry per bucket on average: grows by doubling.
    if (entries.size() >= buckets.size())
        grow();
    entries.push_back ({ key, value, hash });
    buckets[bucketIndex (hash)].push_back (std::prev (entries.end()));
}

void ObjectMap::Table::grow()
{
    buckets.assign (std::max<size_t> (8, buckets.size() * 2), {});
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        buckets[bucketIndex (entry->hash)].push_back (entry);
}

void ObjectMap::Table::erase (Entries::iterator entry)
{
    auto& bucket = buckets[bucketIndex (entry->hash)];
    bucket.erase (std::find (bucket.begin(), bucket.end(), entry));
    entries.erase (entry);
}

bool ObjectMap::Table::holds (const Object* object) const
{
    for (auto& entry : entries)
        if (entry.key == object || entry.value == object)
            return true;
    return false;
}

//==============================================================================
ObjectMap::~ObjectMap()
{
    clear (false);
}

void ObjectMap::clear (bool notify)
{
    if (table.entries.empty())
        return;
    Table released;
    released.swap (table);
    if (notify)
        changed();
    for (auto& entry : released.entries)
    {
        releaseOwnedObject (entry.key, this);
        releaseOwnedObject (entry.value, this);
    }
}

ObjectMap::Iterator ObjectMap::findEntry (const Object& key) const
{
    auto* found = table.find (key, key.computeHash());
    return found != nullptr ? Iterator (*found) : table.entries.end();
}

Object* ObjectMap::find (const Object& key) const
{
    auto* found = table.find (key, key.computeHash());
    return found != nullptr ? (*found)->value : nullptr;
}

Object* ObjectMap::get (Object* key, bool notify)
{
    return getEntry (key, notify)->value;
}

ObjectMap::Iterator ObjectMap::getEntry (Object* key, bool notify)
{
    if (auto* present = table.find (*key, key->computeHash()))
    {
        if (key->isObjectInitialized())
            key->callDeinitializeObject();
        key->deleteThis();
        return *present;
    }
    // No equal key is present: the new entry goes in without looking for one again.
    add (key, getValueClass()->createObject (nullptr), notify);
    return std::prev (table.entries.end());
}

void ObjectMap::insert (Object* key, Object* value, bool notify)
{
    remove (*key, false);
    add (key, value, notify);
}

// Hashed once the key is held: holding it may initialise it, which can change what it writes.
void ObjectMap::add (Object* key, Object* value, bool notify)
{
    addOwnedObject (value, this);
    addOwnedObject (key, this);
    table.add (key, value, key->computeHash());
    if (notify)
        changed();
}

bool ObjectMap::remove (const Object& key, bool notify)
{
    auto* found = table.find (key, key.computeHash());
    if (found == nullptr)
        return false;
    remove (Iterator (*found), notify);
    return true;
}

void ObjectMap::remove (Iterator entry, bool notify)
{
    Object* key = entry->key;
    Object* value = entry->value;
    table.erase (table.entries.erase (entry, entry));
    releaseOwnedObject (key, this);
    releaseOwnedObject (value, this);
    if (notify)
        changed();
}

Class* ObjectMap::getKeyClass() const
{
    return getClass()->getClassAttribute ("key", &Object::staticClass);
}

Class* ObjectMap::getValueClass() const
{
    return getClass()->getClassAttribute ("value", &Object::staticClass);
}

//==============================================================================
bool ObjectMap::equalsSameClass (const Object& other) const
{
    const auto& otherMap = static_cast<const ObjectMap&> (other);
    if (size() != otherMap.size())
        return false;
    for (auto& entry : table.entries)
    {
        auto* found = otherMap.table.find (*entry.key, entry.hash);
        if (found == nullptr)
            return false;
        Object* otherValue = (*found)->value;
        if (entry.value != otherValue && ! entry.value->equals (*otherValue))
            return false;
    }
    return true;
}

bool ObjectMap::equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const
{
    if (ignored.doesAcceptObject (const_cast<ObjectMap*> (this)) && ignored.doesAcceptObject (const_cast<Object*> (&other)))
        return true;
    auto* otherMap = dynamic_cast<const ObjectMap*> (&other);
    if (otherMap == nullptr || size() != otherMap->size())
        return false;
    for (auto& entry : table.entries)
    {
        auto* found = otherMap->table.find (*entry.key, entry.hash);
        if (found == nullptr)
            return false;
        Object* otherValue = (*found)->value;
        if (entry.value != otherValue && ! entry.value->equalsIgnoringVariables (*otherValue, ignored))
            return false;
    }
    return true;
}

juce::String ObjectMap::toString() const
{
    juce::String text ("{");
    for (auto& entry : table.entries)
        text += (text.length() > 1 ? ", " : "") + entry.key->toString() + " = " + entry.value->toString();
    return text + "}";
}

//==============================================================================
void ObjectMap::save (ObjectExporter& exporter) const
{
    if (! table.entries.empty())
        exporter.reserveVariables (table.entries.size());
    for (auto& entry : table.entries)
    {
        // A weak pointer to an object that has no address cannot be found again after loading.
        if (auto* weakKey = dynamic_cast<const ObjectWeakPointerBase*> (entry.key))
            if (weakKey->getAddress().isNull())
                continue;
        ObjectExporter::Scope scope (exporter, juce::String());
        exporter.saveVariable ("key", entry.key, getKeyClass());
        exporter.saveVariable ("value", entry.value, getValueClass());
    }
}

bool ObjectMap::load (ObjectImporter& importer)
{
    Table previous;
    previous.swap (table);

    const size_t count = importer.getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        ObjectImporter::Scope scope (importer, i);
        loadEntry (importer, previous);
    }

    const bool differs = ! sameEntries (previous);
    releasePrevious (previous);
    if (differs)
        changed();
    return true;
}

void ObjectMap::loadEntry (ObjectImporter& importer, Table& previous)
{
    Object* key = nullptr;
    bool entered = false;
    for (size_t i = 0; i < importer.getNumVariables() && ! entered; ++i)
    {
        const auto name = importer.getVariableName (i);
        ObjectImporter::Scope scope (importer, i);
        if (name == "key" && key == nullptr)
        {
            if (! importer.readObject (this, key, getKeyClass()) || key == nullptr)
                break;
        }
        else if (name == "value" && key != nullptr)
        {
            const uint64_t hash = key->computeHash();
            if (table.find (*key, hash) != nullptr)
                break;
            Object* value = loadValue (importer, *key, previous);
            if (value == nullptr)
                break;
            addOwnedObject (value, this);
            addOwnedObject (key, this);
            table.add (key, value, hash);
            entered = true;
        }
    }
    if (! entered)
        destroyRefusedObject (key);
}

// The value of an equal key that was there before loads in place, and keeps its identity.
Object* ObjectMap::loadValue (ObjectImporter& importer, const Object& key, Table& previous)
{
    if (auto* old = previous.find (key, key.computeHash()))
    {
        Object* value = (*old)->value;
        auto embedded = importer.getCurrentType() == StateType::ownedPointerType ? importer.getCurrentState()->getOwnedPointer() : nullptr;
        if (embedded != nullptr)
        {
            Class* embeddedClass = embedded->getClassExpression() != nullptr ? embedded->getClass() : getValueClass();
            if (embeddedClass == value->getClass())
            {
                importer.enter (embedded);
                importer.load (*value);
                importer.leave();
                return value;
            }
        }
    }

    Object* value = nullptr;
    if (! importer.readObject (this, value, getValueClass()))
        return nullptr;
    return value;
}

bool ObjectMap::sameEntries (const Table& previous) const
{
    if (previous.entries.size() != table.entries.size())
        return false;
    for (auto a = table.entries.begin(), b = previous.entries.begin(); a != table.entries.end(); ++a, ++b)
        if (a->value != b->value || ! a->key->equals (*b->key))
            return false;
    return true;
}

void ObjectMap::releasePrevious (Table& previous)
{
    for (auto& entry : previous.entries)
        for (Object* object : { entry.key, entry.value })
            releasePreviousObject (object, object->getReferenceCount() > 1 && table.holds (object));
}

//==============================================================================
void ObjectMap::initializeObject()
{
    Container::initializeObject();
    for (auto& entry : table.entries)
    {
        initializeOwnedObject (entry.key);
        initializeOwnedObject (entry.value);
    }
}

void ObjectMap::deinitializeObject()
{
    for (auto& entry : table.entries)
    {
        deinitializeOwnedObject (entry.key);
        deinitializeOwnedObject (entry.value);
    }
    Container::deinitializeObject();
}

void ObjectMap::markObjectsAsBeingDestroyed()
{
    Container::markObjectsAsBeingDestroyed();
    for (auto& entry : table.entries)
    {
        markOwnedObjectAsBeingDestroyed (entry.key);
        markOwnedObjectAsBeingDestroyed (entry.value);
    }
}

//==============================================================================
juce::var ObjectMap::saveToJson (uint32_t flags) const
{
    juce::Array<juce::var> entries;
    for (auto& entry : table.entries)
    {
        auto* json = new juce::DynamicObject();
        json->setProperty ("key", saveObjectToJsonWithClass (entry.key, getKeyClass(), flags));
        json->setProperty ("value", saveObjectToJsonWithClass (entry.value, getValueClass(), flags));
        entries.add (juce::var (json));
    }
    return entries;
}

bool ObjectMap::loadFromJson (ExecutionContext& context, const juce::var& value)
{
    if (value.isArray())
        clear (false);
    const bool result = loadJsonArray (context, value, *this, [&] (const juce::var& entry, juce::String& error)
    {
        Object* key = createObjectFromJsonWithClass (entry.getProperty ("key", {}), getKeyClass(), nullptr, &error);
        Object* loaded = key != nullptr ? createObjectFromJsonWithClass (entry.getProperty ("value", {}), getValueClass(), nullptr, &error) : nullptr;
        if (loaded == nullptr)
        {
            if (key != nullptr)
                key->deleteThis();
            return false;
        }
        insert (key, loaded, false);
        return true;
    });
    if (value.isArray())
        changed();
    return result;
}

} // namespace tov
