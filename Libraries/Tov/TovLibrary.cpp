#include "TovLibrary.h"
#include "Core/Library.h"
#include "Core/ClassExpression.h"
#include "Core/ConverterClassGenerators.h"
#include "Core/Method.h"
#include "Core/ObjectConverters.h"
#include "Core/SingletonMethod.h"
#include "Core/DynamicallyLinkedLibrary.h"
#include "Core/ObjectSpace.h"
#include "Atomic/Atomic.h"
#include "Container/ContainerClassGenerators.h"
#include "Container/NamedObjectMap.h"
#include "Container/Optional.h"
#include "Container/StringVector.h"
#include "Message/Envelop.h"
#include "Message/Event.h"
#include "Message/Mirroring/DiffObjectSpaceMessage.h"
#include "Message/Mirroring/MirroringMessage.h"
#include "Message/Mirroring/MirroringRequestAsyncCompletionRoutine.h"
#include "Message/Mirroring/MirroringRequestRemoteCall.h"
#include "Message/InterprocessConnectionMessageTarget.h"
#include "Message/Peer.h"
#include "Message/RemoteTargetIdentifier.h"
#include "Message/RemoteCall/MethodRemoteCall.h"
#include "Message/RemoteCall/RemoteCallQueryMessage.h"
#include "Message/RemoteCall/RemoteCallResultMessage.h"
#include "Message/RemoteCall/ReturnedValueCompletionRoutine.h"
#include "Message/RemoteCall/SingletonMethodRemoteCall.h"
#include "Message/RemoteCall/ThreadAwareEnvelopQueueMessageTarget.h"
#include "Message/Transaction/CompositeTransaction.h"
#include "Message/Transaction/CreateObjectMirroredTransaction.h"
#include "Message/Transaction/DefaultTemporalTransaction.h"
#include "Message/Transaction/DestroyObjectMirroredTransaction.h"
#include "Message/Transaction/DummyTransaction.h"
#include "Message/Transaction/History.h"
#include "Message/Transaction/SelectionTemporalTransaction.h"
#include "Message/Transaction/UpdateObjectMirroredTransaction.h"
#include "Network/InterprocessConnectionServer.h"
#include "Network/LastNetworkServerFootprint.h"
#include "Network/LocalNetworkAddress.h"
#include "Network/NetworkAddress.h"
#include "Network/NetworkBroadcaster.h"
#include "Network/NetworkStats.h"
#include "Pointer/NativeHandle.h"
#include "Pointer/ObjectOwnedPointer.h"
#include "Pointer/ObjectWeakPointer.h"
#include "Pointer/PointerClassGenerators.h"
#include "Standard/Accessor.h"
#include "Standard/ActivationState.h"
#include "Standard/AttributedString.h"
#include "Standard/BufferArray.h"
#include "Standard/Float32Buffer.h"
#include "Standard/Float64Buffer.h"
#include "Standard/Int32Buffer.h"
#include "Standard/UInt32Buffer.h"
#include "Standard/UInt8Buffer.h"
#include "Standard/ColorShift.h"
#include "Standard/ColorWithAlpha.h"
#include "Standard/EventCounter.h"
#include "Standard/ExecutionContext.h"
#include "Standard/FrameSidesLink.h"
#include "Standard/GammaCorrection.h"
#include "Standard/HierarchicalSelectionClassGenerator.h"
#include "Standard/Attachable.h"
#include "Standard/DynamicVariableClassGenerator.h"
#include "Standard/DynamicVariableVector.h"
#include "Standard/Justification.h"
#include "Standard/Orientation.h"
#include "Standard/PixelRectangle.h"
#include "Standard/Program.h"
#include "Standard/ProgramGetSoftwareVersionMethod.h"
#include "Standard/Rational.h"
#include "Standard/Seed.h"
#include "Standard/Service.h"
#include "Standard/SelectionAccessor.h"
#include "Standard/SoftwareVersion.h"
#include "Standard/SystemStats.h"
#include "Standard/StateObject.h"
#include "Standard/SuccessStatus.h"
#include "Standard/GroupIssue.h"
#include "Standard/GroupTask.h"
#include "Standard/NativeDirectory.h"
#include "Standard/NativeFile.h"
#include "Standard/Profiler/CpuTimingsProfiler.h"
#include "Standard/Profiler/NSightProfiler.h"
#include "Standard/Profiler/StdDevProfiler.h"
#include "Standard/Profiler/TraceProfiler.h"
#include "Standard/Profiler/UnrealProfiler.h"
#include "Standard/ProgressionStatistics.h"
#include "Standard/Time.h"

