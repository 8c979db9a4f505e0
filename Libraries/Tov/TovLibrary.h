#pragma once

#include "Core/Library.h"

namespace tov
{

/** The sub-libraries of the "Tov" library, in the order of the tree. */
Library* createTovCoreLibrary();
Library* createTovAtomicLibrary();
Library* createTovPointerLibrary();
Library* createTovContainerLibrary();
Library* createTovNetworkLibrary();
Library* createTovMessageLibrary();
Library* createTovStandardLibrary();

} // namespace tov
