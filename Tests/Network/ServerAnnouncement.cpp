#include "ServerAnnouncement.h"

namespace tov::test
{

TOV_BEGIN_CLASS (ServerAnnouncement)
    TOV_VARIABLE (name)
    TOV_VARIABLE (version)
    TOV_VARIABLE (port)
TOV_END_CLASS()

ServerAnnouncement* ServerAnnouncement::create (const juce::String& name, int port, uint64_t identifier)
{
    auto* announcement = static_cast<ServerAnnouncement*> (getStaticClass().createObject (nullptr));
    announcement->name.set (name, false);
    announcement->version.set (name, "main", 1, 2, 3, "abc123");
    announcement->port.set ((int64_t) port, false);
    announcement->setUniqueIdentifier (UniqueIdentifier (identifier));
    return announcement;
}

} // namespace tov::test
