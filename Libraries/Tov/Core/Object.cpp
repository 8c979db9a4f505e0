#include "Object.h"
#include "ClassRegistry.h"
#include "ObjectSpace.h"
#include "../Standard/DynamicVariable.h"
#include "../Container/ObjectOwnedVector.h"
#include "../Pointer/ObjectWeakPointer.h"
#include "../Standard/ExecutionContext.h"

namespace tov
{

// Object is the one class without a base, so its reflection is written out here.
Object::ObjectClass Object::staticClass { "Object" };

const ClassDeclaration& Object::getClassDeclaration()
{
    static const ClassDeclaration declaration { "Object", {}, {} };
    return declaration;
}

// Copies the class only: the members of a derived class are not constructed yet
// while this runs, so their values are copied by their own copy constructors.
Object::Object (const Object& other)
    : objectClass (other.objectClass)
{
}

Object::~Object()
{
    setFlag (beingDestroyedFlag);
    if (isInsideChanged())
        ExecutionContext::get().error ("We are about to delete an object that is inside changed(). Imminent probable crash! UID = "
                                       + juce::String::toHexString ((juce::int64) uniqueIdentifier.getInt64())
                                       + ", space = " + (space != nullptr ? space->getName() : juce::String ("<none>"))
                                       + ", flags = " + juce::String::toHexString ((int) flags)
                                       + ", referenceCounter = " + juce::String (referenceCounter)
                                       + ", numChanges = " + juce::String (numChanges));
    walkViews ([this] (View* view) { view->deletedCallback (this); });
    detachAllViews();
    views.reset();

    // A store into an object that is ending its life may be optimised away;
    // hasBeenDeleted depends on this one reaching memory.
    *reinterpret_cast<volatile uint64_t*> (&uniqueIdentifier) = UniqueIdentifier::getDeletedObjectIdentifier().getInt64();
}

//==============================================================================
bool Object::hasBeenDeleted (const Object* object) noexcept
{
    return object == nullptr || object->uniqueIdentifier == UniqueIdentifier::getDeletedObjectIdentifier();
}

Class* Object::getClass() const
{
    if (objectClass == nullptr)
        objectClass = lookUpClass();
    return objectClass;
}

Class* Object::lookUpClass() const
{
    return tov::getClass (getClassName());
}

juce::String Object::getClassName() const
{
    if (objectClass != nullptr)
        return objectClass->getName();
    if (auto* declaredName = getDeclaredClassName())
        return declaredName;
    return Class::getName (typeid (*this));
}

Class* Object::lookupAtomicClassFromRtti() const
{
    if (objectClass != nullptr)
        return objectClass;
    return tov::getClass (Class::getName (typeid (*this)));
}

void Object::setClass (Class* newClass)
{
    if (newClass == nullptr)
    {
        objectClass = nullptr;
        return;
    }
    if (objectClass != nullptr && objectClass->inheritsFrom (newClass))
        return;
    objectClass = newClass;
    newClass->initializeInstance (this);
}

void Object::copyClassTo (Object& target) const
{
    if (objectClass != nullptr && target.objectClass == nullptr)
        target.setClass (objectClass);
}

juce::String Object::getClassFriendlyName() const
{
    auto* c = getClass();
    return c != nullptr ? c->getFriendlyName() : juce::String();
}

//==============================================================================
void Object::startApplyingVariableConstraintsOnParents (std::vector<Object*>& marked)
{
    for (Object* level = this; level != nullptr; level = level->parent)
    {
        if (! level->isApplyingVariableConstraints())
        {
            level->setFlag (applyingVariableConstraintsFlag);
            marked.push_back (level);
        }
        if (! level->hasStaticAllocationFlag())
            break;
    }
}

void Object::finishApplyingVariableConstraintsOnParents (const std::vector<Object*>& marked)
{
    for (auto it = marked.rbegin(); it != marked.rend(); ++it)
        (*it)->removeFlag (applyingVariableConstraintsFlag);
}

void Object::setClassDefaultObjectAndMultiThreadSafeRecursively (Object* object, Class* objectClass)
{
    object->setFlag (classDefaultObjectFlag | multiThreadSafeFlag);
    object->setClass (objectClass);
    for (size_t i = 0; i < object->getNumVariables(); ++i)
        if (auto* variable = object->getVariable (i))
            setClassDefaultObjectAndMultiThreadSafeRecursively (variable, object->getVariableSignature (i)->getValueClass());
}

//==============================================================================
void Object::incrementReferenceCounter()
{
    removeStaticAllocationFlag();
    ++referenceCounter;
    if (referenceCounter == 1 && space != nullptr && isObjectInitialized())
        space->sendObjectCreated (this);
}

void Object::decrementReferenceCounter (bool deleteAtZero)
{
    if (hasStaticAllocationFlag())
        return;
    const uint64_t previous = referenceCounter--;
    if (previous == 1 && deleteAtZero)
        deleteThis();
}

//==============================================================================
size_t Object::getNumVariables() const
{
    auto* c = getClass();
    return c != nullptr ? c->getNumMemberVariables() : 0;
}

Object* Object::getVariable (size_t index)
{
    return getClass()->getMemberVariable (this, index);
}

const Object* Object::getVariable (size_t index) const
{
    return getClass()->getMemberVariable (const_cast<Object*> (this), index);
}

int Object::findVariable (juce::StringRef name) const
{
    auto* c = getClass();
    return c != nullptr ? c->findMemberVariable (name) : -1;
}

int Object::findVariable (const Object* variable) const
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        if (getVariable (i) == variable)
            return (int) i;
    return -1;
}

