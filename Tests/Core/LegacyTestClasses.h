#pragma once

#include "Support/RecordingExecutionContext.h"
#include "Support/TestValues.h"
#include <Tov/Atomic/Atomic.h>
#include <Tov/Container/OwnedVector.h>
#include <Tov/Network/NetworkAddress.h>
#include <Tov/Pointer/OwnedPointer.h>
#include <Tov/Standard/ColorShift.h>
#include <Tov/Standard/SoftwareVersion.h>

// Classes that stand in for the applications' classes, under the names that old documents are
// translated to.
namespace tov::test
{

class Canvas2dPosition : public Object
{
public:
    TOV_DECLARE_CLASS (Canvas2dPosition, Object)
    Real x, y;
};

class Placement2d : public Object
{
public:
    TOV_DECLARE_CLASS (Placement2d, Object)
    Real scale;
};

class ManipulationTool : public Object
{
public:
    TOV_DECLARE_CLASS (ManipulationTool, Object)
    String mode;
};

class GroupSelectorGeometryMask : public Object
{
public:
    TOV_DECLARE_CLASS (GroupSelectorGeometryMask, Object)
    Integer id;
};

/** An application's document, with pointers to renamed classes and library values whose
    variables were renamed. */
class LegacyDocument : public Object
{
public:
    TOV_DECLARE_CLASS (LegacyDocument, Object)

    OwnedPointer<Object> position;
    OwnedPointer<Object> placement;
    OwnedVector<Object> tools;
    OwnedPointer<Object> mask;
    SoftwareVersion version;
    NetworkAddress address;
    ColorShift shift;
};

/** Adds the classes above to the library tree, once. */
void ensureLegacyTestLibrary();

} // namespace tov::test
