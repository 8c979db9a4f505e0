#include "DiffObjectSpaceMessage.h"
#include "../../Standard/Profiler/ProfilerScope.h"
#include "../../Container/ObjectMap.h"
#include "../../Container/ObjectOwnedVector.h"
#include "../../Core/ObjectExporter.h"
#include "../../Core/ObjectImporter.h"
#include "../../Core/ObjectSpace.h"
#include "../../Core/ObjectSpaceProvider.h"
#include "../../Pointer/ObjectOwnedPointer.h"
#include "../../Standard/ExecutionContext.h"

namespace tov
{

TOV_BEGIN_CLASS (DiffObjectSpaceMessage)
TOV_END_CLASS()

static const juce::String loadContext ("DiffObjectSpaceMessage::load");

DiffObjectSpaceMessage::~DiffObjectSpaceMessage() = default;

//==============================================================================
void DiffObjectSpaceMessage::setCreation (UniqueIdentifier identifier, const std::shared_ptr<State>& state)
{
    creations[identifier] = state;
}

void DiffObjectSpaceMessage::addChange (const VariableAddress& address, const std::shared_ptr<State>& state)
{
    const auto identifier = address.getRootUniqueIdentifier();
    if (identifier.isNotNull())
    {
        auto creation = creations.find (identifier);
        if (creation != creations.end())
        {
            if (address.getPath().isEmpty())
            {
                creation->second = state;
                return;
            }
            if (VariablePath::setValueToChildState (address.getPath(), creation->second, state))
                return;
        }
    }
    changes[address] = state;
}

void DiffObjectSpaceMessage::merge (const DiffObjectSpaceMessage& other)
{
    for (const auto& creation : other.creations)
        creations[creation.first] = creation.second;
    for (const auto& change : other.changes)
        addChange (change.first, change.second);
}

//==============================================================================
void DiffObjectSpaceMessage::save (ObjectExporter& exporter) const
{
    exporter.saveVariable ("targetSpace", targetSpace);
    if (! creations.empty())
    {
        ObjectExporter::Scope list (exporter, "creations");
        exporter.reserveVariables (creations.size());
        for (const auto& creation : creations)
            exporter.saveVariable (juce::String(), creation.second);
    }
    if (! changes.empty())
    {
        ObjectExporter::Scope list (exporter, "changes");
        exporter.reserveVariables (changes.size());
        for (const auto& change : changes)
        {
            ObjectExporter::Scope entry (exporter, juce::String());
            exporter.reserveVariables (2);
            {
                ObjectExporter::Scope address (exporter, "address");
                change.first.save (exporter);
            }
            exporter.saveVariable ("state", change.second);
        }
    }
}

bool DiffObjectSpaceMessage::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name == juce::StringRef ("targetSpace"))
        return importer.readString (targetSpace);
    if (name == juce::StringRef ("creations"))
        return loadCreations (importer);
    if (name == juce::StringRef ("changes"))
        return loadChanges (importer);
    return Message::loadVariable (importer, name);
}

// A bad entry is reported and skipped; the others are read all the same.
bool DiffObjectSpaceMessage::loadCreations (ObjectImporter& importer)
{
    creations.clear();
    if (! importer.checkType (StateType::variablesType))
        return false;
    bool result = true;
    for (size_t i = 0; i < importer.getNumVariables(); ++i)
    {
        const auto& entry = importer.getVariableState (i);
        juce::String error;
        if (! entry->checkType (StateType::ownedPointerType, error))
        {
            importer.sendError (loadContext, error);
            result = false;
            continue;
        }
        if (auto state = entry->getOwnedPointer())
            creations[state->getUniqueIdentifier()] = state;
    }
    return result;
}

