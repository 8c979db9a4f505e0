#pragma once

#include <juce_core/juce_core.h>

namespace tov
{

class Class;
class ExecutionContext;
class MemberSignature;
class Object;
class ObjectSpace;
class ObjectSpaceProvider;
class Peer;
class VariableAddress;

/** What the children of one composite transaction share while it runs them, found once
    instead of once per child.

    Every child's message resolves its address by a climb from the message through the child
    to the composite's list and on up to a space provider: above the list the answer is the
    same for every child, and so is the space of one name there. Every child that loads here
    finds its peer above its space (or above the list, without one). And the objects the
    children load are mostly of one class and signature, which decide whether a sent change
    excludes its object from mirroring.

    A composite opens one around its children, on its own thread; a child asks the innermost
    open one, and finds things itself when that one is not its composite's. Nothing that a
    child's load does moves the composite, its peer or the classes, so what was found stays
    true while the scope is open.
*/
class ChildTransactionsScope
{
public:
    /** Opened by a composite around its children, whose parent is childrensParent. */
    explicit ChildTransactionsScope (const Object& childrensParent);
    ~ChildTransactionsScope();
    ChildTransactionsScope (const ChildTransactionsScope&) = delete;
    ChildTransactionsScope& operator= (const ChildTransactionsScope&) = delete;

    /** The innermost scope open on this thread, when it is the one of this child's composite. */
    static ChildTransactionsScope* findFor (const Object& child);

    /** ObjectSpaceProvider::get (childrensParent, false). */
    ObjectSpaceProvider* getProviderAboveChildren();
    /** address.getObjectSpaceFromProvider (getProviderAboveChildren()), found again only when
        the address names its space by another string than the last one asked. */
    ObjectSpace* getSpaceAboveChildren (const VariableAddress& address);
    /** ExecutionContext::get(), which the children's loads report to. */
    ExecutionContext& getExecutionContext();
    /** Peer::get (child) for a child of this scope. */
    Peer* getPeerOf (const Object& child);
    /** The answer of decide for an object of that class and signature, asked once per pair in a row. */
    template <class Decide>
    bool decideForClassAndSignature (const Class* objectClass, const MemberSignature* signature, Decide&& decide)
    {
        if (! decisionMade || objectClass != decisionClass || signature != decisionSignature)
        {
            decision = decide();
            decisionClass = objectClass;
            decisionSignature = signature;
            decisionMade = true;
        }
        return decision;
    }

private:
    const Object& childrensParent;
    ChildTransactionsScope* const enclosing;

    bool providerFound = false;
    ObjectSpaceProvider* provider = nullptr;

    bool spaceFound = false;
    juce::String spaceName;
    ObjectSpace* space = nullptr;

    ExecutionContext* context = nullptr;

    bool peerFound = false;
    const ObjectSpace* peerSpace = nullptr;
    Peer* peer = nullptr;

    bool decisionMade = false;
    const Class* decisionClass = nullptr;
    const MemberSignature* decisionSignature = nullptr;
    bool decision = false;
};

} // namespace tov
