#include "SelectionTestSupport.h"
#include "Support/DebugOutputCapture.h"
#include <Tov/Pointer/ObjectWeakPointer.h>
#include <Tov/Standard/ToStringExecutionContext.h>

using namespace tov;
using namespace tov::test;

namespace
{
class ObjectSelectionTest : public SetlistTest
{
protected:
    Selection<Track>& chosen = setlist->chosen;
    ObjectSelection& quiet = setlist->quiet;

    std::vector<Object*> tracks (std::initializer_list<size_t> indices) const
    {
        std::vector<Object*> result;
        for (auto index : indices)
            result.push_back (track (index));
        return result;
    }

    static std::vector<Object*> objects (std::initializer_list<Object*> list)  { return list; }

    /** The selection's state, with the addresses of its elements. */
    static std::shared_ptr<State> stateOf (const ObjectSelection& selection)
    {
        return StateObjectExporter::make (selection, 0, false);
    }

    bool load (ObjectSelection& selection, const std::shared_ptr<State>& state, juce::String* messages = nullptr)
    {
        juce::String ignored;
        ToStringExecutionContext context (messages != nullptr ? *messages : ignored);
        return selection.loadFromState (context, state);
    }
};
} // namespace

TEST_F (ObjectSelectionTest, InsertAppendsAWeakPointerThatTheSelectionHoldsInItsSpace)
{
    OwnChangeCounter changes (chosen);
    chosen.insert (track (1));
    chosen.insert (track (0));
    EXPECT_EQ (names (chosen), "b,a");
    EXPECT_EQ (changes.count, 2);

    auto* element = chosen.getWeakPointer (0);
    EXPECT_EQ (element->getParent(), &chosen);
    EXPECT_EQ (element->getSpace(), &show);
    EXPECT_EQ (element->getReferenceCount(), 1u);
    EXPECT_FALSE (element->isObjectInitialized());
    EXPECT_EQ (track (1)->getReferenceCount(), 1u);
}

TEST_F (ObjectSelectionTest, InsertOfAPresentObjectWithUniqueChangesNothingAndCallsNoChanged)
{
    chosen.insert (track (0));
    chosen.insert (track (1));
    OwnChangeCounter changes (chosen);
    const auto numChanges = chosen.getNumChanges();
    chosen.insert (track (0), true, true);
    EXPECT_EQ (names (chosen), "a,b");
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (chosen.getNumChanges(), numChanges);
}

TEST_F (ObjectSelectionTest, InsertWithoutUniqueAddsAPresentObjectAgainAndANullObjectIsIgnored)
{
    chosen.insert (track (0));
    chosen.insert (track (0), true, false);
    OwnChangeCounter changes (chosen);
    chosen.insert ((Object*) nullptr);
    EXPECT_EQ (names (chosen), "a,a");
    EXPECT_EQ (changes.count, 0);
}

TEST_F (ObjectSelectionTest, APositionIsClampedToTheLastElementAndAnEmptySelectionAppends)
{
    chosen.insert (track (0), true, true, 0);
    EXPECT_EQ (names (chosen), "a");
    chosen.insert (track (1), true, true, 0);
    EXPECT_EQ (names (chosen), "b,a");
    chosen.insert (track (2), true, true, 7);
    EXPECT_EQ (names (chosen), "b,c,a");
    chosen.insert (track (3));
    EXPECT_EQ (names (chosen), "b,c,a,d");
}

TEST_F (ObjectSelectionTest, InsertOfAnotherSelectionNotifiesOnceAndOnlyWhenItGrew)
{
    quiet.set (tracks ({ 0, 1, 2 }), false);
    chosen.insert (track (1), false);
    OwnChangeCounter changes (chosen);
    chosen.insert (quiet, true, true);
    EXPECT_EQ (names (chosen), "b,a,c");
    EXPECT_EQ (changes.count, 1);
    chosen.insert (quiet, true, true);
    EXPECT_EQ (changes.count, 1);
    chosen.insert (chosen, true, false);
    EXPECT_EQ (names (chosen), "b,a,c,b,a,c");
    EXPECT_EQ (changes.count, 2);
}