bool DiffObjectSpaceMessage::loadChanges (ObjectImporter& importer)
{
    changes.clear();
    if (! importer.checkType (StateType::variablesType))
        return false;
    bool result = true;
    for (size_t i = 0; i < importer.getNumVariables(); ++i)
    {
        ObjectImporter::Scope entry (importer, i);
        if (importer.getCurrentType() != StateType::variablesType || importer.getNumVariables() != 2)
        {
            importer.sendError (loadContext, "invalid format");
            result = false;
            continue;
        }
        VariableAddress address;
        std::shared_ptr<State> state;
        {
            ObjectImporter::Scope addressScope (importer, "address");
            if (! addressScope.isOpen() || ! address.load (importer))
            {
                result = false;
                continue;
            }
        }
        {
            ObjectImporter::Scope stateScope (importer, "state");
            if (! stateScope.isOpen() || ! importer.readState (state))
            {
                result = false;
                continue;
            }
        }
        if (state != nullptr)
            changes[address] = state;
    }
    return result;
}

//==============================================================================
void DiffObjectSpaceMessage::copyTo (Object& target) const
{
    if (&target == this)
        return;
    if (auto* diff = dynamic_cast<DiffObjectSpaceMessage*> (&target))
    {
        // States are shared, never changed once made: a merge replaces them.
        diff->targetSpace = targetSpace;
        diff->creations = creations;
        diff->changes = changes;
    }
}

bool DiffObjectSpaceMessage::equalsSameClass (const Object& other) const
{
    const auto& diff = static_cast<const DiffObjectSpaceMessage&> (other);
    if (targetSpace != diff.targetSpace || creations.size() != diff.creations.size() || changes.size() != diff.changes.size())
        return false;
    for (const auto& creation : creations)
    {
        auto found = diff.creations.find (creation.first);
        if (found == diff.creations.end() || ! State::equals (creation.second, found->second))
            return false;
    }
    for (auto a = changes.begin(), b = diff.changes.begin(); a != changes.end(); ++a, ++b)
        if (a->first != b->first || ! State::equals (a->second, b->second))
            return false;
    return true;
}

juce::String DiffObjectSpaceMessage::toString() const
{
    juce::String text ("DiffObjectSpaceMessage: ");
    if (! creations.empty())
        text << (int64_t) creations.size() << " creations, ";
    if (! changes.empty())
        text << (int64_t) changes.size() << " changes";
    return text;
}

//==============================================================================
// The creations wait in a map of the importer, which builds each one when something refers to
// it by identifier. Changes that address an object not yet there wait for a later pass: one
// change may bring into being the object that another addresses.
void DiffObjectSpaceMessage::process (ExecutionContext& context, const Object&, MessageTarget&) const
{
    auto* space = ObjectSpaceProvider::getSpaceByName (*this, targetSpace);
    if (space == nullptr)
        return;

    ObjectImporter::PendingStates pending (creations.begin(), creations.end());
    ObjectImporter importer (context, nullptr, &pending);
    mirrorRoot (importer, *space, pending);

    // A creation that arrives for an object the mirror has already is a change of it.
    Changes work (changes);
    for (const auto& creation : pending)
        if (auto* existing = space->getObject (creation.first))
            work[VariableAddress (existing)] = creation.second;

    while (! work.empty() && applyResolvableChanges (importer, *space, work))
    {
    }

    retainedObjects.children.clear();
}

void DiffObjectSpaceMessage::mirrorRoot (ObjectImporter& importer, ObjectSpace& space, ObjectImporter::PendingStates& pending) const
{
    auto root = pending.find (UniqueIdentifier::getRootIdentifier());
    if (root == pending.end())
        return;
    const ProfilerScope scope ("MirrorObjectSpaceRoot");
    const auto state = root->second;
    pending.erase (root);
    juce::String error;
    auto* rootClass = state->getClass (&error);
    if (rootClass == nullptr)
    {
        importer.getContext().error (error.isNotEmpty() ? error : "Mirrored root has no class (in DiffObjectSpaceMessage::process)");
        return;
    }
    auto* object = rootClass->createObject (const_cast<ObjectOwnedPointer*> (&space.getRootObjectPointer()));
    if (object == nullptr)
        return;
    importer.enter (state);
    importer.load (*object);
    importer.leave();
    releaseRootIdentifier (space);
    space.setRootObject (object, true);
}

