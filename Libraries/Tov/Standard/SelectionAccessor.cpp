#include "SelectionAccessor.h"
#include "../Core/TypedVariablePath.h"
#include "../Message/Transaction/ScopedTransaction.h"
#include "../Message/Transaction/ScopedVolatileTransaction.h"
#include "../Message/Transaction/SelectionTemporalTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (SelectionAccessor)
TOV_END_CLASS()

SelectionAccessor::SelectionAccessor()
{
    selection.setParent (this);
    referenceSpace.setParent (this);
}

//==============================================================================
bool SelectionAccessor::getTargetsFromSelectionAndTarget (Object& target, std::vector<Object*>& result) const
{
    auto* members = selection.get();
    if (members == nullptr)
        return false;
    members->ensureHasBeenChecked();
    if (members->size() < 2)
        return false;
    auto* holder = members->findAncestorOf (&target, true);
    TypedVariablePath path;
    if (holder == nullptr || ! path.buildPath (holder, &target))
        return false;

    for (size_t i = 0; i < members->size(); ++i)
        if (auto* member = members->get (i))
            if (auto* found = path.findObjectFromPath (member))
                if (found->isEditable())
                    result.push_back (found);
    return true;
}

void SelectionAccessor::getMultiTargets (Object& target, std::vector<Object*>& result) const
{
    if (! getTargetsFromSelectionAndTarget (target, result))
        result.push_back (&target);
}

TemporalTransaction* SelectionAccessor::createTemporalTransaction (Object& target) const
{
    auto* transaction = new SelectionTemporalTransaction();
    getMultiTargets (target, transaction->getTargets());
    return transaction;
}

//==============================================================================
void SelectionAccessor::setTargetValue (Object& target, const Object& value, const juce::String& description,
                                        const TemporalTransaction* temporalTransaction) const
{
    if (! target.isEditable())
        return;
    std::vector<Object*> targets;
    getMultiTargets (target, targets);

    if (description.isEmpty())
    {
        ScopedVolatileTransaction transaction (target);
        for (auto* each : targets)
            convertValue (value, *each);
        return;
    }

    auto* selectionTransaction = dynamic_cast<const SelectionTemporalTransaction*> (temporalTransaction);
    auto getUndoValue = [selectionTransaction] (const Object& each) -> const Object*
    {
        return selectionTransaction != nullptr ? selectionTransaction->getBackup (each) : nullptr;
    };
    const bool temporal = temporalTransaction != nullptr;

    for (auto* each : targets)
        setTargetBeforeTransaction (*each, value, temporal, getUndoValue (*each));
    ScopedTransaction transaction (describeChange (description, targets.size(), target), target);
    for (auto* each : targets)
        setTargetInsideTransaction (transaction, *each, value, temporal, getUndoValue (*each));
}

void SelectionAccessor::setValue (Object& target, const Object& value, const juce::String& description) const
{
    setTargetValue (target, value, description, nullptr);
}

juce::String SelectionAccessor::describeChange (const juce::String& description, size_t numTargets, const Object& target) const
{
    if (numTargets < 2)
        return description;
    auto* members = selection.get();
    return description + " in " + (members != nullptr ? members->getDescription() : target.getFriendlyName());
}

} // namespace tov
