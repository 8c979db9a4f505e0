#include "CompletionRoutineTable.h"

namespace tov
{

CompletionRoutineTable::~CompletionRoutineTable()
{
    for (auto& entry : entries)
        entry.first->deleteThis();
}

void CompletionRoutineTable::push (const Object& callIdentifier, AsyncCompletionRoutine& routine)
{
    const juce::ScopedLock scopedLock (lock);
    auto entry = entries.find (const_cast<Object*> (&callIdentifier));
    if (entry != entries.end())
    {
        entry->second->set (&routine, false);
        return;
    }
    entries.emplace (callIdentifier.clone(), std::make_unique<WeakPointer<AsyncCompletionRoutine>> (&routine));
}

AsyncCompletionRoutine* CompletionRoutineTable::pop (const Object& callIdentifier)
{
    const juce::ScopedLock scopedLock (lock);
    auto entry = entries.find (const_cast<Object*> (&callIdentifier));
    if (entry == entries.end())
        return nullptr;
    auto* routine = entry->second->getIfAlreadyCached();
    Object* key = entry->first;
    entries.erase (entry);
    key->deleteThis();
    return routine;
}

// The entries are taken out first: a routine may start another call, whose entry then goes
// into the emptied table.
void CompletionRoutineTable::cancelAll()
{
    const juce::ScopedLock scopedLock (lock);
    decltype (entries) cancelled;
    cancelled.swap (entries);
    for (auto& entry : cancelled)
    {
        if (auto* routine = entry.second->getIfAlreadyCached())
            routine->complete (*entry.first, nullptr);
        entry.first->deleteThis();
    }
}

size_t CompletionRoutineTable::size() const
{
    const juce::ScopedLock scopedLock (lock);
    return entries.size();
}

} // namespace tov
