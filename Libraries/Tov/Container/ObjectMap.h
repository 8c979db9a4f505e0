#pragma once

#include "Container.h"
#include <list>
#include <vector>

namespace tov
{

/** The reflected dictionary: keys and values are both objects the map holds, and keys are
    compared by value (computeHash, then equals), not by address, so that two distinct key
    objects with equal content find the same entry.

    Entries keep the order in which they were inserted. Its class "Map({key=K,value=V})"
    names the key and value classes in the class attributes "key" and "value"; Map<K,V> and
    StringMap<V> are the typed fronts. A map saves as a list of unnamed entries, each holding
    a "key" and a "value".
*/
class ObjectMap : public Container
{
public:
    TOV_DECLARE_CLASS (ObjectMap, Container)

    struct Entry
    {
        Object* key;
        Object* value;
        uint64_t hash;
    };

    using Entries = std::list<Entry>;
    using Iterator = Entries::const_iterator;

    ObjectMap() = default;
    ObjectMap (const ObjectMap& other) : Container (other)  { other.copyTo (*this); }
    ObjectMap& operator= (const ObjectMap& other)           { other.copyTo (*this); return *this; }
    /** Lets go of every entry, without notification. */
    ~ObjectMap() override;

    size_t size() const override                     { return table.entries.size(); }
    /** The map is already empty when observers hear of it; the entries go afterwards. */
    void clear (bool notify = true) override;

    /** The value of the key equal to this one, or null. */
    Object* find (const Object& key) const;
    Iterator findEntry (const Object& key) const;
    /** Takes the key: when an equal key is present the given one is destroyed and the present
        value returned; otherwise a new value of the value class is inserted under it. */
    Object* get (Object* key, bool notify = true);
    /** As get, but gives the whole entry, which stays valid until it is removed. */
    Iterator getEntry (Object* key, bool notify = true);
    /** Holds key and value, replacing the entry of an equal key. */
    void insert (Object* key, Object* value, bool notify = true);
    /** Lets go of the entry of the key equal to this one; false when there is none. */
    bool remove (const Object& key, bool notify = true);
    void remove (Iterator entry, bool notify = true);

    const Entries& getLowLevelContainer() const noexcept  { return table.entries; }
    Iterator getBegin() const noexcept               { return table.entries.begin(); }
    Iterator getEnd() const noexcept                 { return table.entries.end(); }
    Iterator begin() const noexcept                  { return table.entries.begin(); }
    Iterator end() const noexcept                    { return table.entries.end(); }

    /** The class attributes "key" and "value", Object by default; read each time. */
    Class* getKeyClass() const;
    Class* getValueClass() const;

    /** Same size, and for each entry an equal key in the other with an equal value. */
    bool equalsSameClass (const Object& other) const override;
    bool equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const override;
    /** "{key = value, key = value}". */
    juce::String toString() const override;
    /** Entries whose key is a weak pointer without an address are left out. */
    void save (ObjectExporter& exporter) const override;
    /** Rebuilds the map; a value whose key was present keeps its identity. Always true: the
        importer has reported what went wrong with single entries. */
    bool load (ObjectImporter& importer) override;
    /** An array of {"key", "value"} objects, in insertion order. */
    juce::var saveToJson (uint32_t flags) const override;
    bool loadFromJson (ExecutionContext& context, const juce::var& value) override;
    void initializeObject() override;
    void deinitializeObject() override;
    void markObjectsAsBeingDestroyed() override;

private:
    /** Entries in order of insertion, found through buckets of their keys' hashes. */
    struct Table
    {
        Entries entries;
        std::vector<std::vector<Entries::iterator>> buckets;

        /** The entry of the key equal to this one, or null. */
        const Entries::iterator* find (const Object& key, uint64_t hash) const;
        void add (Object* key, Object* value, uint64_t hash);
        void erase (Entries::iterator entry);
        bool holds (const Object* object) const;
        void swap (Table& other) noexcept            { entries.swap (other.entries); buckets.swap (other.buckets); }

    private:
        size_t bucketIndex (uint64_t hash) const noexcept  { return (size_t) (hash & (buckets.size() - 1)); }
        void grow();
    };

    Table table;

    /** Holds key and value and enters them; no equal key may be present. */
    void add (Object* key, Object* value, bool notify);
    Object* loadValue (ObjectImporter& importer, const Object& key, Table& previous);
    void loadEntry (ObjectImporter& importer, Table& previous);
    void releasePrevious (Table& previous);
    bool sameEntries (const Table& previous) const;
};

} // namespace tov
