#include "Support/ChangeCounter.h"
#include <Tov/Standard/StateObject.h>
#include <Tov/Standard/ExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;
using namespace tov::test;

TEST (StateObjectTest, SetNotifiesOnlyWhenTheStateDiffers)
{
    StateObject object;
    ChangeCounter counter (object);
    object.set (std::make_shared<State> ((int64_t) 1));
    object.set (std::make_shared<State> ((int64_t) 1));
    EXPECT_EQ (counter.count, 1);
    object.set (std::make_shared<State> ((int64_t) 2), false);
    EXPECT_EQ (counter.count, 1);
    EXPECT_EQ (object.get()->getInteger(), 2);
}

TEST (StateObjectTest, SavesAndLoadsTheWholeState)
{
    auto* source = static_cast<StateObject*> (StateObject::staticClass.createObject());
    auto value = std::make_shared<State>();
    value->addVariable ("a", std::make_shared<State> ("text"));
    source->set (value);
    auto state = source->makeState (false, true);
    EXPECT_EQ (state->toShortString(), "=> {a = \"text\"}");

    juce::String log;
    ToStringExecutionContext context (log);
    auto* copy = Object::createFromState (context, state);
    ASSERT_NE (copy, nullptr);
    EXPECT_TRUE (copy->equals (*source));
    EXPECT_TRUE (log.isEmpty());
    copy->deleteThis();
    source->deleteThis();
}

TEST (StateObjectTest, VoidLoadsAsNull)
{
    juce::String log;
    ToStringExecutionContext context (log);
    StateObject object;
    object.set (std::make_shared<State> ((int64_t) 1), false);
    EXPECT_TRUE (object.loadFromState (context, std::make_shared<State>()));
    EXPECT_EQ (object.get(), nullptr);
}
