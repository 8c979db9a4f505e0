#include "NetworkAddress.h"
#include "../Core/ObjectImporter.h"

namespace tov
{

TOV_BEGIN_CLASS (NetworkAddress)
    TOV_VARIABLE (host)
    TOV_VARIABLE (port)
TOV_END_CLASS()

void NetworkAddress::set (const juce::String& newHost, unsigned int newPort, bool notify)
{
    host.set (newHost, notify);
    port.set ((int64_t) newPort, notify);
}

juce::String NetworkAddress::toString() const
{
    if (host.isEmpty())
        return port.toString();
    return host.get() + ":" + port.toString();
}

bool NetworkAddress::load (ObjectImporter& importer)
{
    // The state names this class, not the host's: the host reads it without the class check.
    if (importer.getCurrentType() == StateType::stringType)
        return host.load (importer);
    return Object::load (importer);
}

bool NetworkAddress::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name == juce::StringRef ("hostName"))
        return importer.load (host);
    return Object::loadVariable (importer, name);
}

} // namespace tov
