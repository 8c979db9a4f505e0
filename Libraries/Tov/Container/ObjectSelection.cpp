#include "ObjectSelection.h"
#include "../Core/ObjectExporter.h"
#include "../Core/ObjectImporter.h"
#include "../Pointer/ObjectWeakPointer.h"
#include <iterator>

namespace tov
{

TOV_BEGIN_CLASS (ObjectSelection, { "target", "Object" }, { "heightWhenUsedInParameterRow", "70" })
TOV_END_CLASS()

// An element's change (its object died) must reach variableChangedCallback, although the
// elements are held through their counters and not embedded.
ObjectSelection::ObjectSelection()
{
    setPropagateChildrenChanges (true);
    pruneTrigger.setParent (this);
}

ObjectSelection::ObjectSelection (const ObjectSelection& other) : ObjectSelection()
{
    other.copyTo (*this);
}

ObjectSelection::~ObjectSelection()
{
    deleteAll (elements);
}

//==============================================================================
ObjectWeakPointer* ObjectSelection::adoptElement (ObjectWeakPointer* element) const
{
    // Elements are neither initialised nor in the space's table: the space hears nothing of them.
    element->incrementReferenceCounter();
    element->setSpace (getSpace());
    element->setParent (const_cast<ObjectSelection*> (this));
    return element;
}

void ObjectSelection::deleteElement (ObjectWeakPointer* element)
{
    element->setParent (nullptr);
    element->decrementReferenceCounter (true);
}

void ObjectSelection::eraseElement (size_t index)
{
    auto* element = elements[index];
    elements.erase (elements.begin() + (std::ptrdiff_t) index);
    deleteElement (element);
}

void ObjectSelection::deleteAll (std::vector<ObjectWeakPointer*>& list)
{
    for (auto* element : list)
        deleteElement (element);
    list.clear();
}

bool ObjectSelection::holdsElements (const std::vector<ObjectWeakPointer*>& list) const
{
    if (list.size() != elements.size())
        return false;
    for (size_t i = 0; i < list.size(); ++i)
        if (! elements[i]->equals (*list[i]))
            return false;
    return true;
}

bool ObjectSelection::replaceElements (std::vector<ObjectWeakPointer*>& list)
{
    if (holdsElements (list))
    {
        deleteAll (list);
        return false;
    }
    elements.swap (list);
    deleteAll (list);
    // What the new elements point at is looked for at the next read: it may come later.
    hasBeenChecked = false;
    return true;
}

//==============================================================================
Object* ObjectSelection::get (size_t index) const
{
    return elements[index]->get();
}

Object* ObjectSelection::front()
{
    ensureHasBeenChecked();
    return elements.empty() ? nullptr : get (0);
}

Object* ObjectSelection::back()
{
    ensureHasBeenChecked();
    return elements.empty() ? nullptr : get (elements.size() - 1);
}

bool ObjectSelection::isSingleton()
{
    ensureHasBeenChecked();
    return elements.size() == 1;
}

bool ObjectSelection::isSingletonOfClass (Class* memberClass)
{
    auto* singleton = getSingleton();
    return singleton != nullptr && Class::inheritsFrom (singleton->getClass(), memberClass);
}

Object* ObjectSelection::getSingleton()
{
    return isSingleton() ? get (0) : nullptr;
}

int ObjectSelection::find (const Object* object)
{
    ensureHasBeenChecked();
    for (size_t i = 0; i < elements.size(); ++i)
        if (get (i) == object)
            return (int) i;
    return -1;
}

//==============================================================================
void ObjectSelection::insert (Object* object, bool notify, bool unique, uint32_t position)
{
    if (object == nullptr)
        return;
    ensureHasBeenChecked();
    if (unique && contains (object))
        return;

    auto* element = adoptElement (new ObjectWeakPointer (object));
    // A position is clamped to the present elements, so that it can't reach past the last one;
    // an empty list has none to clamp to, and appends.
    if (position != append && ! elements.empty())
        elements.insert (elements.begin() + (std::ptrdiff_t) std::min<size_t> (position, elements.size() - 1), element);
    else
        elements.push_back (element);

    if (notify)
        changed();
}

void ObjectSelection::insert (ObjectSelection& other, bool notify, bool unique)
{
    const size_t previousSize = elements.size();
    const size_t count = other.size();
    for (size_t i = 0; i < count; ++i)
        insert (other.get (i), false, unique);
    if (notify && elements.size() != previousSize)
        changed();
}

void ObjectSelection::insertRelatedObject (ObjectSelection& source, const std::function<Object* (Object*)>& function,
                                           bool notify, bool check)
{
    if (check)
        source.ensureHasBeenChecked();
    const size_t previousSize = elements.size();
    const size_t count = source.size();
    for (size_t i = 0; i < count; ++i)
        if (auto* member = source.get (i))
            insert (function (member), false, true);
    if (notify && elements.size() != previousSize)
        changed();
}

void ObjectSelection::remove (size_t index, bool notify)
{
    eraseElement (index);
    if (notify)
        changed();
}

bool ObjectSelection::remove (const Object* object, bool notify)
{
    const int index = find (object);
    if (index < 0)
        return false;
    remove ((size_t) index, notify);
    return true;
}

template <class Predicate>
void ObjectSelection::removeIf (Predicate&& shouldRemove, bool notify)
{
    ensureHasBeenChecked();
    bool removed = false;
    for (size_t i = 0; i < elements.size();)
    {
        auto* member = get (i);
        if (member != nullptr && shouldRemove (member))
        {
            eraseElement (i);
            removed = true;
        }
        else
        {
            ++i;
        }
    }
    if (notify && removed)
        changed();
}

void ObjectSelection::remove (const std::vector<Object*>& objects, bool notify)
{
    const std::set<const Object*> removed (objects.begin(), objects.end());
    removeIf ([&] (Object* member) { return removed.count (member) != 0; }, notify);
}

void ObjectSelection::removeChildrenOf (const Object* object, bool includeSelf, bool notify)
{
    removeIf ([=] (Object* member) { return member->isChildOf (object, ! includeSelf); }, notify);
}

void ObjectSelection::keepOnlyRootObjects (bool notify)
{
    ensureHasBeenChecked();
    std::set<const Object*> members;
    for (size_t i = 0; i < elements.size(); ++i)
        members.insert (get (i));
    removeIf ([&] (Object* member)
    {
        for (const Object* level = member->getParent(); level != nullptr; level = level->getParent())
            if (members.count (level) != 0)
                return true;
        return false;
    }, notify);
}

template <class Iterator>
bool ObjectSelection::holdsObjects (Iterator begin, Iterator end) const
{
    size_t index = 0;
    for (auto position = begin; position != end; ++position, ++index)
        if (index >= elements.size() || get (index) != *position)
            return false;
    return index == elements.size();
}

template <class Iterator>
void ObjectSelection::setObjects (Iterator begin, Iterator end, size_t count, bool notify)
{
    ensureHasBeenChecked();
    if (holdsObjects (begin, end))
        return;
    clear (false);
    elements.reserve (count);
    for (auto position = begin; position != end; ++position)
        insert (*position, false, false);
    if (notify)
        changed();
}

void ObjectSelection::set (const std::vector<Object*>& objects, bool notify)
{
    setObjects (objects.begin(), objects.end(), objects.size(), notify);
}

void ObjectSelection::set (const std::set<Object*>& objects, bool notify)
{
    setObjects (objects.begin(), objects.end(), objects.size(), notify);
}

void ObjectSelection::reverseSet (const std::vector<Object*>& objects, bool notify)
{
    setObjects (objects.rbegin(), objects.rend(), objects.size(), notify);
}

void ObjectSelection::clear (bool notify)
{
    hasBeenChecked = true;
    if (elements.empty())
        return;
    std::vector<ObjectWeakPointer*> released;
    released.swap (elements);
    if (notify)
        changed();
    deleteAll (released);
}

//==============================================================================
template <class Predicate>
bool ObjectSelection::anyMember (Predicate&& predicate)
{
    ensureHasBeenChecked();
    for (size_t i = 0; i < elements.size(); ++i)
        if (auto* member = get (i))
            if (predicate (member))
                return true;
    return false;
}

bool ObjectSelection::areAllBrothers()
{
    ensureHasBeenChecked();
    if (elements.empty())
        return true;
    auto* first = get (0);
    if (first == nullptr || first->getParent() == nullptr)
        return false;
    return ! anyMember ([first] (Object* member) { return member->getParent() != first->getParent(); });
}

bool ObjectSelection::containsAncestorsOf (const Object* object, bool includeSelf)
{
    return findAncestorOf (object, includeSelf) != nullptr;
}

bool ObjectSelection::containsChildOf (const Object* object, bool includeSelf)
{
    return anyMember ([=] (Object* member) { return member->isChildOf (object, ! includeSelf); });
}

Object* ObjectSelection::findAncestorOf (const Object* object, bool includeSelf)
{
    Object* found = nullptr;
    anyMember ([&] (Object* member)
    {
        if (object->isChildOf (member, ! includeSelf))
            found = member;
        return found != nullptr;
    });
    return found;
}

bool ObjectSelection::containsEditableObjects()
{
    return anyMember ([] (Object* member) { return member->isEditable(); });
}

bool ObjectSelection::containsOnlyEditableObjects()
{
    return ! anyMember ([] (Object* member) { return ! member->isEditable(); });
}

bool ObjectSelection::doAllObjectsInheritFrom (Class* baseClass)
{
    return ! anyMember ([=] (Object* member) { return ! Class::inheritsFrom (member->getClass(), baseClass); });
}

Class* ObjectSelection::findCommonBaseClass()
{
    Class* common = nullptr;
    bool first = true;
    anyMember ([&] (Object* member)
    {
        common = first ? member->getClass() : Class::findCommonBaseClass (common, member->getClass());
        first = false;
        return false;
    });
    return common;
}

Object* ObjectSelection::getCommonAncestor()
{
    Object* common = nullptr;
    bool first = true;
    anyMember ([&] (Object* member)
    {
        common = first ? member : member->getCommonAncestor (common);
        first = false;
        return common == nullptr;
    });
    return common;
}

Class* ObjectSelection::getTargetClass() const
{
    return targetClass.get (*this);
}

void ObjectSelection::setClass (Class* newClass)
{
    Container::setClass (newClass);
    targetClass.forget();
}

//==============================================================================
juce::String ObjectSelection::getObjectDescription (const Object* object) const
{
    return object != nullptr ? object->getFriendlyName() : juce::String ("<deleted>");
}

juce::String ObjectSelection::getDescription()
{
    ensureHasBeenChecked();
    if (elements.empty())
        return "<Empty selection>";
    // Joined once the lengths are known: appending name after name would copy the text each time.
    juce::StringArray descriptions;
    descriptions.ensureStorageAllocated ((int) elements.size());
    for (size_t i = 0; i < elements.size(); ++i)
        descriptions.add (getObjectDescription (get (i)));
    const int last = descriptions.size() - 1;
    if (last == 0)
        return descriptions[0];
    return descriptions.joinIntoString (", ", 0, last) + " and " + descriptions[last];
}

juce::String ObjectSelection::getMultiLineDescription()
{
    // A longer list reads as its first lines and a count, as a list's toString does.
    constexpr size_t maxLinesWhole = 32, linesOfLonger = 30;
    ensureHasBeenChecked();
    const size_t shown = elements.size() > maxLinesWhole ? linesOfLonger : elements.size();
    juce::StringArray lines;
    for (size_t i = 0; i < shown; ++i)
        lines.add (getObjectDescription (get (i)));
    if (shown < elements.size())
        lines.add ("and " + juce::String ((juce::int64) (elements.size() - shown)) + " others");
    return lines.joinIntoString ("\n");
}

juce::String ObjectSelection::toString() const
{
    juce::StringArray texts;
    for (auto* element : elements)
        texts.add (element->toString());
    return "{" + texts.joinIntoString (", ") + "}";
}

//==============================================================================
void ObjectSelection::ensureHasBeenChecked()
{
    // A read from within the prune's own notification does not start it again.
    if (pruneTrigger.isTriggered() && ! pruneTrigger.isInsideChanged())
        pruneTrigger.flush (true);
    if (hasBeenChecked)
        return;
    const bool notify = getClass()->getBooleanAttribute (getSignature(), "notifyInCaseOfAddressLoss", true);
    // Set first, so that a reader called back by the change finds the list checked.
    hasBeenChecked = true;
    checkNullPointers (notify);
}

void ObjectSelection::checkNullPointers (bool notify)
{
    if (! autoPruning)
        return;
    bool removed = false, leftBehind = false;
    for (size_t i = 0; i < elements.size();)
    {
        auto* element = elements[i];
        if (element->get() != nullptr)
        {
            ++i;
        }
        else if (element->isInsideChanged())
        {
            // Still telling of its object's death: it can't be deleted inside that call.
            leftBehind = true;
            ++i;
        }
        else
        {
            juce::Logger::outputDebugString ("Lost pointer in ObjectSelection " + getFriendlyName() + ": " + element->getAddress().toString());
            eraseElement (i);
            removed = true;
        }
    }
    if (leftBehind)
    {
        hasBeenChecked = false;
        pruneTrigger.trig();
    }
    if (notify && removed)
        changed();
}

void ObjectSelection::variableChangedCallback (Object* variable, Object*)
{
    if (variable == &pruneTrigger)
    {
        hasBeenChecked = true;
        checkNullPointers (false);
        return;
    }
    // An element's object died: the list shrinks later, never inside the deleting call.
    if (! loadingElements && variable->getParent() == this)
        if (auto* element = dynamic_cast<ObjectWeakPointer*> (variable))
            if (element->getIfAlreadyCached() == nullptr)
            {
                hasBeenChecked = false;
                pruneTrigger.trig();
            }
}

//==============================================================================
bool ObjectSelection::equalsSameClass (const Object& other) const
{
    return holdsElements (static_cast<const ObjectSelection&> (other).elements);
}

bool ObjectSelection::equalsIgnoringVariables (const Object& other, ObjectPredicate& ignored) const
{
    if (ignored.doesAcceptObject (const_cast<ObjectSelection*> (this)) && ignored.doesAcceptObject (const_cast<Object*> (&other)))
        return true;
    auto* selection = dynamic_cast<const ObjectSelection*> (&other);
    return selection != nullptr && holdsElements (selection->elements);
}

void ObjectSelection::copyTo (Object& target) const
{
    auto* selection = dynamic_cast<ObjectSelection*> (&target);
    if (selection == nullptr || selection == this)
        return;
    copyClassTo (target);
    std::vector<ObjectWeakPointer*> copies;
    copies.reserve (elements.size());
    for (auto* element : elements)
        copies.push_back (selection->adoptElement (new ObjectWeakPointer (*element)));
    if (selection->replaceElements (copies))
        selection->changed();
}

void ObjectSelection::save (ObjectExporter& exporter) const
{
    if (! elements.empty())
        exporter.reserveVariables (elements.size());
    for (auto* element : elements)
        if (! element->getAddress().isNull())
        {
            exporter.enterVariable ({});
            element->save (exporter);
            exporter.leaveVariable();
        }
}

bool ObjectSelection::load (ObjectImporter& importer)
{
    bool result = true;
    std::vector<ObjectWeakPointer*> loaded;
    const size_t count = importer.getNumVariables();
    loaded.reserve (count);
    loadingElements = true;
    for (size_t i = 0; i < count; ++i)
        if (! loadElement (importer, i, loaded))
            result = false;
    loadingElements = false;
    if (replaceElements (loaded))
        changed();
    return result;
}

bool ObjectSelection::loadElement (ObjectImporter& importer, size_t index, std::vector<ObjectWeakPointer*>& list)
{
    ObjectImporter::Scope scope (importer, index);
    auto* element = adoptElement (new ObjectWeakPointer());
    if (! element->load (importer))
    {
        deleteElement (element);
        return false;
    }
    list.push_back (element);
    return true;
}

void ObjectSelection::initializeObject()
{
    Container::initializeObject();
    for (auto* element : elements)
        element->setSpace (getSpace());
}

void ObjectSelection::deinitializeObject()
{
    pruneTrigger.untrig();
    for (auto* element : elements)
        element->setSpace (nullptr);
    Container::deinitializeObject();
}

} // namespace tov
