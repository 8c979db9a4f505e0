#pragma once

#include "TransactionTestSupport.h"
#include <Tov/Container/ObjectSelection.h>
#include <Tov/Standard/SelectionAccessor.h>

namespace tov::test
{

/** The document's items "item0" to "item2", of values 1 to 3, all selected, edited through a
    selection accessor; the history starts after them. */
class SelectionEditTest : public TransactionTest
{
protected:
    SelectionAccessor accessor;
    ObjectSelection selection;

    void SetUp() override;

    Item* item (size_t index) const                  { return document->items[index]; }
    /** The items' values, "," between them. */
    juce::String values() const;
    /** The value variable of each item, in order. */
    std::vector<Object*> valueVariables() const;
};

} // namespace tov::test