TEST_F (ObjectSelectionTest, InsertRelatedObjectAddsEachResultOnce)
{
    quiet.set (tracks ({ 0, 1, 2 }), false);
    OwnChangeCounter changes (chosen);
    chosen.insertRelatedObject (quiet, [this] (Object* member) -> Object* { return member == track (1) ? nullptr : track (3); });
    EXPECT_EQ (names (chosen), "d");
    EXPECT_EQ (changes.count, 1);
    chosen.insertRelatedObject (quiet, [this] (Object*) -> Object* { return track (3); });
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ObjectSelectionTest, ADeletedObjectStaysCountedBySizeUntilTheNextFlush)
{
    chosen.set (tracks ({ 0, 1, 2 }), false);
    deleteTrack (1);
    EXPECT_EQ (chosen.size(), 3u);
    EXPECT_EQ (names (chosen), "a,<dead>,c");

    OwnChangeCounter changes (chosen);
    flushAsyncTriggers();
    EXPECT_EQ (names (chosen), "a,c");
    EXPECT_EQ (changes.count, 0);
}

TEST_F (ObjectSelectionTest, ADeletedObjectIsDroppedAtTheNextReadWithALineOfDebugOutput)
{
    chosen.set (tracks ({ 0, 1 }), false);
    const auto address = chosen.getWeakPointer (1)->getAddress().toString();
    deleteTrack (1);
    DebugOutputCapture output;
    EXPECT_EQ (chosen.find (track (0)), 0);
    EXPECT_EQ (chosen.size(), 1u);
    EXPECT_EQ (output.getText(), ("Lost pointer in ObjectSelection Chosen: " + address + "\n").toStdString());
}

TEST_F (ObjectSelectionTest, AnAddressThatFindsNothingAfterALoadIsDroppedAtTheFirstReadWithAChange)
{
    chosen.set (tracks ({ 0, 1 }), false);
    const auto state = stateOf (chosen);
    deleteTrack (1);
    flushAsyncTriggers();
    ASSERT_TRUE (load (chosen, state));
    EXPECT_EQ (chosen.size(), 2u);

    OwnChangeCounter changes (chosen);
    EXPECT_EQ (chosen.back(), track (0));
    EXPECT_EQ (chosen.size(), 1u);
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ObjectSelectionTest, TheSignatureAttributeNotifyInCaseOfAddressLossFalseDropsWithoutAChange)
{
    quiet.set (tracks ({ 0, 1 }), false);
    const auto state = stateOf (quiet);
    deleteTrack (1);
    flushAsyncTriggers();
    ASSERT_TRUE (load (quiet, state));

    OwnChangeCounter changes (quiet);
    EXPECT_EQ (quiet.back(), track (0));
    EXPECT_EQ (quiet.size(), 1u);
    EXPECT_EQ (changes.count, 0);
}

TEST_F (ObjectSelectionTest, WithAutoPruningOffDeadElementsStayAndCheckNullPointersDoesNothing)
{
    chosen.set (tracks ({ 0, 1 }), false);
    chosen.setAutoPruning (false);
    deleteTrack (1);
    flushAsyncTriggers();
    OwnChangeCounter changes (chosen);
    chosen.checkNullPointers (true);
    EXPECT_EQ (names (chosen), "a,<dead>");
    EXPECT_EQ (chosen.back(), nullptr);
    EXPECT_EQ (changes.count, 0);

    chosen.setAutoPruning (true);
    chosen.checkNullPointers (true);
    EXPECT_EQ (names (chosen), "a");
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ObjectSelectionTest, SetWithEqualContentRaisesNoChangeAndKeepsTheElements)
{
    chosen.set (tracks ({ 0, 1 }));
    auto* first = chosen.getWeakPointer (0);
    OwnChangeCounter changes (chosen);
    chosen.set (tracks ({ 0, 1 }));
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (chosen.getWeakPointer (0), first);

    const std::set<Object*> ordered { track (2), track (3) };
    chosen.set (ordered);
    EXPECT_EQ (members (chosen), std::vector<Object*> (ordered.begin(), ordered.end()));
    EXPECT_EQ (changes.count, 1);
    chosen.set (ordered);
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ObjectSelectionTest, SetReplacesTheMembersWithOneChangeAndReverseSetTakesThemBackwards)
{
    chosen.set (tracks ({ 0, 1 }));
    OwnChangeCounter changes (chosen);
    chosen.set (tracks ({ 2, 0 }));
    EXPECT_EQ (names (chosen), "c,a");
    EXPECT_EQ (changes.count, 1);
    chosen.reverseSet (tracks ({ 2, 0 }));
    EXPECT_EQ (names (chosen), "a,c");
    EXPECT_EQ (changes.count, 2);
    chosen.reverseSet (tracks ({ 2, 0 }));
    EXPECT_EQ (changes.count, 2);
}

