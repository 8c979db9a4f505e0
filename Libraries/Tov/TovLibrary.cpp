#include "TovLibrary.h"
#include "Core/Library.h"
#include "Core/ClassExpression.h"
#include "Core/DynamicallyLinkedLibrary.h"
#include "Standard/ExecutionContext.h"
#include "Standard/StateObject.h"

namespace tov
{

static const juce::String sourceRoot = "Libraries/Tov";

static NamedLibrary* createSubLibrary (const juce::String& name, const juce::String& directory)
{
    return new NamedLibrary (name, juce::File::getCurrentWorkingDirectory().getChildFile (directory));
}

Library* createTovCoreLibrary()
{
    auto* library = createSubLibrary ("Core", sourceRoot + "/Core");
    library->addClass<Object>();
    library->addClass<Class>();
    library->addClass<Library>();
    library->addClass<DynamicallyLinkedLibrary>();
    return library;
}

Library* createTovAtomicLibrary()     { return createSubLibrary ("Atomic", sourceRoot + "/Atomic"); }
Library* createTovPointerLibrary()    { return createSubLibrary ("Pointer", sourceRoot + "/Pointer"); }
Library* createTovContainerLibrary()  { return createSubLibrary ("Container", sourceRoot + "/Container"); }
Library* createTovNetworkLibrary()    { return createSubLibrary ("Network", sourceRoot + "/Network"); }

Library* createTovMessageLibrary()
{
    auto* library = createSubLibrary ("Message", sourceRoot + "/Message");
    library->addLibrary (createSubLibrary ("Transaction", sourceRoot + "/Message/Transaction"));
    library->addLibrary (createSubLibrary ("Mirroring", sourceRoot + "/Message/Mirroring"));
    library->addLibrary (createSubLibrary ("RemoteCall", sourceRoot + "/Message/RemoteCall"));
    return library;
}

Library* createTovStandardLibrary()
{
    auto* library = createSubLibrary ("Standard", sourceRoot + "/Standard");
    library->addClass<StateObject>();
    library->addClass<ExecutionContext>();
    library->addClass<ToStringExecutionContext>();
    library->addLibrary (createSubLibrary ("Profiler", sourceRoot + "/Standard/Profiler"));
    return library;
}

Library* createTovLibrary()
{
    auto* tov = createSubLibrary ("Tov", sourceRoot);
    tov->addLibrary (createTovCoreLibrary());
    tov->addLibrary (createTovAtomicLibrary());
    tov->addLibrary (createTovPointerLibrary());
    tov->addLibrary (createTovContainerLibrary());
    tov->addLibrary (createTovNetworkLibrary());
    tov->addLibrary (createTovMessageLibrary());
    tov->addLibrary (createTovStandardLibrary());
    return tov;
}

} // namespace tov
