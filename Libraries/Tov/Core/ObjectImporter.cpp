#include "ObjectImporter.h"
#include "Object.h"
#include "ObjectSpace.h"
#include "ClassRegistry.h"
#include "ClassExpression.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

ObjectImporter::ObjectImporter (ExecutionContext& context, const std::shared_ptr<State>& root, PendingStates* pending)
    : context (context), pending (pending)
{
    stack.reserve (typicalDepth);
    stack.push_back (root);
}

// "Layer" is accepted for classes derived from it: old documents name that former abstract base.
static bool isAcceptedClass (Class* stateClass, Class* objectClass)
{
    return stateClass->inheritsFrom (objectClass)
        || (stateClass->getName() == "Layer" && objectClass->inheritsFrom (stateClass));
}

bool ObjectImporter::load (Object& object)
{
    const State& state = *getCurrentState();
    if (state.getUniqueIdentifier().isNotNull() && object.getUniqueIdentifier().isNull())
        object.setUniqueIdentifier (state.getUniqueIdentifier());

    if (Class* stateClass = state.getCompatibilityClass())
    {
        if (Class* objectClass = object.getClassWithoutLookUp())
        {
            if (! isAcceptedClass (stateClass, objectClass))
            {
                sendError ("Loading " + state.toShortString (2),
                           "Invalid class: expected " + objectClass->getName() + " found " + stateClass->getName());
                return false;
            }
        }
        else
        {
            object.setClass (stateClass);
        }
    }

    return loadWithConstraintsSuspended (object);
}

// Constraints run once the whole object is in, not after every variable.
bool ObjectImporter::loadWithConstraintsSuspended (Object& object)
{
    const bool wasApplying = object.isApplyingVariableConstraints();
    if (! wasApplying)
        object.startApplyingVariableConstraints();
    const bool result = object.load (*this);
    if (! wasApplying)
        object.finishApplyingVariableConstraints();
    return result;
}

bool ObjectImporter::checkType (StateType type)
{
    juce::String error;
    if (getCurrentState()->checkType (type, error))
        return true;
    sendError (getSourceDescription ("ObjectImporter::checkType"), error);
    return false;
}

//==============================================================================
// Every read checks the type first, reporting a mismatch, then copies the value.
template <class Reader>
bool ObjectImporter::readTyped (StateType type, Reader&& read)
{
    if (! checkType (type))
        return false;
    read (*getCurrentState());
    return true;
}

bool ObjectImporter::readBoolean (bool& value)            { return readTyped (StateType::booleanType, [&] (const State& s) { value = s.getBoolean(); }); }
bool ObjectImporter::readInteger (int64_t& value)         { return readTyped (StateType::integerType, [&] (const State& s) { value = s.getInteger(); }); }
bool ObjectImporter::readReal (double& value)             { return readTyped (StateType::realType, [&] (const State& s) { value = s.getReal(); }); }
bool ObjectImporter::readString (juce::String& value)     { return readTyped (StateType::stringType, [&] (const State& s) { value = s.getString(); }); }
bool ObjectImporter::readUniqueIdentifier (UniqueIdentifier& value)
{
    return readTyped (StateType::weakPointerType, [&] (const State& s) { value = s.getUniqueIdentifierValue(); });
}

Class* ObjectImporter::readClass()
{
    return checkType (StateType::classExpressionType) ? getCurrentState()->getClassValue (true) : nullptr;
}

bool ObjectImporter::readState (std::shared_ptr<State>& value)
{
    if (getCurrentType() == StateType::voidType)
    {
        value = nullptr;
        return true;
    }
    if (! checkType (StateType::ownedPointerType))
        return false;
    value = getCurrentState()->getOwnedPointer();
    return true;
}

bool ObjectImporter::readBuffer (RawBuffer& out, bool& changed)
{
    State& state = *getCurrentState();
    if (state.getType() == StateType::bufferType)
    {
        changed = state.getBuffer() != out;
        if (changed)
            state.getBuffer().moveOwnershipTo (out);
        return true;
    }
    if (state.getType() == StateType::stringType)
    {
        RawBuffer decoded;
        if (! decoded.fromBase64Encoding (state.getString()))
        {
            sendError ("ObjectImporter::readBuffer", "bad base64 format (in " + state.toShortString (2) + ")");
            return false;
        }
        changed = decoded != out;
        if (changed)
            decoded.moveOwnershipTo (out);
        return true;
    }
    sendError ("ObjectImporter::readBuffer", "Wrong type: expected string or buffer, found " + State::typeToString (state.getType())
                                             + " (in " + state.toShortString (2) + ")");
    return false;
}