Object* Object::getVariableByName (juce::StringRef name)
{
    const int index = findVariable (name);
    return index >= 0 ? getVariable ((size_t) index) : nullptr;
}

Object* Object::getVariableByNameAndClass (juce::StringRef name, Class* requiredClass)
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        auto* signature = getVariableSignature (i);
        if (signature->getName() == name && signature->getValueClass() != nullptr
            && signature->getValueClass()->inheritsFrom (requiredClass))
            return getVariable (i);
    }
    return nullptr;
}

Object* Object::getVariableByClass (Class* requiredClass)
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        auto* valueClass = getVariableSignature (i)->getValueClass();
        if (valueClass != nullptr && valueClass->inheritsFrom (requiredClass))
            return getVariable (i);
    }
    return nullptr;
}

static bool isTopOfDefaultObjectTree (const Object* object)
{
    return object->isClassDefaultObject() && (object->getParent() == nullptr || ! object->getParent()->isClassDefaultObject());
}

Object* Object::getContextVariableByNameAndClass (juce::StringRef name, Class* requiredClass)
{
    for (Object* level = this; level != nullptr; level = level->parent)
    {
        if (auto* variable = level->getVariableByName (name))
            if (variable->getClass() != nullptr && variable->getClass()->inheritsFrom (requiredClass))
                return variable;
        if (isTopOfDefaultObjectTree (level))
            return nullptr;
    }
    return nullptr;
}

Object* Object::getContextVariableByName (juce::StringRef name)
{
    return getContextVariableByNameAndClass (name, &Object::staticClass);
}

MemberSignature* Object::getVariableSignature (const Object* variable) const
{
    const int index = findVariable (variable);
    return index >= 0 ? getVariableSignature ((size_t) index) : nullptr;
}

MemberSignature* Object::getVariableSignature (size_t index) const
{
    return getClass()->getMemberVariableSignature (index);
}

MemberSignature* Object::getSignature() const
{
    if (parent == nullptr || isTopOfDefaultObjectTree (this))
        return nullptr;
    return parent->getVariableSignature (this);
}

bool Object::acceptVariables (ObjectPredicate& predicate)
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        if (! predicate.doesAcceptObject (getVariable (i)))
            return false;
    return true;
}

bool Object::acceptVariablesRecursively (ObjectPredicate& predicate, bool followOwnedPointers)
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        auto* variable = getVariable (i);
        if (! predicate.doesAcceptObject (variable) || ! variable->acceptVariablesRecursively (predicate, followOwnedPointers))
            return false;
        auto* pointer = followOwnedPointers ? dynamic_cast<ObjectOwnedPointer*> (variable) : nullptr;
        if (pointer != nullptr && pointer->get() != nullptr
            && (! predicate.doesAcceptObject (pointer->get()) || ! pointer->get()->acceptVariablesRecursively (predicate, true)))
            return false;
    }
    return true;
}

