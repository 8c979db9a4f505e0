#pragma once

#include "UniqueIdentifier.h"
#include "VariablePath.h"

namespace tov
{

class ObjectSpace;
class ObjectSpaceProvider;

/** Where an object or member variable lives, in terms that survive saving and travel to other
    machines: the name of its space, the identifier of its root object there, and the path of
    variable names from that root.
*/
class VariableAddress
{
public:
    VariableAddress() = default;
    /** The address of the object, when it has one (see setObject). */
    explicit VariableAddress (Object* object)            { setObject (object, nullptr); }

    const juce::String& getSpace() const noexcept        { return space; }
    void setSpace (const juce::String& newSpace)         { space = newSpace; }
    UniqueIdentifier getRootUniqueIdentifier() const noexcept  { return rootUniqueIdentifier; }
    void setRootUniqueIdentifier (UniqueIdentifier identifier) noexcept  { rootUniqueIdentifier = identifier; }
    const VariablePath& getPath() const noexcept         { return path; }
    VariablePath& getPath() noexcept                     { return path; }

    /** Space, identifier and path all empty. */
    bool isNull() const noexcept                         { return space.isEmpty() && rootUniqueIdentifier.isNull() && path.isEmpty(); }
    void reset();

    /** Addresses the object through its root: false, leaving the address empty, when the root has
        no identifier or no space (the root's own, or else fallbackSpace). */
    bool setObject (Object* object, ObjectSpace* fallbackSpace);
    /** The path of the source, its identifier exclusive-or the mask, and the name of the space. */
    void setCloned (const VariableAddress& source, const ObjectSpace& newSpace, uint64_t mask);

    /** The space the address names, found from the context object; null with the reason in
        errorMessage. Null as well while the program stops. */
    ObjectSpace* getObjectSpace (const Object* contextObject, juce::String* errorMessage = nullptr) const;
    /** The same, from the provider that the context object's climb finds (see ObjectSpaceProvider::get),
        for callers that know it already. */
    ObjectSpace* getObjectSpaceFromProvider (const ObjectSpaceProvider* provider, juce::String* errorMessage = nullptr) const;
    /** The addressed object in that space, or null with the reason in errorMessage. */
    Object* getObjectInSpace (const ObjectSpace& objectSpace, juce::String* errorMessage = nullptr, bool* changed = nullptr) const;
    /** Finds the space, then the object; changed tells whether the address can be made better
        (see VariablePath::getChildObject). */
    Object* getObject (const Object* contextObject, ObjectSpace** foundSpace = nullptr,
                       juce::String* errorMessage = nullptr, bool* changed = nullptr) const;

    /** Reads a lone identifier, or unnamed variables: the space name when the first is a string,
        the identifier, and the path. */
    bool load (ObjectImporter& importer);
    void save (ObjectExporter& exporter) const;
    /** The space and a blank, the identifier's text, and "." with the path. */
    juce::String toString() const;

    bool operator== (const VariableAddress& other) const;
    bool operator!= (const VariableAddress& other) const { return ! operator== (other); }
    bool operator< (const VariableAddress& other) const;

private:
    juce::String space;
    UniqueIdentifier rootUniqueIdentifier;
    VariablePath path;
};

} // namespace tov
