#include "Container/SelectionTestSupport.h"
#include <Tov/Container/OwnedVector.h>
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Standard/HierarchicalSelection.h>
#include <Tov/Standard/ToStringExecutionContext.h>

using namespace tov;
using namespace tov::test;

namespace
{
/** A leaf: no variables, so the hierarchy sees it as an item. */
class Lamp : public Object
{
public:
    TOV_DECLARE_CLASS (Lamp, Object)
};

/** A leaf that holds another leaf, which no walk reaches. */
class Cluster : public Lamp
{
public:
    TOV_DECLARE_CLASS (Cluster, Lamp)

    Lamp inner;
};

/** A group of three lamps. */
class Rig : public Object
{
public:
    TOV_DECLARE_CLASS (Rig, Object)

    Lamp left, middle, right;
};

/** The root of the hierarchy: two rigs and a cluster. */
class Stage : public Object
{
public:
    TOV_DECLARE_CLASS (Stage, Object)

    Rig front, back;
    Cluster spot;
};

/** The lamps chosen on the stage of the venue that holds the selection. */
class LampSelection : public HierarchicalSelection
{
public:
    TOV_DECLARE_CLASS (LampSelection, HierarchicalSelection)

    Object* getHierarchyRoot() const override         { return getParent()->getVariableByName ("stage"); }
};

/** A document: the stage and its selection. */
class Venue : public Object
{
public:
    TOV_DECLARE_CLASS (Venue, Object)

    Stage stage;
    LampSelection lamps;
};

/** Folders of lamps held in vectors, for the rule of sub-objects. */
class Folder : public Object
{
public:
    TOV_DECLARE_CLASS (Folder, Object)

    String name;
    OwnedVector<Lamp> lamps;
};

TOV_BEGIN_CLASS (Lamp)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Cluster)
    TOV_VARIABLE (inner)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Rig)
    TOV_VARIABLE (left)
    TOV_VARIABLE (middle)
    TOV_VARIABLE (right)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Stage)
    TOV_VARIABLE (front)
    TOV_VARIABLE (back)
    TOV_VARIABLE (spot)
TOV_END_CLASS()

TOV_BEGIN_CLASS (LampSelection, { "target", "Lamp" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (Venue)
    TOV_VARIABLE (stage)
    TOV_VARIABLE (lamps)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Folder)
    TOV_VARIABLE (name)
    TOV_VARIABLE (lamps)
TOV_END_CLASS()

void ensureHierarchyTestLibrary()
{
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("HierarchyTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("HierarchyTests", {});
    library->addClass<Lamp>();
    library->addClass<Cluster>();
    library->addClass<Rig>();
    library->addClass<Stage>();
    library->addClass<LampSelection>();
    library->addClass<Venue>();
    library->addClass<Folder>();
    root->addLibrary (library);
}

Venue* makeVenue()
{
    ensureHierarchyTestLibrary();
    return create<Venue>();
}

/** A venue as the root of the space "venue". */
class HierarchicalSelectionTest : public PointerTest
{
protected:
    Venue* venue = makeVenue();
    NamedSpaces::Space& space = makeSpace ("venue", venue);
    Stage& stage = venue->stage;
    LampSelection& lamps = venue->lamps;
    ObjectSelection& scopes = venue->lamps.selectedScopes;

    static std::vector<Object*> objects (std::initializer_list<Object*> list)  { return list; }

    static std::vector<Object*> membersOf (const ObjectSelection& selection)
    {
        std::vector<Object*> result;
        for (size_t i = 0; i < selection.size(); ++i)
            result.push_back (selection.get (i));
        return result;
    }

    std::vector<Object*> allLamps()
    {
        return { &stage.front.left, &stage.front.middle, &stage.front.right,
                 &stage.back.left, &stage.back.middle, &stage.back.right, &stage.spot };
    }
};
} // namespace

TEST_F (HierarchicalSelectionTest, SelectOfTheLastUnselectedChildFoldsTheWholeGroupUpToTheRoot)
{
    scopes.set (objects ({ &stage.back, &stage.spot, &stage.front.middle, &stage.front.right }));
    OwnChangeCounter changes (scopes);
    lamps.select (&stage.front.left);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage }));
    EXPECT_EQ (changes.count, 1);
    EXPECT_TRUE (lamps.areLeavesInvalid());
}

TEST_F (HierarchicalSelectionTest, SelectOfAChildOfAPartlySelectedGroupFoldsOnlyWhatIsFull)
{
    lamps.select (&stage.front.left);
    lamps.select (&stage.front.middle);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.front.left, &stage.front.middle }));
    lamps.select (&stage.front.right);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.front }));
    lamps.select (&stage.back);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.front, &stage.back }));
}

TEST_F (HierarchicalSelectionTest, UnselectOfALeafBelowASelectedGrandparentLeavesItsUnclesAndBrothersSelected)
{
    lamps.selectAll();
    ASSERT_EQ (membersOf (scopes), objects ({ &stage }));
    OwnChangeCounter changes (scopes);
    lamps.unselect (&stage.front.left);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.back, &stage.spot, &stage.front.middle, &stage.front.right }));
    EXPECT_EQ (changes.count, 1);
}

