#include "VariableAddress.h"
#include "ObjectExporter.h"
#include "ObjectImporter.h"
#include "ObjectSpace.h"
#include "ObjectSpaceProvider.h"
#include "../Standard/Program.h"
#include "../Standard/Service.h"

namespace tov
{

void VariableAddress::reset()
{
    space.clear();
    rootUniqueIdentifier = {};
    path.clear();
}

bool VariableAddress::setObject (Object* object, ObjectSpace* fallbackSpace)
{
    space.clear();
    rootUniqueIdentifier = {};
    Object* root = object != nullptr ? path.setFromChildObject (object) : nullptr;
    ObjectSpace* rootSpace = root != nullptr ? (root->getSpace() != nullptr ? root->getSpace() : fallbackSpace) : nullptr;
    if (root == nullptr || root->getUniqueIdentifier().isNull() || rootSpace == nullptr)
    {
        path.clear();
        return false;
    }
    rootUniqueIdentifier = root->getUniqueIdentifier();
    space = rootSpace->getName();
    return true;
}

void VariableAddress::setCloned (const VariableAddress& source, const ObjectSpace& newSpace, uint64_t mask)
{
    path = source.path;
    rootUniqueIdentifier = UniqueIdentifier (source.rootUniqueIdentifier.getInt64() ^ mask);
    space = newSpace.getName();
}

ObjectSpace* VariableAddress::getObjectSpace (const Object* contextObject, juce::String* errorMessage) const
{
    if (isNull() || ! Program::isStillRunning())
        return nullptr;
    return getObjectSpaceFromProvider (contextObject != nullptr ? ObjectSpaceProvider::get (*contextObject, false) : nullptr, errorMessage);
}

ObjectSpace* VariableAddress::getObjectSpaceFromProvider (const ObjectSpaceProvider* provider, juce::String* errorMessage) const
{
    if (isNull() || ! Program::isStillRunning())
        return nullptr;
    if (Service::getCurrentService() == nullptr)
    {
        if (errorMessage != nullptr)
            *errorMessage = "Could not find current service";
        return nullptr;
    }
    if (space.isEmpty())
        return nullptr;

    auto* found = ObjectSpaceProvider::getSpaceByName (provider, space);
    if (found == nullptr && errorMessage != nullptr)
    {
        *errorMessage = "Could not find space " + space;
        if (rootUniqueIdentifier.isNotNull())
            *errorMessage << " when resolving address " << toString();
    }
    return found;
}

Object* VariableAddress::getObjectInSpace (const ObjectSpace& objectSpace, juce::String* errorMessage, bool* changed) const
{
    Object* root = objectSpace.getObject (rootUniqueIdentifier);
    if (root == nullptr)
    {
        if (errorMessage != nullptr)
            *errorMessage = "Could not find object " + rootUniqueIdentifier.to64BitsHexadecimalString()
                          + " when resolving address " + toString();
        return nullptr;
    }
    // The path's first step reads the root's header, and the variables it reaches are mostly
    // in the next lines: all of them are fetched at once.
    for (int line = 1; line < 3; ++line)
        __builtin_prefetch (reinterpret_cast<const char*> (root) + 64 * line);
    Object* result = path.getChildObject (root, changed, errorMessage);
    if (result == nullptr && errorMessage != nullptr)
        *errorMessage << " when resolving address " << toString();
    return result;
}

Object* VariableAddress::getObject (const Object* contextObject, ObjectSpace** foundSpace,
                                    juce::String* errorMessage, bool* changed) const
{
    if (changed != nullptr)
        *changed = false;
    ObjectSpace* objectSpace = getObjectSpace (contextObject, errorMessage);
    if (foundSpace != nullptr)
        *foundSpace = objectSpace;
    return objectSpace != nullptr ? getObjectInSpace (*objectSpace, errorMessage, changed) : nullptr;
}

bool VariableAddress::load (ObjectImporter& importer)
{
    if (importer.getCurrentType() == StateType::weakPointerType)
        return importer.readUniqueIdentifier (rootUniqueIdentifier);
    if (! importer.checkType (StateType::variablesType))
        return false;
    if (importer.getNumVariables() == 0)
    {
        importer.sendError ("VariableAddress::load", "No variables");
        return false;
    }

    size_t index = 0;
    if (importer.getCurrentState()->getVariableStateRef (0).getType() == StateType::stringType)
    {
        ObjectImporter::Scope scope (importer, index++);
        importer.readString (space);
    }
    {
        ObjectImporter::Scope scope (importer, index++);
        if (! importer.readUniqueIdentifier (rootUniqueIdentifier))
            return false;
    }
    return path.load (importer, index);
}

void VariableAddress::save (ObjectExporter& exporter) const
{
    if (isNull() || (space.isEmpty() && path.isEmpty()))
    {
        exporter.writeUniqueIdentifier (rootUniqueIdentifier);
        return;
    }
    if (space.isNotEmpty())
        exporter.saveVariable (juce::String(), space);
    exporter.saveVariable (juce::String(), rootUniqueIdentifier);
    if (! path.isEmpty())
        path.save (exporter);
}

juce::String VariableAddress::toString() const
{
    juce::String text = space.isNotEmpty() ? space + " " : juce::String();
    text << rootUniqueIdentifier.to64BitsHexadecimalString();
    if (! path.isEmpty())
        text << "." << path.toString();
    return text;
}

bool VariableAddress::operator== (const VariableAddress& other) const
{
    return space == other.space && rootUniqueIdentifier == other.rootUniqueIdentifier && path == other.path;
}

bool VariableAddress::operator< (const VariableAddress& other) const
{
    if (space != other.space)
        return space < other.space;
    if (rootUniqueIdentifier != other.rootUniqueIdentifier)
        return rootUniqueIdentifier < other.rootUniqueIdentifier;
    return path < other.path;
}

} // namespace tov