//==============================================================================
void Object::setParentsRecursively (Object* newParent)
{
    parent = newParent;
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        getVariable (i)->setParentsRecursively (this);
}

bool Object::isChildOf (const Object* ancestor, bool strict) const
{
    for (const Object* level = strict ? parent : this; level != nullptr; level = level->parent)
        if (level == ancestor)
            return true;
    return false;
}

Object* Object::findAncestorOfClass (Class* ancestorClass, int maxLevels) const
{
    int level = 0;
    for (Object* ancestor = parent; ancestor != nullptr && level < maxLevels; ancestor = ancestor->parent, ++level)
        if (ancestor->getClass() != nullptr && ancestor->getClass()->inheritsFrom (ancestorClass))
            return ancestor;
    return nullptr;
}

Object* Object::getCommonAncestor (Object* other)
{
    if (other == nullptr)
        return nullptr;
    if (isChildOf (other, false))
        return other;
    if (other->isChildOf (this, false))
        return this;
    if (parent != nullptr)
        if (auto* found = parent->getCommonAncestor (other))
            return found;
    return other->parent != nullptr ? getCommonAncestor (other->parent) : nullptr;
}

void Object::getObjectPath (std::vector<uint64_t>& path) const
{
    if (parent == nullptr)
        return;
    parent->getObjectPath (path);
    if (dynamic_cast<const ObjectOwnedPointer*> (parent) != nullptr)
    {
        path.push_back (0);
        return;
    }
    if (auto* vector = dynamic_cast<const ObjectOwnedVector*> (parent))
    {
        path.push_back ((uint64_t) vector->find (this));
        return;
    }
    const int index = parent->findVariable (this);
    if (index >= 0)
        path.push_back ((uint64_t) index);
}

bool Object::compareObjectPaths (const std::vector<uint64_t>& a, const std::vector<uint64_t>& b)
{
    return std::lexicographical_compare (a.begin(), a.end(), b.begin(), b.end());
}

//==============================================================================
bool Object::equals (const Object& other) const
{
    if (this == &other)
        return true;
    if (getClass() != other.getClass())
        return false;
    return equalsSameClass (other);
}

bool Object::equalsSameClass (const Object& other) const
{
    if (this == &other)
        return true;
    if (getClass() != other.getClass())
        return false;
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        if (! getVariable (i)->equals (*other.getVariable (i)))
            return false;
    return true;
}

bool Object::equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const
{
    if (this == &other
        || (ignored.doesAcceptObject (const_cast<Object*> (this)) && ignored.doesAcceptObject (const_cast<Object*> (&other))))
        return true;
    if (getClass() != other.getClass())
        return false;
    const size_t count = getNumVariables();
    if (count == 0)
        return equals (other);
    for (size_t i = 0; i < count; ++i)
        if (! getVariable (i)->equalsIgnoringVariables (*other.getVariable (i), ignored))
            return false;
    return true;
}

bool Object::equalsIgnoringReadOnly (const Object& other, bool includeNotEditable) const
{
    IsReadonlyPredicate predicate (includeNotEditable);
    return equalsIgnoringVariables (other, predicate);
}

void Object::copyTo (Object& target) const
{
    if (&target == this)
        return;
    const bool wasApplying = target.isApplyingVariableConstraints();
    if (! wasApplying)
        target.startApplyingVariableConstraints();
    copyClassTo (target);
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        getVariable (i)->copyTo (*target.getVariable (i));
    if (! wasApplying)
        target.finishApplyingVariableConstraints();
}

Object* Object::clone (Object* newParent) const
{
    auto* c = getClass();
    Object* copy = c != nullptr ? c->createObject (newParent) : nullptr;
    if (copy != nullptr)
        copyTo (*copy);
    return copy;
}

