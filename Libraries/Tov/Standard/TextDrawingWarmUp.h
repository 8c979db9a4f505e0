#pragma once

namespace tov
{

/** JUCE's text drawing is not safe the first time it runs on several threads at once:
    this draws text once, on the calling thread, under the message manager's lock. */
void warmUpTextDrawing();

} // namespace tov
