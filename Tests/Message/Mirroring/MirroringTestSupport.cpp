#include "MirroringTestSupport.h"
#include "Network/ConnectionTestSupport.h"
#include <Tov/Core/Library.h>
#include <Tov/Core/StateObjectExporter.h>

namespace tov::test
{

TOV_BEGIN_CLASS (Folder)
    TOV_VARIABLE (children)
    TOV_VARIABLE (scratch, { "internal", "true" })
TOV_END_CLASS()

void ensureMirroringTestLibrary()
{
    ensureTransactionTestLibrary();
    auto* root = Library::getRootLibrary();
    if (root == nullptr || root->getLibraryByName ("MirroringTests") != nullptr)
        return;
    auto* library = new NamedLibrary ("MirroringTests", {});
    library->addClass<Folder>();
    root->addLibrary (library);
}

TakenEnvelops::~TakenEnvelops()
{
    for (auto* envelop : envelops)
        envelop->deleteThis();
}

DiffObjectSpaceMessage* TakenEnvelops::getDiff (size_t index) const
{
    auto* envelop = envelops.at (index);
    return envelop->getNumMessages() > 0 ? dynamic_cast<DiffObjectSpaceMessage*> (envelop->getMessage (0)) : nullptr;
}

//==============================================================================
Integer& MirroringTestBase::sourceIdentifier()
{
    static Integer identifier (1);
    return identifier;
}

Integer& MirroringTestBase::mirrorIdentifier()
{
    static Integer identifier (2);
    return identifier;
}

void MirroringTestBase::SetUp()
{
    ASSERT_TRUE (serviceRuns);
    addLineRecordingView (service.context, lines);
    source = new EditorPeer (sourceIdentifier().clone());
    mirror = new EditorPeer (mirrorIdentifier().clone());
    document = static_cast<Document*> (Document::staticClass.createObject());
    document->title.set ("first", false);
    sourceSpace().setRootObject (document, true);
    service.peers = { source, mirror };
}

void MirroringTestBase::TearDown()
{
    service.peers.clear();
    delete mirror;
    delete source;
}

void MirroringTestBase::addMirrorAsTarget()
{
    sourceSpace().addMirroringTargetIdentifier (sourceIdentifier(), mirrorIdentifier());
}

std::unique_ptr<TakenEnvelops> MirroringTestBase::takeMirrorEnvelops()
{
    auto taken = std::make_unique<TakenEnvelops>();
    mirror->getIncomingMessageTarget()->takeEnvelops (taken->envelops);
    return taken;
}

void MirroringTestBase::requestMirror()
{
    ASSERT_TRUE (mirror->asyncRequestMirroringFrom (*source->getIncomingMessageTarget()));
    source->processIncomingMessages (service.context);
    mirror->processIncomingMessages (service.context);
}

void MirroringTestBase::sync()
{
    source->updateObjectSpacesMirroring (-1.0, 0.05);
    mirror->processIncomingMessages (service.context);
}

juce::String MirroringTestBase::describe (const ObjectSpace& space)
{
    auto* root = space.getRootObject();
    return root != nullptr ? StateObjectExporter::make (*root, 0, true)->toString() : juce::String ("null");
}

Item& MirroringTestBase::appendItem (OwnedVector<Item>& vector, const juce::String& name, int64_t value)
{
    auto* item = TransactionTest::makeItem (name, value);
    vector.append (item);
    return *item;
}

Folder& MirroringTestBase::appendFolder (const juce::String& name, UniqueIdentifier identifier)
{
    auto* folder = static_cast<Folder*> (Folder::staticClass.createObject());
    folder->name.set (name, false);
    folder->setUniqueIdentifier (identifier);
    document->items.append (folder);
    return *folder;
}

} // namespace tov::test
