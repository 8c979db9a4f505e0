#pragma once

namespace tov::test
{

/** A port of 127.0.0.1 that nobody listened on a moment ago (the system chose it for a listener
    that is closed again); -1 when no listener could be made. */
int findFreePort();

} // namespace tov::test