//==============================================================================
Object* Object::getLabelVariable() const
{
    // Asked for every friendly name: String's class is taken as it is, not looked up by its name.
    static const char* const labelNames[] = { "name", "label", "caption" };
    for (auto* labelName : labelNames)
        if (auto* variable = const_cast<Object*> (this)->getVariableByName (labelName))
            if (variable->getClass() != nullptr && variable->getClass()->inheritsFrom (&String::staticClass))
                return variable;
    // A dynamic variable's name stands in its signature.
    if (auto* signature = const_cast<Object*> (this)->getVariableByClass (&DynamicVariableSignature::staticClass))
        return &static_cast<DynamicVariableSignature*> (signature)->friendlyName;
    return nullptr;
}

juce::String Object::getLabelText() const
{
    auto* label = getLabelVariable();
    return label != nullptr ? label->toString() : juce::String();
}

juce::String Object::getFriendlyName() const
{
    if (hasFlag (insideGetFriendlyNameFlag))
        return "<Reentrant Name>";

    auto* self = const_cast<Object*> (this);
    self->setFlag (insideGetFriendlyNameFlag);
    juce::String name = getLabelText();
    if (name.isEmpty())
        if (auto* owner = dynamic_cast<Class*> (parent))
            name = owner->getFriendlyName() + " Default Object";
    if (name.isEmpty())
        name = getAutomaticFriendlyName();
    if (name.isEmpty())
        name = getClassFriendlyName();
    self->removeFlag (insideGetFriendlyNameFlag);
    return name;
}

void Object::getFriendlyNameDependencies (VariableDependenciesDeclarator& declarator) const
{
    if (auto* label = getLabelVariable())
        declarator.add (label);
}

juce::String Object::getAutomaticFriendlyName() const
{
    if (auto* owner = dynamic_cast<const ObjectOwnedPointer*> (parent))
        return owner->getFriendlyName();
    if (auto* vector = dynamic_cast<const ObjectOwnedVector*> (parent))
    {
        const int index = vector->find (this);
        if (index >= 0)
            return vector->getObjectFriendlyName ((size_t) index);
    }
    if (auto* variable = dynamic_cast<const DynamicVariable*> (parent))
        return variable->getFriendlyName();
    if (auto* signature = getSignature())
        return signature->getFriendlyNameWithCapitals();
    return getClassFriendlyName();
}

juce::String Object::toString() const
{
    juce::String text = getClassName() + "(";
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
    {
        juce::String variableText = getVariable (i)->toString();
        if (variableText.length() > 16)
            variableText = variableText.substring (0, 10) + "...";
        text += (i > 0 ? ", " : "") + variableText;

        const size_t remaining = count - i - 1;
        if (text.length() > 50 && remaining >= 2)
            return text + "... (" + juce::String ((juce::int64) remaining) + " other variables)";
    }
    return text + ")";
}

//==============================================================================
void Object::changed()
{
    ++numChanges;
    if (isBeingDestroyed())
        return;

    setFlag (insideChangedFlag);
    thisChangedCallback();

    Object* child = this;
    bool incrementing = true;
    while (Object* owner = child->parent)
    {
        if (owner->isBeingDestroyed())
            break;
        if (child->hasStaticAllocationFlag())
        {
            if (incrementing)
            {
                if (owner->shouldIncrementNumChanges (child, this))
                    ++owner->numChanges;
                else
                    incrementing = false;
            }
        }
        else
        {
            if (! owner->doPropagateChildrenChanges())
                break;
            incrementing = false;
        }

        owner->variableChangedCallback (child, this);
        if (isBeingDestroyed())
        {
            removeFlag (insideChangedFlag);
            return;
        }
        child = owner;
    }

    if (space != nullptr)
        space->sendObjectChanged (this);

    for (Object* level = this; level != nullptr;)
    {
        level->walkViews ([level, this] (View* view) { view->changedCallback (level, this); });
        Object* owner = level->parent;
        if (owner == nullptr || ! (level->hasStaticAllocationFlag() || owner->doPropagateChildrenChanges()))
            break;
        level = owner;
    }

    removeFlag (insideChangedFlag);
}

//==============================================================================
void Object::callInitializeObject (ObjectSpace* newSpace, Class* newClass, Object* newParent)
{
    if (newClass != nullptr)
        setClass (newClass);
    setParent (newParent);
    if (space == nullptr && newSpace != nullptr)
    {
        space = newSpace;
        newSpace->addObject (this, uniqueIdentifier);
    }
    setFlag (initializedFlag);
    initializeObject();
    if (newSpace != nullptr && referenceCounter != staticAllocationSentinel && referenceCounter != 0)
        newSpace->sendObjectCreated (this);
}