TEST_F (ObjectSelectionTest, ASingletonIsOneMember)
{
    EXPECT_FALSE (chosen.isSingleton());
    EXPECT_EQ (chosen.getSingleton(), nullptr);
    chosen.setSingleton (track (3));
    EXPECT_TRUE (chosen.isSingleton());
    EXPECT_EQ (chosen.getSingleton(), track (3));
    EXPECT_TRUE (chosen.isSingletonOfClass (&Track::staticClass));
    EXPECT_FALSE (chosen.isSingletonOfClass (&TextTrack::staticClass));
    EXPECT_EQ (chosen.front(), track (3));
    EXPECT_EQ (chosen.back(), track (3));
    chosen.insert (track (0));
    EXPECT_FALSE (chosen.isSingleton());
    EXPECT_EQ (chosen.getSingleton(), nullptr);
}

TEST_F (ObjectSelectionTest, RemoveByIndexByObjectAndByListNotifiesOncePerCall)
{
    chosen.set (tracks ({ 0, 1, 2, 3 }), false);
    OwnChangeCounter changes (chosen);
    chosen.remove ((size_t) 0);
    EXPECT_EQ (names (chosen), "b,c,d");
    EXPECT_TRUE (chosen.remove (track (2)));
    EXPECT_FALSE (chosen.remove (track (2)));
    EXPECT_EQ (names (chosen), "b,d");
    EXPECT_EQ (changes.count, 2);
    chosen.remove (tracks ({ 3, 0 }));
    EXPECT_EQ (names (chosen), "b");
    EXPECT_EQ (changes.count, 3);
    chosen.remove (tracks ({ 0 }));
    EXPECT_EQ (changes.count, 3);
}

TEST_F (ObjectSelectionTest, RemoveChildrenOfAndKeepOnlyRootObjects)
{
    quiet.set (objects ({ &track (0)->gain, track (0), &track (1)->name, track (2) }));
    quiet.keepOnlyRootObjects();
    EXPECT_EQ (members (quiet), (std::vector<Object*> { track (0), &track (1)->name, track (2) }));
    quiet.removeChildrenOf (track (1), false);
    EXPECT_EQ (members (quiet), tracks ({ 0, 2 }));
    quiet.removeChildrenOf (track (0), false);
    EXPECT_EQ (members (quiet), tracks ({ 0, 2 }));
    quiet.removeChildrenOf (track (0), true);
    EXPECT_EQ (members (quiet), tracks ({ 2 }));
    quiet.removeChildrenOf (&setlist->tracks, false);
    EXPECT_EQ (quiet.size(), 0u);
}

TEST_F (ObjectSelectionTest, QuestionsAboutAncestorsAndChildrenOfTheMembers)
{
    quiet.set (objects ({ track (0), &track (1)->gain }));
    EXPECT_TRUE (quiet.containsAncestorsOf (&track (0)->name, false));
    EXPECT_FALSE (quiet.containsAncestorsOf (track (0), false));
    EXPECT_TRUE (quiet.containsAncestorsOf (track (0), true));
    EXPECT_EQ (quiet.findAncestorOf (&track (0)->gain, false), track (0));
    EXPECT_EQ (quiet.findAncestorOf (track (2), true), nullptr);
    EXPECT_TRUE (quiet.containsChildOf (track (1), false));
    EXPECT_FALSE (quiet.containsChildOf (&track (1)->gain, false));
    EXPECT_TRUE (quiet.containsChildOf (&track (1)->gain, true));
    EXPECT_TRUE (quiet.containsChildOf (setlist, false));
    EXPECT_FALSE (quiet.containsChildOf (track (2), true));
}

TEST_F (ObjectSelectionTest, AreAllBrothersIsTrueWhenEmptyAndFalseWhenTheFirstMemberHasNoParent)
{
    EXPECT_TRUE (quiet.areAllBrothers());
    quiet.set (tracks ({ 0, 3 }));
    EXPECT_TRUE (quiet.areAllBrothers());
    quiet.set (objects ({ track (0), &track (1)->gain }));
    EXPECT_FALSE (quiet.areAllBrothers());
    Integer orphan;
    quiet.set (objects ({ &orphan }));
    EXPECT_FALSE (quiet.areAllBrothers());
}