// A root replaced by the source: the old one gives up the root identifier for the new one, and
// lives until the whole diff stands, as anything it holds may move into the new root.
void DiffObjectSpaceMessage::releaseRootIdentifier (ObjectSpace& space) const
{
    auto* previous = space.getRootObject();
    if (previous == nullptr)
        return;
    retainedObjects.retain (*previous);
    space.removeObject (UniqueIdentifier::getRootIdentifier());
    previous->setUniqueIdentifier (UniqueIdentifier());
}

bool DiffObjectSpaceMessage::applyResolvableChanges (ObjectImporter& importer, ObjectSpace& space, Changes& work) const
{
    bool erased = false;
    for (auto change = work.begin(); change != work.end();)
    {
        ObjectSpace* foundSpace = nullptr;
        auto* object = change->first.getObject (getParent(), &foundSpace);
        // An address into another space is not this diff's to touch: it never resolves.
        if (object == nullptr || foundSpace != &space)
        {
            ++change;
            continue;
        }
        if (! space.isInMirroringExclusionList (*object))
            applyChange (importer, *object, change->second);
        change = work.erase (change);
        erased = true;
    }
    return erased;
}

void DiffObjectSpaceMessage::applyChange (ObjectImporter& importer, Object& object, const std::shared_ptr<State>& state) const
{
    retainChildren (object);
    std::vector<Object*> parents;
    object.startApplyingVariableConstraintsOnParents (parents);
    importer.enter (state);
    if (importer.getCurrentType() != StateType::nativePointerType)
        importer.load (object);
    importer.leave();
    Object::finishApplyingVariableConstraintsOnParents (parents);
}

// What a load may take out of its place: the elements of vectors, the targets of owned
// pointers, the keys and values of maps, in the object and in its member variables.
void DiffObjectSpaceMessage::retainChildren (Object& object) const
{
    if (auto* vector = dynamic_cast<ObjectOwnedVector*> (&object))
    {
        for (size_t i = 0; i < vector->size(); ++i)
            if (auto* element = vector->get (i))
                retainedObjects.retain (*element);
    }
    else if (auto* pointer = dynamic_cast<ObjectOwnedPointer*> (&object))
    {
        if (auto* target = pointer->get())
            retainedObjects.retain (*target);
    }
    else if (auto* map = dynamic_cast<ObjectMap*> (&object))
    {
        for (const auto& entry : *map)
        {
            retainedObjects.retain (*entry.key);
            if (entry.value != nullptr)
                retainedObjects.retain (*entry.value);
        }
    }

    for (size_t i = 0; i < object.getNumVariables(); ++i)
        if (auto* variable = object.getVariable (i))
            retainChildren (*variable);
}

//==============================================================================
// Children go first, so that a replaced parent dies after its replaced children.
DiffObjectSpaceMessage::RetainedObject::~RetainedObject()
{
    for (auto& child : children)
        child.reset();
    children.clear();
    if (object != nullptr)
        object->decrementReferenceCounter (true);
}

void DiffObjectSpaceMessage::RetainedObject::retain (Object& descendant)
{
    RetainedObject* current = this;
    for (bool descended = true; descended;)
    {
        descended = false;
        for (auto& child : current->children)
        {
            if (child->object == &descendant)
                return;
            if (descendant.isChildOf (child->object, false))
            {
                current = child.get();
                descended = true;
                break;
            }
        }
    }

    auto node = std::make_unique<RetainedObject>();
    node->object = &descendant;
    descendant.incrementReferenceCounter();
    auto& siblings = current->children;
    for (auto child = siblings.begin(); child != siblings.end();)
    {
        if ((*child)->object->isChildOf (&descendant, false))
        {
            node->children.push_back (std::move (*child));
            child = siblings.erase (child);
        }
        else
            ++child;
    }
    siblings.push_back (std::move (node));
}

} // namespace tov