void Object::initializeObject()
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        getVariable (i)->callInitializeObject (space, getVariableSignature (i)->getValueClass(), this);
}

void Object::callDeinitializeObject()
{
    if (isObjectInitialized())
    {
        removeFlag (initializedFlag);
        setFlag (insideChangedFlag);
        if (space != nullptr)
            space->sendObjectPreDeleted (this);
        walkViews ([this] (View* view) { view->deinitializedCallback (this); });
        removeFlag (insideChangedFlag);
        deinitializeObject();
        if (space != nullptr)
        {
            space->removeObject (uniqueIdentifier);
            space = nullptr;
        }
    }
    else
    {
        deinitializeObject();
    }
    uniqueIdentifier = UniqueIdentifier();
}

void Object::deinitializeObject()
{
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        getVariable (i)->callDeinitializeObject();
}

void Object::markObjectsAsBeingDestroyed()
{
    setFlag (beingDestroyedFlag);
    const size_t count = getNumVariables();
    for (size_t i = 0; i < count; ++i)
        getVariable (i)->markObjectsAsBeingDestroyed();
}

void Object::destroyed()
{
    if (isBeingDestroyed())
        return;
    markObjectsAsBeingDestroyed();
    if (space != nullptr)
        space->sendObjectDestroyed (this);
    callDeinitializeObject();
}

void Object::deleteThis()
{
    referenceCounter = 0;
    if (isObjectInitialized())
    {
        if (isBeingDestroyed())
            callDeinitializeObject();
        else
            destroyed();
    }
    uniqueIdentifier = UniqueIdentifier();
    setFlag (beingDestroyedFlag);
    delete this;
}

//==============================================================================
void Object::addView (View* view)
{
    if (views == nullptr)
        views = std::make_unique<ViewList>();
    views->views.push_back (view);
}

void Object::removeView (View* view)
{
    if (views == nullptr)
        return;
    auto& list = views->views;
    auto found = std::find (list.begin(), list.end(), view);
    if (found == list.end())
        return;
    const auto position = (uint64_t) (found - list.begin());
    // A running walk at or after the removed position steps back one, so that its
    // next increment lands on the view that took the removed one's place.
    for (auto& traversal : views->traversals)
        if (position <= traversal)
            --traversal;
    list.erase (found);
}

void Object::detachAllViews()
{
    if (views == nullptr)
        return;
    walkViews ([this] (View* view)
    {
        view->attachedObjects.erase (this);
        if (auto* weakPointer = dynamic_cast<ObjectWeakPointer*> (view))
            weakPointer->set ((Object*) nullptr, true);
    });
    for (auto& traversal : views->traversals)
        traversal = 0;
    views->views.clear();
}

void Object::callMessageCallbackOnAllViews (void* message)
{
    walkViews ([message] (View* view) { view->messageCallback (message); });
}

void Object::getWeakPointersToThis (std::vector<ObjectWeakPointer*>& result) const
{
    if (views != nullptr)
        for (auto* view : views->views)
            if (auto* weakPointer = dynamic_cast<ObjectWeakPointer*> (view))
                result.push_back (weakPointer);
}

bool Object::hasWeakPointersToThis() const
{
    if (views != nullptr)
        for (auto* view : views->views)
            if (dynamic_cast<ObjectWeakPointer*> (view) != nullptr)
                return true;
    return false;
}

void Object::weakPointerToThisChangedCallback (ObjectWeakPointer* source)
{
    walkViews ([source] (View* view)
    {
        if (view != static_cast<View*> (source))
            view->weakPointerToTargetChanged (source);
    });
}

//==============================================================================
bool IsReadonlyPredicate::doesAcceptObject (Object* object)
{
    return object->isReadOnly() || (includeNotEditable && ! object->isEditable());
}

bool ClassPredicate::doesAcceptObject (Object* object)
{
    return object->getClass() != nullptr && object->getClass()->inheritsFrom (requiredClass);
}

} // namespace tov
