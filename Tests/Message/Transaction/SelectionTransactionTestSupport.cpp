#include "SelectionTransactionTestSupport.h"

namespace tov::test
{

void SelectionEditTest::SetUp()
{
    TransactionTest::SetUp();
    std::vector<Object*> items;
    for (int i = 0; i < 3; ++i)
    {
        document->items.append (makeItem ("item" + juce::String (i), i + 1), false);
        items.push_back (document->items.getLast());
    }
    history.clear ("Start");
    selection.set (items, false);
    accessor.setSelection (&selection);
}

juce::String SelectionEditTest::values() const
{
    juce::StringArray texts;
    for (auto* each : document->items)
        texts.add (juce::String (each->value.get()));
    return texts.joinIntoString (",");
}

std::vector<Object*> SelectionEditTest::valueVariables() const
{
    std::vector<Object*> result;
    for (auto* each : document->items)
        result.push_back (&each->value);
    return result;
}

} // namespace tov::test
