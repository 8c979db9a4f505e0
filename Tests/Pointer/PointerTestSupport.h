#pragma once

#include "Support/LogTestSupport.h"
#include "Atomic/AtomicTestSupport.h"
#include "Support/TestService.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Core/ObjectSpace.h>
#include <Tov/Core/ObjectSpaceProvider.h>
#include <Tov/Core/TypedVariablePath.h>
#include <Tov/Pointer/NativeHandle.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <Tov/Pointer/WeakPointer.h>
#include <gtest/gtest.h>
#include <map>

// Documents of nodes that own and point to each other, in spaces that know each other by name.
namespace tov::test
{

/** A node of a document: a name, a value, an owned child, a list of weak links. */
class Node : public Object
{
public:
    TOV_DECLARE_CLASS (Node, Object)

    String name;
    Integer value;
    OwnedPointer<Node> child;
    OwnedPointer<Node> sibling;
    WeakPointer<Node> link;
};

/** A node of another class, for pointers that expect a Node. */
class Stranger : public Object
{
public:
    TOV_DECLARE_CLASS (Stranger, Object)

    String name;
};

/** A space that finds its fellow spaces by name, as a service does for the spaces it owns. */
class NamedSpaces
{
public:
    class Space : public ObjectSpace, public ObjectSpaceProvider
    {
    public:
        Space (NamedSpaces& owner, const juce::String& name) : ObjectSpace (name), owner (owner) {}
        ObjectSpace* getSpaceByName (const juce::String& name) const override  { return owner.find (name); }

    private:
        NamedSpaces& owner;
    };

    Space& add (const juce::String& name);
    Space* find (const juce::String& name) const;
    void remove (const juce::String& name)           { spaces.erase (name); }

private:
    std::map<juce::String, std::unique_ptr<Space>> spaces;
};

/** A running program and a service on the test's thread: what resolving addresses needs. */
class PointerTest : public ::testing::Test
{
protected:
    TestProgram program;
    /** The program takes the library tree down until it starts: these tests only need it to run. */
    bool treeIsBack = (TestProgram::ensureTestLibraryTree(), true);
    TestService service;
    bool serviceRuns = service.startService (true);
    NamedSpaces spaces;

    /** A node named so, made by its class, not yet in a space. */
    static Node* makeNode (const juce::String& name, int64_t value = 0);
    /** A space holding the object as its root, under the root identifier. */
    NamedSpaces::Space& makeSpace (const juce::String& name, Object* root);
};

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensurePointerTestLibrary();

} // namespace tov::test