namespace tov
{

static const juce::String sourceRoot = "Libraries/Tov";

static NamedLibrary* createSubLibrary (const juce::String& name, const juce::String& directory)
{
    return new NamedLibrary (name, juce::File::getCurrentWorkingDirectory().getChildFile (directory));
}

/** The Core library also registers the converters' registry with the tree, and removes it,
    which destroys it, when it goes. */
class TovCoreLibrary : public NamedLibrary
{
public:
    TovCoreLibrary() : NamedLibrary ("Core", juce::File::getCurrentWorkingDirectory().getChildFile (sourceRoot + "/Core"))
    {
        Library::addAutoDeclaredSingletons (ObjectConverters::getInstance());
    }

    ~TovCoreLibrary() override
    {
        reset();
        Library::removeAutoDeclaredSingletons (ObjectConverters::getInstanceWithoutCreating());
    }
};

Library* createTovCoreLibrary()
{
    auto* library = new TovCoreLibrary();
    library->addClass<Object>();
    library->addClass<Method>();
    library->addClass<SingletonMethod>();
    library->addClass<Class>();
    library->addClass<Library>();
    library->addClass<DynamicallyLinkedLibrary>();
    library->addClass<ObjectSpace>();
    library->addClass<ObjectConverter>();
    library->addClassGenerator ("Converter", new ConverterClassGenerator());
    library->addClassGenerator ("OwnedPointerConverter", new OwnedPointerConverterClassGenerator());
    return library;
}

Library* createTovAtomicLibrary()
{
    auto* library = createSubLibrary ("Atomic", sourceRoot + "/Atomic");
    library->addClass<Void>();
    library->addClass<Trigger>();
    library->addClass<Triggerable>();
    library->addClass<Boolean>();
    library->addClass<Uuid>();
    library->addClass<Enumeration>();
    library->addClassGenerator ("Enumeration", new EnumerationClassGenerator());
    library->addClass<Number>();
    library->addClass<Integer>();
    library->addClass<PositiveInteger>();
    library->addClass<PositiveInteger7Bits>();
    library->addClass<PositiveInteger8Bits>();
    library->addClass<PositiveInteger9Bits>();
    library->addClass<PositiveInteger14Bits>();
    library->addClass<StrictlyPositiveInteger>();
    library->addClass<BoundedPositiveInteger>();
    library->addClass<MemorySize>();
    library->addClass<BoundedMemorySize>();
    library->addClass<Real>();
    library->addClass<PositiveReal>();
    library->addClass<UnboundedPercentage>();
    library->addClass<Percentage>();
    library->addClass<SignedPercentage>();
    library->addClass<Angle>();
    library->addClass<SignedAngle>();
    library->addClass<SingleTurnAngle>();
    library->addClass<PositiveAngle>();
    library->addClass<Meters>();
    library->addClass<Millimeters>();
    library->addClass<PositiveMeters>();
    library->addClass<PositiveMillimeters>();
    library->addClass<Pixels>();
    library->addClass<PositivePixels>();
    library->addClass<StrictlyPositivePixels>();
    library->addClass<Seconds>();
    library->addClass<Milliseconds>();
    library->addClass<SignedMilliseconds>();
    library->addClass<LuminousPower>();
    library->addClass<Illuminance>();
    library->addClass<Brightness>();
    library->addClass<Frequency>();
    library->addClass<Decibel>();
    library->addClass<RelativeTime>();
    library->addClass<String>();
    library->addClass<ConfigurableString>();
    library->addClass<StringWithChoices>();
    library->addClass<MultiLineString>();
    library->addClass<SourceCode>();
    library->addClass<XmlElement>();
    library->addClass<NameableObject>();
    library->addClass<FriendlyNameString>();
    library->addClass<ClassObject>();
    library->addClass<AsyncTrigger>();
    return library;
}

Library* createTovPointerLibrary()
{
    auto* library = createSubLibrary ("Pointer", sourceRoot + "/Pointer");
    library->addClass<ObjectWeakPointerBase>();
    library->addClass<ObjectWeakPointer>();
    library->addClassGenerator ("WeakPointer", new WeakPointerClassGenerator());
    library->addClass<ObjectOwnedPointer>();
    library->addClassGenerator ("OwnedPointer", new OwnedPointerClassGenerator());
    library->addClass<NativeHandle>();
    return library;
}

Library* createTovContainerLibrary()
{
    auto* library = createSubLibrary ("Container", sourceRoot + "/Container");
    library->addClass<Container>();
    library->addClass<ObjectOwnedVector>();
    library->addClassGenerator ("OwnedVector", new OwnedVectorClassGenerator());
    library->addClass<StringVector>();
    library->addClass<ObjectMap>();
    library->addClassGenerator ("Map", new MapClassGenerator());
    library->addClass<NamedObjectMap>();
    library->addClass<ObjectSelection>();
    library->addClassGenerator ("Selection", new SelectionClassGenerator());
    library->addClass<ObjectOption>();
    library->addClassGenerator ("Option", new OptionClassGenerator());
    library->addClass<Optional>();
    return library;
}

Library* createTovNetworkLibrary()
{
    auto* library = createSubLibrary ("Network", sourceRoot + "/Network");
    library->addClass<HostIdentifier>();
    library->addClass<NetworkAdapterStats>();
    library->addClass<NetworkStats>();
    library->addClass<NetworkPort>();
    library->addClass<NetworkAddress>();
    library->addClass<LocalIp>();
    library->addClass<LocalNetworkPort>();
    library->addClass<LocalNetworkAddress>();
    library->addClass<InterprocessConnectionIdentifier>();
    library->addClass<InterprocessConnection>();
    library->addClass<InterprocessConnectionServer>();
    library->addClass<NetworkBroadcaster>();
    library->addClass<LastNetworkServerFootprint>();
    return library;
}

static Library* createTovTransactionLibrary()
{
    auto* library = createSubLibrary ("Transaction", sourceRoot + "/Message/Transaction");
    library->addClass<MirroredTransaction>();
    library->addClass<CreateObjectMirroredTransaction>();
    library->addClass<UpdateObjectMirroredTransaction>();
    library->addClass<DestroyObjectMirroredTransaction>();
    return library;
}

Library* createTovMessageLibrary()
{
    auto* library = createSubLibrary ("Message", sourceRoot + "/Message");
    library->addClass<Message>();
    library->addClass<Envelop>();
    library->addClass<Event>();
    library->addClass<MessageTarget>();
    library->addClass<InterprocessConnectionMessageTarget>();
    library->addClass<AsyncCompletionRoutine>();
    library->addClass<ReturnedValueCompletionRoutine>();
    library->addClass<RemoteCall>();
    library->addClass<MethodRemoteCall>();
    library->addClass<SingletonMethodRemoteCall>();
    library->addClass<RemoteTargetIdentifier>();
    library->addClass<Peer>();
    library->addClass<Transaction>();
    library->addClass<DummyTransaction>();
    library->addClass<CompositeTransaction>();
    library->addClass<History>();
    library->addClass<TemporalTransaction>();
    library->addClass<DefaultTemporalTransaction>();
    library->addClass<SelectionTemporalTransaction>();
    library->addLibrary (createTovTransactionLibrary());
    auto* mirroring = createSubLibrary ("Mirroring", sourceRoot + "/Message/Mirroring");
    mirroring->addClass<MirroringMessage>();
    mirroring->addClass<DiffObjectSpaceMessage>();
    mirroring->addClass<MirroringRequestRemoteCall>();
    mirroring->addClass<MirroringRequestAsyncCompletionRoutine>();
    library->addLibrary (mirroring);
    auto* remoteCall = createSubLibrary ("RemoteCall", sourceRoot + "/Message/RemoteCall");
    remoteCall->addClass<RemoteCallResultMessage>();
    remoteCall->addClass<RemoteCallQueryMessage>();
    remoteCall->addClass<ThreadAwareEnvelopQueueMessageTarget>();
    library->addLibrary (remoteCall);
    return library;
}

static Library* createTovProfilerLibrary()
{
    auto* library = createSubLibrary ("Profiler", sourceRoot + "/Standard/Profiler");
    library->addClass<Profiler>();
    library->addClass<NSightProfiler>();
    library->addClass<StdDevProfiler>();
    library->addClass<TraceProfiler>();
    library->addClass<CpuTimingsProfiler>();
    library->addClass<UnrealProfiler>();
    return library;
}

Library* createTovStandardLibrary()
{
    auto* library = createSubLibrary ("Standard", sourceRoot + "/Standard");
    library->addClass<StateObject>();
    library->addClass<Accessor>();
    library->addClass<SelectionAccessor>();
    library->addClass<Attachable>();
    library->addClass<EventCounter>();
    library->addClass<Rational>();
    library->addClass<Seed>();
    library->addClass<Color>();
    library->addClass<ColorWithAlpha>();
    library->addClass<ColorShift>();
    library->addClass<GammaCorrection>();
    library->addClass<PixelPoint>();
    library->addClass<PixelSize>();
    library->addClass<PixelRectangle>();
    library->addClass<Justification>();
    library->addClass<FrameSidesLink>();
    library->addClass<Time>();
    library->addClass<SuccessState>();
    library->addClass<SuccessStatus>();
    library->addClass<Issue>();
    library->addClass<LeafIssue>();
    library->addClass<GroupIssue>();
    library->addClass<ActivationState>();
    library->addClass<Orientation>();
    library->addClass<SoftwareVersion>();
    library->addClass<OperatingSystemType>();
    library->addClass<ProcessorCapabilities>();
    library->addClass<ExtentedProcessorStats>();
    library->addClass<SystemStats>();
    library->addClass<HierarchicalSelectionStatus>();
    library->addClass<HierarchicalSelection>();
    library->addClassGenerator ("HierarchicalSelection", new HierarchicalSelectionClassGenerator());
    library->addClass<ExecutionContext>();
    library->addClass<ToStringExecutionContext>();
    library->addClass<Service>();
    library->addClass<ProgramMethod>();
    library->addClass<Program>();
    library->addClass<ProgramGetSoftwareVersionMethod>();
    library->addClass<DynamicVariableSignature>();
    library->addClass<DynamicVariable>();
    library->addClassGenerator ("DynamicVariable", new DynamicVariableClassGenerator());
    library->addClass<DynamicVariableVector>();
    library->addClass<TextAttribute>();
    library->addClass<AttributedString>();
    library->addClass<NativeFile>();
    library->addClass<NativeDirectory>();
    library->addClass<BufferComponentType>();
    library->addClass<BufferLayout>();
    library->addClass<Buffer>();
    library->addClass<ResizableBuffer>();
    library->addClass<MemoryBuffer>();
    library->addClass<UInt8Buffer>();
    library->addClass<Int32Buffer>();
    library->addClass<UInt32Buffer>();
    library->addClass<Float32Buffer>();
    library->addClass<Float64Buffer>();
    library->addClass<BufferWithLayout>();
    library->addClass<BufferArray>();
    library->addClass<TaskState>();
    library->addClass<Task>();
    library->addClass<GroupTask>();
    library->addClass<ProgressionStatistics>();
    library->addLibrary (createTovProfilerLibrary());
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
