#include "Accessor.h"
#include "../Message/Transaction/DefaultTemporalTransaction.h"
#include "../Message/Transaction/ScopedTransaction.h"
#include "../Message/Transaction/ScopedVolatileTransaction.h"

namespace tov
{

TOV_BEGIN_CLASS (Accessor)
TOV_END_CLASS()

TemporalTransaction* Accessor::createTemporalTransaction (Object&) const
{
    return new DefaultTemporalTransaction();
}

void Accessor::convertValue (const Object& value, Object& target)
{
    if (value.getClass() != target.getClass())
        return value.convertToObject (target);
    if (value.equals (target))
        return;
    value.copyTo (target);
    target.changed();
}

void Accessor::setTargetValue (Object& target, const Object& value, const juce::String& description,
                               const TemporalTransaction* temporalTransaction) const
{
    if (! target.isEditable())
        return;
    if (description.isEmpty())
    {
        ScopedVolatileTransaction transaction (target);
        convertValue (value, target);
    }
    else if (temporalTransaction == nullptr)
    {
        ScopedTransaction transaction (description, target);
        convertValue (value, target);
    }
    else
    {
        setThroughTemporalTransaction (target, value, description, *temporalTransaction);
    }
}

void Accessor::setThroughTemporalTransaction (Object& target, const Object& value, const juce::String& description,
                                              const TemporalTransaction& temporalTransaction)
{
    auto* defaultTransaction = dynamic_cast<const DefaultTemporalTransaction*> (&temporalTransaction);
    const Object* undoValue = defaultTransaction != nullptr ? defaultTransaction->getUndoValue() : nullptr;
    auto* parent = target.getParent();

    if (parent == nullptr || ! parent->hasVariableConstraints (&target))
    {
        convertValue (value, target);
        ScopedTransaction transaction (description, target);
        if (undoValue != nullptr)
            transaction.addObjectWithUndoValue (target, *undoValue);
        else
            transaction.addObjectCurrentValue (target);
        return;
    }

    // Constraints must see the very step that undo will reverse: back to the start value first.
    if (undoValue != nullptr)
    {
        ScopedVolatileTransaction transaction (target);
        convertValue (*undoValue, target);
    }
    ScopedTransaction transaction (description, target);
    convertValue (value, target);
}

} // namespace tov