bool ObjectImporter::readVariable (juce::StringRef name, Object& object)
{
    Scope scope (*this, name);
    return scope.isOpen() && loadWithConstraintsSuspended (object);
}

//==============================================================================
// An object that came to hold one of its own owners would keep itself alive for ever: only data
// from outside asks for that.
bool ObjectImporter::refuseOwnerOfParent (Object* parent, Object*& out)
{
    if (parent == nullptr || ! parent->isChildOf (out, false))
        return true;
    sendError ("StateObjectImporter::readObject", "Object with uid " + out->getUniqueIdentifier().to64BitsHexadecimalString()
                                                  + " cannot be held by " + makeObjectFriendlyPath (*parent) + ", which it holds");
    out = nullptr;
    return false;
}

bool ObjectImporter::readObject (Object* parent, Object*& out, Class* expectedClass)
{
    const auto type = getCurrentType();
    if (type == StateType::ownedPointerType)
    {
        // The binary form can carry an owned pointer to nothing: it holds no object.
        if (getCurrentState()->getOwnedPointer() == nullptr)
        {
            out = nullptr;
            return true;
        }
        enter (getCurrentState()->getOwnedPointer());
        out = createPointedObject (parent, expectedClass);
        leave();
        return out != nullptr && refuseOwnerOfParent (parent, out);
    }

    out = nullptr;
    if (type != StateType::weakPointerType)
        return false;

    const UniqueIdentifier identifier = getCurrentState()->getUniqueIdentifierValue();
    if (identifier.isNull())
        return true;
    out = findObject (parent, identifier);
    if (out != nullptr)
        return refuseOwnerOfParent (parent, out);

    juce::String message = "Could not find object with uid " + identifier.to64BitsHexadecimalString();
    if (parent != nullptr)
    {
        const auto path = makeObjectFriendlyPath (*parent);
        if (path.isNotEmpty())
            message += " in " + path;
    }
    sendError ("StateObjectImporter::readObject", message);
    return false;
}

// In order: the space above the parent, the objects made by this importer, the pending states.
Object* ObjectImporter::findObject (Object* parent, UniqueIdentifier identifier)
{
    for (Object* level = parent; level != nullptr; level = level->getParent())
        if (auto* space = level->getSpace())
        {
            if (auto* found = space->getObject (identifier))
                return found;
            break;
        }

    if (createdObjects != nullptr)
    {
        auto found = createdObjects->find (identifier);
        if (found != createdObjects->end())
            return found->second;
    }
    return createPendingObject (parent, identifier, nullptr);
}

Object* ObjectImporter::createPendingObject (Object* parent, UniqueIdentifier identifier, Class* expectedClass)
{
    if (pending == nullptr)
        return nullptr;
    auto found = pending->find (identifier);
    if (found == pending->end())
        return nullptr;
    auto state = found->second;
    enter (state);
    Object* object = createPointedObject (parent, expectedClass);
    leave();
    pending->erase (identifier);
    return object;
}

// Atomic expressions are interned: a class that has one is named by it when the pointers are
// equal, with no text made. A class without one is named by its declaration.
static bool isNamed (const Class& objectClass, const ClassExpression* atomicExpression)
{
    if (auto* expression = objectClass.getExpression())
        return expression == atomicExpression;
    return objectClass.getName() == atomicExpression->getIdentifier();
}

