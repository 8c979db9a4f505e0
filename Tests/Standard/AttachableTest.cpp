#include "DynamicVariableTestSupport.h"
#include <Tov/Atomic/AsyncTriggerInvalidator.h>
#include <Tov/Core/ClassRegistry.h>
#include <Tov/Standard/ParentDeletionWatcher.h>

using namespace tov;
using namespace tov::test;

namespace
{
class AttachableTest : public DynamicVariableTestBase
{
protected:
    Owned<Knob> knob { static_cast<Knob*> (Knob::staticClass.createObject()) };
    Album* album = make<Album>();
    NamedSpaces::Space& albumSpace = makeSpace ("album", album);

    Track& track()
    {
        if (album->tracks.size() == 0)
            album->tracks.append (makeTrack ("Intro", 4));
        return *album->tracks[0];
    }

    static StateMap noAttributes()                   { return {}; }
};
} // namespace

TEST_F (AttachableTest, WithoutATargetTheFriendlyNameIsDetached)
{
    EXPECT_EQ (knob->getTargetFriendlyName (false), "<detached>");
    EXPECT_EQ (knob->getTargetFriendlyName (true), "<detached>");
    EXPECT_EQ (knob->makeChangeTransactionDescription(), "Change <detached>");
    EXPECT_FALSE (knob->hasTarget());
    EXPECT_FALSE (knob->isTargetEditable());
}

TEST_F (AttachableTest, SettingATargetAttachesAndTellsItsValueAndEditability)
{
    knob->setTarget (&sheet->count, true);

    EXPECT_EQ (knob->getTarget(), &sheet->count);
    EXPECT_TRUE (knob->isAttachedTo (&sheet->count));
    EXPECT_EQ (knob->numTargetChanges, 1);
    EXPECT_EQ (knob->numValueChanges, 1);
    EXPECT_EQ (knob->numEditabilityChanges, 1);
    EXPECT_TRUE (knob->lastEditable);
}

TEST_F (AttachableTest, SettingTheSameTargetDoesNothing)
{
    knob->setTarget (&sheet->count, true);
    const size_t views = sheet->count.getNumViews();

    knob->setTarget (&sheet->count, true);

    EXPECT_EQ (knob->numTargetChanges, 1);
    EXPECT_EQ (knob->numValueChanges, 1);
    EXPECT_EQ (knob->numEditabilityChanges, 1);
    EXPECT_EQ (sheet->count.getNumViews(), views);
}

TEST_F (AttachableTest, AChangeOfTheTargetsValueIsHeard)
{
    knob->setTarget (&sheet->count, true);
    sheet->count.set (5);
    sheet->count.set (6);
    EXPECT_EQ (knob->numValueChanges, 3);
}

TEST_F (AttachableTest, AnotherTargetTakesTheAttachmentOver)
{
    knob->setTarget (&sheet->count, true);
    knob->setTarget (&sheet->name, true);

    EXPECT_FALSE (knob->isAttachedTo (&sheet->count));
    EXPECT_TRUE (knob->isAttachedTo (&sheet->name));
    sheet->count.set (9);
    EXPECT_EQ (knob->numValueChanges, 2);
}

TEST_F (AttachableTest, RemovingTheTargetDetaches)
{
    knob->setTarget (&sheet->count, true);
    knob->removeTarget (true);

    EXPECT_FALSE (knob->hasTarget());
    EXPECT_FALSE (knob->isAttachedTo (&sheet->count));
    EXPECT_EQ (knob->getTargetFriendlyName (true), "<detached>");
    EXPECT_EQ (knob->numTargetChanges, 2);
}

TEST_F (AttachableTest, TheDeletionOfTheTargetLeavesTheKnobDetached)
{
    knob->setTarget (&track(), true);
    album->tracks.remove ((size_t) 0);

    EXPECT_FALSE (knob->hasTarget());
    EXPECT_EQ (knob->getTargetFriendlyName (false), "<detached>");
    EXPECT_TRUE (knob->getAttachedObjects().empty());
}

TEST_F (AttachableTest, TheFriendlyNameWithParentNamesTheOwner)
{
    knob->setTarget (&track().gain, true);
    EXPECT_EQ (knob->getTargetFriendlyName (false), "Gain");
    EXPECT_EQ (knob->getTargetFriendlyName (true), "Intro Gain");
    EXPECT_EQ (knob->makeChangeTransactionDescription(), "Change Intro Gain");
    EXPECT_EQ (knob->makeSetTransactionDescription ("3"), "Set Intro Gain to 3");
    EXPECT_EQ (knob->makeSetTransactionDescription (Integer (7)), "Set Intro Gain to 7");
}

TEST_F (AttachableTest, TheOwnerOfAListStandsForTheList)
{
    album->name.set ("Live");
    knob->setTarget (&track(), true);
    EXPECT_EQ (knob->getTargetFriendlyName (true), "Live Intro");
}

TEST_F (AttachableTest, TheTargetClassIsTheTargetsOrTheClassAttribute)
{
    EXPECT_EQ (knob->getTargetClass(), &Object::staticClass);
    Owned<Attachable> integerKnob (static_cast<Attachable*> (IntegerKnob::staticClass.createObject()));
    EXPECT_EQ (integerKnob->getTargetClass(), &Integer::staticClass);
    knob->setTarget (&sheet->name, true);
    EXPECT_EQ (knob->getTargetClass(), &String::staticClass);
}

TEST_F (AttachableTest, TheStaticFormFindsTheTargetOfTheNearestOwner)
{
    EXPECT_EQ (Attachable::getTarget (*knob), nullptr);
    knob->setTarget (&sheet->count, true);
    EXPECT_EQ (Attachable::getTarget (*knob), &sheet->count);
    EXPECT_EQ (Attachable::getTarget (sheet->count), nullptr);
}

