#include "EditingPeer.h"
#include <Tov/Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h>

namespace tov::benchmarks
{

TOV_BEGIN_CLASS (EditorPeer)
    TOV_VARIABLE (document)
TOV_END_CLASS()

TOV_BEGIN_CLASS (DroppingTarget)
TOV_END_CLASS()

EditedDocument::EditedDocument (EditingService& service, Object* root) : service (service)
{
    peer.document.setRootObject (root, true);
    peer.document.enableTransactions (receiver, *peer.getIncomingMessageTarget());
    history.setParent (&peer);
    service.history = &history;
    service.peer = &peer;
    history.clear ("Start");
}

EditedDocument::~EditedDocument()
{
    history.clear ("End");
    peer.document.disableTransactions();
    service.history = nullptr;
    service.peer = nullptr;
}

} // namespace tov::benchmarks
