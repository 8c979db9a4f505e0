#include "RemoteCallTestSupport.h"
#include <Tov/Core/Library.h>

namespace tov::test
{

TOV_BEGIN_CLASS (DescribeCounterMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (AddToCounterMethod)
    TOV_VARIABLE (amount)
TOV_END_CLASS()

TOV_BEGIN_CLASS (RefusingCounterMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (SilentCounterMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ResetCounterMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Counter)
    TOV_VARIABLE (value)
    TOV_METHOD (describe, String, DescribeCounterMethod)
    TOV_METHOD (add, Integer, AddToCounterMethod, { "httpVerb", "\"POST\"" })
    TOV_METHOD (refuse, SuccessStatus, RefusingCounterMethod)
    TOV_METHOD (stayQuiet, Void, SilentCounterMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (ResettableCounter)
    TOV_METHOD (reset, SuccessStatus, ResetCounterMethod)
TOV_END_CLASS()

TOV_BEGIN_CLASS (RecordingCompletionRoutine)
TOV_END_CLASS()

//==============================================================================
Object* DescribeCounterMethod::callOnThis (Object& object) const
{
    auto* text = new String();
    text->set ("counter at " + juce::String (static_cast<Counter&> (object).value.get()), false);
    return text;
}

Object* AddToCounterMethod::callOnThis (Object& object) const
{
    auto& counter = static_cast<Counter&> (object);
    counter.value.set (counter.value.get() + amount.get(), false);
    return new Integer (counter.value.get());
}

Object* RefusingCounterMethod::callOnThis (Object&) const
{
    return new SuccessStatus (SuccessStateEnum::error, "the counter refuses");
}

Object* ResetCounterMethod::callOnThis (Object& object) const
{
    static_cast<Counter&> (object).value.set (0, false);
    return new SuccessStatus (SuccessStateEnum::success, "reset");
}

//==============================================================================
RecordingCompletionRoutine::~RecordingCompletionRoutine()
{
    for (auto* result : results)
        result->deleteThis();
}

void RecordingCompletionRoutine::complete (const Object& callIdentifier, Object* result)
{
    const std::lock_guard<std::mutex> scoped (lock);
    lines.push_back (callIdentifier.toString() + " " + (result != nullptr ? result->toString() : juce::String ("null")));
    if (result != nullptr)
        results.push_back (result);
}

std::vector<juce::String> RecordingCompletionRoutine::getLines() const
{
    const std::lock_guard<std::mutex> scoped (lock);
    return lines;
}

size_t RecordingCompletionRoutine::getNumCompletions() const
{
    const std::lock_guard<std::mutex> scoped (lock);
    return lines.size();
}

//==============================================================================
Counter& addCounterTo (TestPeer& peer)
{
    auto* counter = create<Counter>();
    peer.getSpaces();
    peer.document.setRootObject (counter, true);
    return *counter;
}

void ensureRemoteCallTestLibrary()
{
    ensureMessageTestLibrary();
    auto* root = Library::getRootLibrary();
    if (root->getLibraryByName ("RemoteCallTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("RemoteCallTests", {});
    library->addClass<DescribeCounterMethod>();
    library->addClass<AddToCounterMethod>();
    library->addClass<RefusingCounterMethod>();
    library->addClass<SilentCounterMethod>();
    library->addClass<ResetCounterMethod>();
    library->addClass<Counter>();
    library->addClass<ResettableCounter>();
    library->addClass<RecordingCompletionRoutine>();
    root->addLibrary (library);
}

} // namespace tov::test