TEST_F (AttachableTest, AnEditabilityThatDependsOnAnotherObjectFollowsIt)
{
    album->limit.setEnabled (true);
    knob->setTarget (album->limit.getValue(), true);
    EXPECT_TRUE (knob->lastEditable);
    const int before = knob->numEditabilityChanges;

    album->limit.setEnabled (false);

    EXPECT_EQ (knob->numEditabilityChanges, before + 1);
    EXPECT_FALSE (knob->lastEditable);
    EXPECT_FALSE (knob->isTargetEditable());
}

TEST_F (AttachableTest, InvalidateEditabilityTellsEachAttachableOnce)
{
    knob->setTarget (&sheet->count, true);
    Owned<Knob> second (static_cast<Knob*> (Knob::staticClass.createObject()));
    second->setTarget (&sheet->count, true);

    Attachable::invalidateEditability (sheet->count);

    EXPECT_EQ (knob->numEditabilityChanges, 2);
    EXPECT_EQ (second->numEditabilityChanges, 2);
}

TEST_F (AttachableTest, TheAccessorIsTheServicesWithoutOneOfTheOwners)
{
    EXPECT_EQ (knob->getAccessor(), &service.getDefaultAccessor());
    EXPECT_EQ (Accessor::getAccessor (sheet->count), &service.getDefaultAccessor());
}

TEST_F (AttachableTest, TheAccessorOfTheOwnerComesFirst)
{
    Owned<Panel> panel (static_cast<Panel*> (Panel::staticClass.createObject()));
    EXPECT_EQ (panel->knob.getAccessor(), &panel->accessor);
}

//==============================================================================
TEST_F (AttachableTest, AClassWithoutAttributesIsCompatibleWithAnything)
{
    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&Knob::staticClass, sheet->count));
    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&Knob::staticClass, *sheet));
}

TEST_F (AttachableTest, TheTargetAttributeAsksForItsClass)
{
    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&IntegerKnob::staticClass, sheet->count));
    EXPECT_FALSE (Attachable::areAttachableAndTargetCompatible (&IntegerKnob::staticClass, sheet->name));
}

TEST_F (AttachableTest, MustBeConvertibleToAsksTheDefaultObject)
{
    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&SameClassKnob::staticClass, *sheet));
    EXPECT_FALSE (Attachable::areAttachableAndTargetCompatible (&SameClassKnob::staticClass, track()));
}

TEST_F (AttachableTest, AnEmptyListOfRequiredAncestorsIsNeverMet)
{
    auto empty = std::make_shared<State>();
    empty->reserveVariables (0);
    ASSERT_EQ (empty->getType(), StateType::variablesType);
    AncestorKnob::staticClass.setAttribute ("requiresAncestorOfClass", empty);

    EXPECT_FALSE (Attachable::areAttachableAndTargetCompatible (&AncestorKnob::staticClass, sheet->count));
    AncestorKnob::staticClass.removeAttribute ("requiresAncestorOfClass");
}

TEST_F (AttachableTest, ARequiredAncestorIsLookedForAtAnyDepth)
{
    auto classes = std::make_shared<State>();
    auto albumClass = std::make_shared<State>();
    albumClass->setClassValue (&Album::staticClass);
    classes->addVariable (albumClass);
    AncestorKnob::staticClass.setAttribute ("requiresAncestorOfClass", classes);

    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&AncestorKnob::staticClass, track().gain));
    EXPECT_FALSE (Attachable::areAttachableAndTargetCompatible (&AncestorKnob::staticClass, sheet->count));
    AncestorKnob::staticClass.removeAttribute ("requiresAncestorOfClass");
}

TEST_F (AttachableTest, RequiredVariablesAskTheObjectsVariables)
{
    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&CountKnob::staticClass, *sheet));
    EXPECT_FALSE (Attachable::areAttachableAndTargetCompatible (&CountKnob::staticClass, sheet->name));
    EXPECT_TRUE (Attachable::areAttachableAndTargetCompatible (&CompoundKnob::staticClass, track()));
    EXPECT_FALSE (Attachable::areAttachableAndTargetCompatible (&CompoundKnob::staticClass, sheet->count));
}

//==============================================================================
TEST_F (AttachableTest, ADeclaratorWatchesWhatItIsToldUntilCleared)
{
    ViewVariableDependenciesDeclarator declarator;
    declarator.add (&sheet->count);
    declarator.add (&sheet->count);
    declarator.add (nullptr);
    EXPECT_EQ (declarator.getAttachedObjects().size(), 1u);
    EXPECT_EQ (sheet->count.getNumViews(), 1u);

    declarator.clear();
    EXPECT_TRUE (declarator.getAttachedObjects().empty());
    EXPECT_EQ (sheet->count.getNumViews(), 0u);
}

TEST_F (AttachableTest, AnAsyncTriggerInvalidatorFiresOnChangesOfTheObjectsThemselves)
{
    AsyncTrigger trigger;
    AsyncTriggerInvalidator invalidator;
    invalidator.setTrigger (&trigger);
    invalidator.add (sheet);

    sheet->count.set (3);
    EXPECT_FALSE (trigger.isTriggered());

    sheet->changed();
    EXPECT_TRUE (trigger.isTriggered());
    trigger.untrig();
}

TEST_F (AttachableTest, AParentDeletionWatcherClearsTheParentOfWhatItWatches)
{
    Owned<Sheet> owner (makeSheet());
    Integer follower;
    follower.setParent (owner.get());
    ParentDeletionWatcher watcher (&follower);
    watcher.attachObject (owner.get());

    owner.reset();

    EXPECT_EQ (follower.getParent(), nullptr);
}