TEST_F (HierarchicalSelectionTest, SelectOfAnObjectThatAScopeCoversChangesNothing)
{
    lamps.select (&stage.front);
    lamps.computeSelectedLeaves();
    OwnChangeCounter changes (scopes);
    lamps.select (&stage.front.middle);
    lamps.select (&stage.front);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.front }));
    EXPECT_EQ (changes.count, 0);
    EXPECT_FALSE (lamps.areLeavesInvalid());
}

TEST_F (HierarchicalSelectionTest, SelectOfAGroupReplacesItsSelectedChildren)
{
    lamps.select (&stage.back.left);
    lamps.select (&stage.front.right);
    lamps.select (&stage.front.left);
    lamps.select (&stage.front);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.back.left, &stage.front }));
}

TEST_F (HierarchicalSelectionTest, SelectWithoutNotificationOnlyPutsTheLeavesOutOfDate)
{
    OwnChangeCounter changes (scopes);
    lamps.select (&stage.spot, false);
    EXPECT_EQ (changes.count, 0);
    EXPECT_TRUE (lamps.areLeavesInvalid());
    EXPECT_EQ (membersOf (lamps.getSelectedLeaves()), objects ({ &stage.spot }));
}

TEST_F (HierarchicalSelectionTest, UnselectOfASelectedGroupTakesItsSelectedChildrenToo)
{
    lamps.select (&stage.front.left);
    lamps.select (&stage.back);
    lamps.unselect (&stage.front);
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.back }));
    lamps.unselect (&stage.back);
    EXPECT_EQ (scopes.size(), 0u);
}

TEST_F (HierarchicalSelectionTest, UnselectOfWhatIsNotSelectedNotifiesNothing)
{
    lamps.select (&stage.back);
    lamps.computeSelectedLeaves();
    OwnChangeCounter changes (scopes);
    lamps.unselect (&stage.front.left);
    EXPECT_EQ (changes.count, 0);
    EXPECT_FALSE (lamps.areLeavesInvalid());
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.back }));
}

TEST_F (HierarchicalSelectionTest, TheLeavesFollowTheScopesInOrderAndStopAtALeaf)
{
    lamps.select (&stage.spot);
    lamps.select (&stage.back);
    EXPECT_EQ (membersOf (lamps.getSelectedLeaves()), objects ({ &stage.spot, &stage.back.left, &stage.back.middle, &stage.back.right }));
    EXPECT_EQ (lamps.size(), 4u);
    EXPECT_FALSE (lamps.isEmpty());
    lamps.selectAll();
    EXPECT_EQ (membersOf (lamps.getSelectedLeaves()), allLamps());
    EXPECT_FALSE (lamps.getSelectedLeaves().contains (&stage.spot.inner));
}

TEST_F (HierarchicalSelectionTest, AnEmptySelectionHasNoLeaves)
{
    EXPECT_TRUE (lamps.isEmpty());
    EXPECT_EQ (lamps.size(), 0u);
    lamps.select (&stage.front);
    lamps.unselect (&stage.front);
    EXPECT_TRUE (lamps.isEmpty());
}

TEST_F (HierarchicalSelectionTest, AChangeOfTheScopesPutsTheLeavesOutOfDate)
{
    lamps.select (&stage.front);
    lamps.ensureLeavesAreComputed();
    ASSERT_FALSE (lamps.areLeavesInvalid());
    scopes.insert (&stage.spot);
    EXPECT_TRUE (lamps.areLeavesInvalid());
    EXPECT_EQ (lamps.size(), 4u);
    EXPECT_FALSE (lamps.areLeavesInvalid());
    lamps.invalidateLeaves();
    EXPECT_TRUE (lamps.areLeavesInvalid());
}

TEST_F (HierarchicalSelectionTest, TheStatusOfEachKindOfScope)
{
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.front.left), HierarchicalSelectionStatus::unselectedItem);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.front), HierarchicalSelectionStatus::unselectedGroup);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage), HierarchicalSelectionStatus::unselectedGroup);

    lamps.select (&stage.front.left);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.front.left), HierarchicalSelectionStatus::selectedItem);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.front), HierarchicalSelectionStatus::partiallySelectedGroup);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage), HierarchicalSelectionStatus::partiallySelectedGroup);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.back), HierarchicalSelectionStatus::unselectedGroup);

    lamps.select (&stage.back);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.back), HierarchicalSelectionStatus::selectedGroup);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.back.middle), HierarchicalSelectionStatus::selectedItem);
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.spot), HierarchicalSelectionStatus::unselectedGroup);
}

TEST_F (HierarchicalSelectionTest, AGroupWhoseSubObjectsAreAllScopesIsSelectedThoughNotFolded)
{
    scopes.set (objects ({ &stage.front.left, &stage.front.middle, &stage.front.right }));
    EXPECT_EQ (lamps.getScopeSelectionStatus (&stage.front), HierarchicalSelectionStatus::selectedGroup);
}