TEST_F (ObjectSelectionTest, ClassQuestionsAndTheCommonAncestor)
{
    auto* text = make<TextTrack>();
    setlist->tracks.append (text, false);
    EXPECT_EQ (quiet.findCommonBaseClass(), nullptr);
    EXPECT_EQ (quiet.getCommonAncestor(), nullptr);
    EXPECT_TRUE (quiet.doAllObjectsInheritFrom (&TextTrack::staticClass));

    quiet.set (objects ({ text }));
    EXPECT_EQ (quiet.findCommonBaseClass(), &TextTrack::staticClass);
    EXPECT_EQ (quiet.getCommonAncestor(), text);
    quiet.set (objects ({ track (0), text }));
    EXPECT_EQ (quiet.findCommonBaseClass(), &Track::staticClass);
    EXPECT_TRUE (quiet.doAllObjectsInheritFrom (&Track::staticClass));
    EXPECT_FALSE (quiet.doAllObjectsInheritFrom (&TextTrack::staticClass));

    quiet.set (objects ({ &track (0)->gain, &track (1)->name }));
    EXPECT_EQ (quiet.getCommonAncestor(), &setlist->tracks);
    quiet.set (objects ({ &track (0)->gain, &track (0)->name }));
    EXPECT_EQ (quiet.getCommonAncestor(), track (0));
}

TEST_F (ObjectSelectionTest, EditabilityQuestions)
{
    ReadOnlyParent locked;
    Integer readOnly;
    readOnly.setParent (&locked);
    ASSERT_FALSE (readOnly.isEditable());
    ASSERT_TRUE (track (0)->isEditable());

    EXPECT_FALSE (quiet.containsEditableObjects());
    EXPECT_TRUE (quiet.containsOnlyEditableObjects());
    quiet.set (objects ({ &readOnly }));
    EXPECT_FALSE (quiet.containsEditableObjects());
    EXPECT_FALSE (quiet.containsOnlyEditableObjects());
    quiet.set (objects ({ &readOnly, track (0) }));
    EXPECT_TRUE (quiet.containsEditableObjects());
    EXPECT_FALSE (quiet.containsOnlyEditableObjects());
    quiet.set (tracks ({ 0 }));
    EXPECT_TRUE (quiet.containsEditableObjects());
    EXPECT_TRUE (quiet.containsOnlyEditableObjects());
}

TEST_F (ObjectSelectionTest, TheDescriptionNamesTheMembers)
{
    EXPECT_EQ (chosen.getDescription(), "<Empty selection>");
    chosen.set (tracks ({ 0 }));
    EXPECT_EQ (chosen.getDescription(), "a");
    chosen.set (tracks ({ 0, 1 }));
    EXPECT_EQ (chosen.getDescription(), "a and b");
    chosen.set (tracks ({ 0, 1, 2 }));
    EXPECT_EQ (chosen.getDescription(), "a, b and c");
    chosen.setAutoPruning (false);
    deleteTrack (1);
    EXPECT_EQ (chosen.getDescription(), "a, <deleted> and c");
}

TEST_F (ObjectSelectionTest, TheMultiLineDescriptionShowsThirtyTwoLinesWholeAndCountsTheOthersOfALongerList)
{
    while (setlist->tracks.size() < 33)
        setlist->tracks.append (makeTrack ("t" + juce::String ((int) setlist->tracks.size())), false);
    const auto typed = setlist->tracks.getVector();
    const std::vector<Object*> all (typed.begin(), typed.end());

    chosen.set (std::vector<Object*> (all.begin(), all.begin() + 32));
    auto lines = juce::StringArray::fromLines (chosen.getMultiLineDescription());
    EXPECT_EQ (lines.size(), 32);
    EXPECT_EQ (lines[0], "a");
    EXPECT_EQ (lines[31], "t31");

    chosen.set (all);
    lines = juce::StringArray::fromLines (chosen.getMultiLineDescription());
    EXPECT_EQ (lines.size(), 31);
    EXPECT_EQ (lines[29], "t29");
    EXPECT_EQ (lines[30], "and 3 others");
}

TEST_F (ObjectSelectionTest, ToStringGivesTheAddressesOfTheElements)
{
    EXPECT_EQ (chosen.toString(), "{}");
    chosen.set (tracks ({ 0, 1 }));
    EXPECT_EQ (chosen.toString(), "{show " + track (0)->getUniqueIdentifier().to64BitsHexadecimalString()
                                  + ", show " + track (1)->getUniqueIdentifier().to64BitsHexadecimalString() + "}");
}

TEST_F (ObjectSelectionTest, ASavedSelectionFindsTheReloadedObjectsByTheirAddresses)
{
    chosen.set (tracks ({ 1, 3 }));
    const auto state = setlist->makeState();
    const auto identifier = track (3)->getUniqueIdentifier();
    spaces.remove ("show");

    auto* reloaded = makeSetlist ({});
    juce::String messages;
    ToStringExecutionContext loading (messages);
    ASSERT_TRUE (reloaded->loadFromState (loading, state));
    EXPECT_EQ (messages, "");
    EXPECT_EQ (reloaded->chosen.getWeakPointer (1)->getIfAlreadyCached(), nullptr);
    makeSpace ("show", reloaded);
    EXPECT_EQ (members (reloaded->chosen), (std::vector<Object*> { reloaded->tracks[1], reloaded->tracks[3] }));
    EXPECT_EQ (reloaded->chosen.get (1)->getUniqueIdentifier(), identifier);
}

