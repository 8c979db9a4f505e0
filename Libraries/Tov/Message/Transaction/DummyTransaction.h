#pragma once

#include "Transaction.h"

namespace tov
{

/** A transaction that changes nothing: the base entry of a cleared history. */
class DummyTransaction : public Transaction
{
public:
    TOV_DECLARE_CLASS (DummyTransaction, Transaction)

    DummyTransaction() = default;
    explicit DummyTransaction (const juce::String& description) : Transaction (description) {}

    void perform (Envelop&) override                 {}
    void undo (Envelop&) override                    {}

    juce::String toString() const override           { return getDescription(); }
};

} // namespace tov
