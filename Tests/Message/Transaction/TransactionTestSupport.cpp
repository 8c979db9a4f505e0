#include "TransactionTestSupport.h"
#include <Tov/Core/Library.h>
#include <Tov/Core/StateObjectExporter.h>
#include <Tov/Message/Transaction/CompositeTransaction.h>

namespace tov::test
{

TOV_BEGIN_CLASS (Item)
    TOV_VARIABLE (name)
    TOV_VARIABLE (value)
    TOV_VARIABLE (amount)
TOV_END_CLASS()

TOV_BEGIN_CLASS (Document)
    TOV_VARIABLE (title)
    TOV_VARIABLE (count)
    TOV_VARIABLE (level)
    TOV_VARIABLE (items)
    TOV_VARIABLE (archive)
    TOV_VARIABLE (featured)
    TOV_VARIABLE (link)
    TOV_VARIABLE (hidden, { "internal", "true" })
TOV_END_CLASS()

TOV_BEGIN_CLASS (EditorPeer)
    TOV_VARIABLE (document)
TOV_END_CLASS()

TOV_BEGIN_CLASS (RecordingTarget)
TOV_END_CLASS()

void RecordingTarget::clear()
{
    for (auto* envelop : envelops)
        envelop->deleteThis();
    envelops.clear();
}

juce::String RecordingTarget::describe() const
{
    juce::StringArray texts;
    for (auto* envelop : envelops)
    {
        juce::StringArray classes;
        for (size_t i = 0; i < envelop->getNumMessages(); ++i)
            classes.add (envelop->getMessage (i)->getClassName());
        texts.add (classes.joinIntoString (" "));
    }
    return texts.joinIntoString ("|");
}

void ensureTransactionTestLibrary()
{
    TestProgram::ensureTestLibraryTree();
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("TransactionTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("TransactionTests", {});
    library->addClass<Item>();
    library->addClass<Document>();
    library->addClass<EditorPeer>();
    library->addClass<RecordingTarget>();
    root->addLibrary (library);
}

//==============================================================================
void TransactionTest::SetUp()
{
    ASSERT_TRUE (serviceRuns);
    editor = new EditorPeer (new Integer (1));
    document = static_cast<Document*> (Document::staticClass.createObject());
    space().setRootObject (document, true);
    space().enableTransactions (receiver, *editor->getIncomingMessageTarget());
    history.setParent (editor);   // where an application keeps it: its addresses resolve through the peer
    service.history = &history;
    service.peers = { editor };
}

void TransactionTest::TearDown()
{
    service.history = nullptr;
    service.peers.clear();
    // Its transactions are in the space, which goes with the editor: they go first.
    history.clear ("End");
    delete editor;
    receiver.clear();
}

Item* TransactionTest::makeItem (const juce::String& name, int64_t value)
{
    auto* item = static_cast<Item*> (Item::staticClass.createObject());
    item->name.set (name, false);
    item->value.set (value, false);
    return item;
}

std::shared_ptr<State> TransactionTest::documentState() const
{
    return StateObjectExporter::make (*document, 0, true);
}

juce::String TransactionTest::describeLastTransaction() const
{
    juce::StringArray texts;
    auto* last = dynamic_cast<CompositeTransaction*> (history.getTransactions().getLast());
    if (last != nullptr)
        for (auto* child : last->getTransactions())
            texts.add (child->toString());
    return texts.joinIntoString ("|");
}

} // namespace tov::test