Object* ObjectImporter::createPointedObject (Object* parent, Class* expectedClass)
{
    State& state = *getCurrentState();
    Class* stateClass = nullptr;
    if (auto* translated = State::getCompatibilityClassExpression (state))
    {
        // The node takes the translated name, so that its class is looked up once.
        if (translated != state.getClassExpression())
            state.setClassExpression (translated);
        juce::String reason;
        stateClass = state.getClass (&reason);
        if (stateClass == nullptr)
        {
            sendError (getSourceDescription ("ObjectImporter::createPointedObject"), reason);
            return nullptr;
        }
        if (reason.isNotEmpty())
            sendWarning (getSourceDescription ("ObjectImporter::createPointedObject"), reason);
    }

    Class* objectClass = stateClass != nullptr ? stateClass : expectedClass;
    if (objectClass == nullptr)
    {
        sendError (getSourceDescription ("ObjectImporter::createPointedObject"), "Missing class information");
        return nullptr;
    }

    // Saved data may name a base class that has since become abstract.
    static const ClassExpression* const camera = createAtomicClassExpression ("Camera");
    static const ClassExpression* const layer = createAtomicClassExpression ("Layer");
    if (isNamed (*objectClass, camera))
        objectClass = tov::getClass ("AffineCamera");
    else if (isNamed (*objectClass, layer))
        objectClass = tov::getClass ("TextureLayer");
    if (objectClass == nullptr)
    {
        sendError (getSourceDescription ("ObjectImporter::createPointedObject"), "Missing class information");
        return nullptr;
    }
    if (objectClass->isAbstract())
    {
        sendError (getSourceDescription ("ObjectImporter::createPointedObject"), "Cannot instantiate abstract class " + objectClass->getName());
        return nullptr;
    }

    Object* object = resetOrCreateObject (parent, objectClass, state.getUniqueIdentifier());
    if (object == nullptr)
        return nullptr;
    load (*object);
    // Only an identifier can point back to an object: one without (a message on the wire) is not kept.
    if (state.getUniqueIdentifier().isNotNull())
    {
        if (createdObjects == nullptr)
            createdObjects = std::make_unique<std::map<UniqueIdentifier, Object*>>();
        (*createdObjects)[state.getUniqueIdentifier()] = object;
    }
    return object;
}

Object* ObjectImporter::resetOrCreateObject (Object* parent, Class* objectClass, UniqueIdentifier identifier)
{
    if (parent != nullptr && parent->getSpace() != nullptr && identifier.isNotNull())
        if (auto* existing = parent->getSpace()->getObject (identifier))
        {
            existing->setParent (parent);
            objectClass->setDefaultValuesRecursively (existing);
            return existing;
        }
    return objectClass->createObject (parent);
}

juce::String ObjectImporter::makeObjectFriendlyPath (const Object& object)
{
    juce::StringArray names;
    for (const Object* level = &object; level != nullptr; level = level->getParent())
        names.insert (0, level->getFriendlyName());
    return names.joinIntoString (" -> ");
}

//==============================================================================
void ObjectImporter::sendError (const juce::String& sourceContext, const juce::String& message)
{
    context.error (message + " (in " + sourceContext + ")");
}

void ObjectImporter::sendWarning (const juce::String& sourceContext, const juce::String& message)
{
    context.warning (message + " (in " + sourceContext + ")");
}

void ObjectImporter::sendUnknownVariableWarning (const juce::String& sourceContext, const juce::String& name)
{
    sendWarning (getSourceDescription ("ObjectImporter::sendUnknownVariableWarning"),
                 name.isEmpty() ? juce::String ("Missing variable name") : "Unknown variable " + name + " in " + sourceContext);
}

juce::String ObjectImporter::getSourceDescription (juce::StringRef fallback) const
{
    if (getCurrentState()->getSource().isNotEmpty())
        return getCurrentState()->getSource();
    // An importer made without a root state (one that loads states it enters one by one) has none to name.
    if (stack.front() != nullptr && stack.front()->getSource().isNotEmpty())
        return stack.front()->getSource();
    return fallback;
}

//==============================================================================
ObjectImporter::Scope::Scope (ObjectImporter& importer, juce::StringRef name)
    : importer (importer)
{
    if (importer.getCurrentType() == StateType::voidType || ! importer.checkType (StateType::variablesType))
        return;
    if (auto state = importer.getVariableStateByName (name))
    {
        importer.enter (state);
        open = true;
    }
}

ObjectImporter::Scope::Scope (ObjectImporter& importer, size_t index)
    : importer (importer)
{
    if (index < importer.getNumVariables())
    {
        importer.enter (importer.getVariableState (index));
        open = true;
    }
}

ObjectImporter::Scope::~Scope()
{
    if (open)
        importer.leave();
}

} // namespace tov
