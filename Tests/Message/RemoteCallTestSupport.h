#pragma once

#include "MessageTestSupport.h"
#include <Tov/Core/Method.h>
#include <Tov/Core/SingletonMethod.h>
#include <Tov/Message/RemoteCall/AsyncCompletionRoutine.h>
#include <Tov/Message/RemoteCall/MethodRemoteCall.h>
#include <Tov/Message/RemoteCall/SingletonMethodRemoteCall.h>
#include <Tov/Standard/SuccessStatus.h>
#include <mutex>

// A counter with methods to call on it, locally and remotely, and routines that write down how
// the calls end.
namespace tov::test
{

class Counter;

/** Answers "counter at <value>" as a String. It is the counter's first method, which by the
    rule of the method table cannot be made by name. */
class DescribeCounterMethod : public Method
{
public:
    TOV_DECLARE_CLASS (DescribeCounterMethod, Method)
    Object* callOnThis (Object& object) const override;
};

/** Adds amount to the counter and answers its new value as an Integer. */
class AddToCounterMethod : public Method
{
public:
    TOV_DECLARE_CLASS (AddToCounterMethod, Method)
    AddToCounterMethod()                                    { amount.setParent (this); }
    explicit AddToCounterMethod (int64_t value) : AddToCounterMethod()  { amount.set (value, false); }
    Object* callOnThis (Object& object) const override;
    Integer amount;
};

/** Answers an error status "the counter refuses". */
class RefusingCounterMethod : public Method
{
public:
    TOV_DECLARE_CLASS (RefusingCounterMethod, Method)
    Object* callOnThis (Object& object) const override;
};

/** Answers nothing. */
class SilentCounterMethod : public Method
{
public:
    TOV_DECLARE_CLASS (SilentCounterMethod, Method)
    Object* callOnThis (Object&) const override             { return nullptr; }
};

/** Sets the counter back to 0 and answers a success status "reset". */
class ResetCounterMethod : public Method
{
public:
    TOV_DECLARE_CLASS (ResetCounterMethod, Method)
    Object* callOnThis (Object& object) const override;
};

/** An object whose methods the tests call: describe, add, refuse and stayQuiet. */
class Counter : public Object
{
public:
    TOV_DECLARE_CLASS (Counter, Object)
    Integer value;
};

/** A counter with one more method, reset, after the inherited ones. */
class ResettableCounter : public Counter
{
public:
    TOV_DECLARE_CLASS (ResettableCounter, Counter)
};

/** Writes down each completion as "<identifier> <result>", the result as its toString or
    "null"; owns the results. Any thread may read the lines through getLines. */
class RecordingCompletionRoutine : public AsyncCompletionRoutine
{
public:
    TOV_DECLARE_CLASS (RecordingCompletionRoutine, AsyncCompletionRoutine)
    ~RecordingCompletionRoutine() override;

    void complete (const Object& callIdentifier, Object* result) override;
    std::vector<juce::String> getLines() const;
    size_t getNumCompletions() const;

private:
    mutable std::mutex lock;
    std::vector<juce::String> lines;
    std::vector<Object*> results;
};

/** A counter as the root of the peer's "document" space, value 0. */
Counter& addCounterTo (TestPeer& peer);

/** Makes the classes of these tests known to the library tree; safe to call more than once. */
void ensureRemoteCallTestLibrary();

/** A running program with the message and remote call test classes. */
class RemoteCallTestBase : public MessageTest
{
protected:
    bool remoteCallLibraryIsThere = (ensureRemoteCallTestLibrary(), true);
};

} // namespace tov::test