TEST_F (HierarchicalSelectionTest, TheStatusEnumerationNamesItsValues)
{
    HierarchicalSelectionStatus status;
    EXPECT_EQ (status.getClass()->getName(), "HierarchicalSelectionStatus");
    status.set (HierarchicalSelectionStatus::partiallySelectedGroup, false);
    EXPECT_EQ (status.toString(), "partiallySelectedGroup");
    EXPECT_EQ ((int) HierarchicalSelectionStatus::unselectedItem, 0);
    EXPECT_EQ ((int) HierarchicalSelectionStatus::selectedItem, 1);
    EXPECT_EQ ((int) HierarchicalSelectionStatus::unselectedGroup, 2);
    EXPECT_EQ ((int) HierarchicalSelectionStatus::partiallySelectedGroup, 3);
    EXPECT_EQ ((int) HierarchicalSelectionStatus::selectedGroup, 4);
}

TEST_F (HierarchicalSelectionTest, SubObjectsAreAVectorsElementsOrAnObjectsVariables)
{
    auto* folder = create<Folder>();
    Owned<Folder> owner (folder);
    folder->lamps.append (create<Lamp>(), false);
    folder->lamps.append (create<Cluster>(), false);
    std::vector<Object*> subObjects;
    lamps.getSubObjects (folder, subObjects);
    EXPECT_EQ (subObjects, objects ({ &folder->name, &folder->lamps }));
    subObjects.clear();
    lamps.getSubObjects (&folder->lamps, subObjects);
    EXPECT_EQ (subObjects, objects ({ folder->lamps[0], folder->lamps[1] }));
    subObjects.clear();
    lamps.getSubObjects (&stage.spot, subObjects);
    EXPECT_EQ (subObjects, objects ({ &stage.spot.inner }));

    EXPECT_TRUE (lamps.isSelectableLeaf (&stage.spot));
    EXPECT_FALSE (lamps.isSelectableLeaf (&stage.front));
    EXPECT_TRUE (lamps.shouldScopeBeVisible (&stage.front));
    EXPECT_EQ (lamps.getObjectFriendlyName (&stage.front), stage.front.getFriendlyName());
}

TEST_F (HierarchicalSelectionTest, BothListsAreSavedAndLoadedBack)
{
    lamps.select (&stage.back);
    lamps.select (&stage.spot);
    lamps.ensureLeavesAreComputed();
    const auto state = StateObjectExporter::make (lamps, 0, false);
    EXPECT_NE (state->getVariableStateByNameRef ("selectedScopes"), nullptr);
    EXPECT_NE (state->getVariableStateByNameRef ("selectedLeaves"), nullptr);

    lamps.unselect (&stage.back);
    lamps.ensureLeavesAreComputed();
    juce::String messages;
    ToStringExecutionContext context (messages);
    ASSERT_TRUE (lamps.loadFromState (context, state));
    EXPECT_EQ (messages, "");
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.back, &stage.spot }));
    EXPECT_TRUE (lamps.areLeavesInvalid());
    EXPECT_EQ (lamps.size(), 4u);
}

TEST_F (HierarchicalSelectionTest, AnOldFilesListIsLoadedIntoTheScopes)
{
    lamps.select (&stage.front.right);
    lamps.select (&stage.spot);
    const auto oldState = StateObjectExporter::make (scopes, 0, false);
    lamps.unselect (&stage.front.right);
    lamps.unselect (&stage.spot);
    lamps.ensureLeavesAreComputed();

    ToStringExecutionContext context;
    ASSERT_TRUE (lamps.loadFromState (context, oldState));
    EXPECT_EQ (membersOf (scopes), objects ({ &stage.front.right, &stage.spot }));
    EXPECT_TRUE (lamps.areLeavesInvalid());
    EXPECT_EQ (membersOf (lamps.getSelectedLeaves()), objects ({ &stage.front.right, &stage.spot }));
}

TEST_F (HierarchicalSelectionTest, TheGeneratorMakesAbstractClassesWhoseTargetIsTheArgument)
{
    auto* generated = getClass ("HierarchicalSelection(Lamp)");
    ASSERT_NE (generated, nullptr);
    EXPECT_EQ (generated->getBaseClass(), &HierarchicalSelection::staticClass);
    EXPECT_TRUE (generated->isAbstract());
    EXPECT_EQ (generated->createObject(), nullptr);
    EXPECT_EQ (generated->getClassAttribute ("target"), &Lamp::staticClass);
    EXPECT_EQ (generated->getFriendlyName(), "Hierarchical Selection of Lamps");
    EXPECT_EQ (HierarchicalSelection::staticClass.getIntegerAttribute ("heightWhenUsedInParameterRow"), 100);
    EXPECT_EQ (lamps.getTargetClass(), &Lamp::staticClass);
}