TEST_F (ObjectSelectionTest, LoadWithTheSameObjectsLeavesTheListAsItWasAndRaisesNoChange)
{
    chosen.set (tracks ({ 0, 2 }));
    const auto state = stateOf (chosen);
    auto* first = chosen.getWeakPointer (0);
    OwnChangeCounter changes (chosen);
    ASSERT_TRUE (load (chosen, state));
    EXPECT_EQ (changes.count, 0);
    EXPECT_EQ (chosen.getWeakPointer (0), first);
    EXPECT_EQ (names (chosen), "a,c");
}

TEST_F (ObjectSelectionTest, LoadOfOtherObjectsReplacesTheListWithOneChange)
{
    chosen.set (tracks ({ 1 }));
    const auto state = stateOf (chosen);
    chosen.set (tracks ({ 0, 2 }));
    OwnChangeCounter changes (chosen);
    ASSERT_TRUE (load (chosen, state));
    EXPECT_EQ (names (chosen), "b");
    EXPECT_EQ (changes.count, 1);
}

TEST_F (ObjectSelectionTest, AnElementThatFailsToLoadIsLeftOutAndTheLoadAnswersFalse)
{
    chosen.set (tracks ({ 0 }));
    auto state = std::make_shared<State>();
    state->addVariable (juce::String(), stateOf (chosen)->getVariableState (0));
    state->addVariable (juce::String(), std::make_shared<State> (true));
    chosen.set (tracks ({ 2 }));

    juce::String messages;
    EXPECT_FALSE (load (chosen, state, &messages));
    EXPECT_EQ (names (chosen), "a");
    EXPECT_TRUE (messages.isNotEmpty());
}

TEST_F (ObjectSelectionTest, AnElementWithoutAnAddressIsNotSaved)
{
    Integer loose;
    quiet.set (objects ({ &loose, track (0) }));
    const auto state = stateOf (quiet);
    ASSERT_EQ (state->getNumVariables(), 1u);
    EXPECT_EQ (state->getVariableName (0), "");
}

TEST_F (ObjectSelectionTest, CopyToAndEqualsComparePointedObjects)
{
    chosen.set (tracks ({ 0, 1 }));
    Selection<Track> copy;
    OwnChangeCounter changes (copy);
    chosen.copyTo (copy);
    EXPECT_EQ (members (copy), tracks ({ 0, 1 }));
    EXPECT_EQ (changes.count, 1);
    EXPECT_TRUE (copy.equals (chosen));
    chosen.copyTo (copy);
    EXPECT_EQ (changes.count, 1);
    copy.set (tracks ({ 1, 0 }));
    EXPECT_FALSE (copy.equals (chosen));

    Selection<Track> constructed (chosen);
    EXPECT_TRUE (constructed.equals (chosen));
}

TEST_F (ObjectSelectionTest, ClearNotifiesOnlyWhenThereWasSomethingAndLetsGoOfTheElements)
{
    OwnChangeCounter changes (chosen);
    chosen.clear (true);
    EXPECT_EQ (changes.count, 0);
    chosen.set (tracks ({ 0, 1 }), false);
    chosen.clear (true);
    EXPECT_EQ (chosen.size(), 0u);
    EXPECT_EQ (changes.count, 1);
    EXPECT_FALSE (track (0)->hasWeakPointersToThis());
}

TEST_F (ObjectSelectionTest, AReaderCalledBackWhileAnElementDiesLeavesItToTheNextFlush)
{
    chosen.set (tracks ({ 0, 1 }), false);
    std::vector<size_t> sizesSeen;
    ChangeCallback reader (chosen, [&]
    {
        EXPECT_TRUE (chosen.contains (track (0)));
        sizesSeen.push_back (chosen.size());
    });
    // The reader runs twice inside the death: for the element's change, and within that for the
    // prune that its read ran, which had to leave the dying element to the next flush.
    deleteTrack (1);
    EXPECT_EQ (sizesSeen, (std::vector<size_t> { 2, 2 }));
    EXPECT_EQ (chosen.size(), 2u);
    flushAsyncTriggers();
    EXPECT_EQ (chosen.size(), 1u);
    EXPECT_EQ (sizesSeen, (std::vector<size_t> { 2, 2, 1 }));
}
