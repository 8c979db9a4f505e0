#pragma once

#include "../../../Core/LittleEndian.h"
#include <cstring>

namespace tov
{

/** A plain text, without its terminator, into the byte vectors of the trace stream. */
inline void appendText (std::vector<uint8_t>& out, const char* text)
{
    out.insert (out.end(), text, text + std::strlen (text));
}

} // namespace tov
