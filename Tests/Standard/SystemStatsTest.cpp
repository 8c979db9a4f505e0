#include "../Support/RecordingExecutionContext.h"
#include "../Support/ScratchDirectory.h"
#include <Tov/Core/Class.h>
#include <Tov/Core/State.h>
#include <Tov/Atomic/EnumerationClass.h>
#include <Tov/Standard/SmbiosTable.h>
#include <Tov/Standard/SystemStats.h>
#include <gtest/gtest.h>
#include <vector>

using namespace tov;

namespace
{
/** A raw firmware table made of structures: each a type, the formatted bytes after the
    four-byte header, and its strings. */
class TableBuilder
{
public:
    TableBuilder& add (uint8_t type, std::vector<uint8_t> body, std::vector<std::string> strings = {}, int length = -1)
    {
        const auto start = bytes.size();
        bytes.insert (bytes.end(), { type, 0, 0x34, 0x12 });
        bytes.insert (bytes.end(), body.begin(), body.end());
        bytes[start + 1] = (uint8_t) (length >= 0 ? length : (int) (bytes.size() - start));
        for (const auto& s : strings)
            bytes.insert (bytes.end(), s.c_str(), s.c_str() + s.size() + 1);
        if (strings.empty())
            bytes.push_back (0);
        bytes.push_back (0);
        return *this;
    }

    TableBuilder& end()                     { return add (127, {}); }
    juce::MemoryBlock get() const           { return juce::MemoryBlock (bytes.data(), bytes.size()); }

private:
    std::vector<uint8_t> bytes;
};

/** Body bytes from offset 4 on, zero but for the given offsets. */
std::vector<uint8_t> body (size_t size, std::initializer_list<std::pair<size_t, uint8_t>> values)
{
    std::vector<uint8_t> result (size - 4, 0);
    for (const auto& [offset, value] : values)
        result[offset - 4] = value;
    return result;
}

std::vector<uint8_t> biosBody (size_t size)
{
    return body (size, { { 4, 1 }, { 5, 2 }, { 8, 3 }, { 20, 5 }, { 21, 17 }, { 22, 2 }, { 23, 9 } });
}

std::vector<uint8_t> systemBody (size_t size)
{
    std::vector<uint8_t> result = body (size, { { 7, 1 } });
    for (size_t i = 8; i < size && i < 24; ++i)
        result[i - 4] = (uint8_t) (0x10 * (i - 8) + 0x0a);
    return result;
}

std::vector<uint8_t> processorBody (uint16_t external, uint16_t maximum, uint16_t current)
{
    return body (26, { { 4, 1 }, { 7, 2 }, { 16, 3 },
                       { 18, (uint8_t) external }, { 19, (uint8_t) (external >> 8) },
                       { 20, (uint8_t) maximum }, { 21, (uint8_t) (maximum >> 8) },
                       { 22, (uint8_t) current }, { 23, (uint8_t) (current >> 8) } });
}

SystemStats load (const juce::MemoryBlock& table)
{
    SystemStats stats;
    auto copy = table;
    stats.loadFromTable (copy);
    return stats;
}

std::vector<int64_t> getLogicalProcessors (const ExtentedProcessorStats& processor)
{
    std::vector<int64_t> result;
    for (const auto* id : processor.logicalProcessors)
        result.push_back (id->get());
    return result;
}

std::vector<int64_t> toInt64 (const std::vector<int>& ids)
{
    return std::vector<int64_t> (ids.begin(), ids.end());
}
} // namespace

//==============================================================================
TEST (SystemStatsTest, ReadsBiosSystemBoardChassisAndProcessorStructures)
{
    const auto stats = load (TableBuilder()
        .add (0, biosBody (24), { "Vendor Inc.", "1.2.3", "03/07/2026" })
        .add (1, systemBody (25), { "SN-42" })
        .add (2, body (15, { { 4, 1 }, { 5, 2 }, { 6, 3 }, { 7, 4 } }), { "Board Maker", "B-100", "rev 2", "BS-7" })
        .add (3, body (21, { { 8, 1 } }), { "asset 9" })
        .add (4, processorBody (100, 4500, 3200), { "CPU0", "Intel", "Core i9" })
        .end().get());

    EXPECT_EQ (stats.getBiosVendor().get(), "Vendor Inc.");
    EXPECT_EQ (stats.getBiosVersion().get(), "1.2.3");
    EXPECT_EQ (stats.getBiosReleaseDate().get(), "03/07/2026");
    EXPECT_EQ (stats.getBiosSystemVersion().get(), "5.17");
    EXPECT_EQ (stats.getBiosFrimwareVersion().get(), "2.9");
    EXPECT_EQ (stats.getSystemSerialNumber().get(), "SN-42");
    EXPECT_EQ (stats.getSystemUUID().get(), "0A1A2A3A-4A5A-6A7A-8A9A-AABACADAEAFA");
    EXPECT_EQ (stats.getMotherBoardManufacturer().get(), "Board Maker");
    EXPECT_EQ (stats.getMotherBoardProductName().get(), "B-100");
    EXPECT_EQ (stats.getMotherBoardRevision().get(), "rev 2");
    EXPECT_EQ (stats.getMotherBoardSerialNumber().get(), "BS-7");
    EXPECT_EQ (stats.getChassisAssetTag().get(), "asset 9");
    ASSERT_EQ (stats.getProcessorsStats().size(), 1u);
    const auto& processor = *stats.getProcessorsStats()[0];
    EXPECT_EQ (processor.socketDesignation.get(), "CPU0");
    EXPECT_EQ (processor.manufacturer.get(), "Intel");
    EXPECT_EQ (processor.version.get(), "Core i9");
    EXPECT_EQ (processor.externalClockSpeed.get(), "100MHz");
    EXPECT_EQ (processor.maxSpeed.get(), "4500MHz");
    EXPECT_EQ (processor.currentSpeed.get(), "3200MHz");
}

TEST (SystemStatsTest, ATableWithoutAnEndStructureStopsAtTheEndOfTheBlock)
{
    auto table = TableBuilder().add (3, body (21, { { 8, 1 } }), { "first" }).add (2, body (15, { { 4, 1 } }), { "last" }).get();
    const auto stats = load (table);
    EXPECT_EQ (stats.getChassisAssetTag().get(), "first");
    EXPECT_EQ (stats.getMotherBoardManufacturer().get(), "last");

    // A header cut short by the end of the block is not read.
    table.append ("\x02\x0f", 2);
    EXPECT_EQ (load (table).getMotherBoardManufacturer().get(), "last");
}

TEST (SystemStatsTest, AStructureWhoseStringsRunToTheEndOfTheBlockStillReadsThem)
{
    auto table = TableBuilder().add (3, body (21, { { 8, 1 } }), { "tag" }).get();
    table.setSize (table.getSize() - 2);    // without the two closing zero bytes
    EXPECT_EQ (load (table).getChassisAssetTag().get(), "tag");
}

TEST (SystemStatsTest, NothingAfterTheEndStructureIsRead)
{
    const auto stats = load (TableBuilder().add (3, body (21, { { 8, 1 } }), { "before" }).end()
                                           .add (2, body (15, { { 4, 1 } }), { "after" }).get());
    EXPECT_EQ (stats.getChassisAssetTag().get(), "before");
    EXPECT_EQ (stats.getMotherBoardManufacturer().get(), "");
}

TEST (SystemStatsTest, AStringIndexBeyondTheStringSetYieldsAnEmptyString)
{
    const auto stats = load (TableBuilder().add (2, body (15, { { 4, 1 }, { 5, 3 }, { 6, 0 }, { 7, 2 } }), { "one", "two" }).end().get());
    EXPECT_EQ (stats.getMotherBoardManufacturer().get(), "one");
    EXPECT_EQ (stats.getMotherBoardProductName().get(), "");
    EXPECT_EQ (stats.getMotherBoardRevision().get(), "");     // index 0
    EXPECT_EQ (stats.getMotherBoardSerialNumber().get(), "two");
}

TEST (SystemStatsTest, ASystemStructureOfLength8LeavesTheUuidUntouched)
{
    SystemStats stats;
    auto first = TableBuilder().add (1, systemBody (25), { "first" }).end().get();
    stats.loadFromTable (first);
    ASSERT_EQ (stats.getSystemUUID().get(), "0A1A2A3A-4A5A-6A7A-8A9A-AABACADAEAFA");

    auto second = TableBuilder().add (1, body (8, { { 7, 1 } }), { "second" }).end().get();
    stats.loadFromTable (second);
    EXPECT_EQ (stats.getSystemSerialNumber().get(), "second");
    EXPECT_EQ (stats.getSystemUUID().get(), "0A1A2A3A-4A5A-6A7A-8A9A-AABACADAEAFA");
}

TEST (SystemStatsTest, BiosVersionsAreReadOnlyFromALengthOver21)
{
    const auto shortBios = load (TableBuilder().add (0, biosBody (21), { "V", "1", "d" }).end().get());
    EXPECT_EQ (shortBios.getBiosVendor().get(), "V");
    EXPECT_EQ (shortBios.getBiosSystemVersion().get(), "");
    EXPECT_EQ (shortBios.getBiosFrimwareVersion().get(), "");
}

TEST (SystemStatsTest, TwoProcessorsGiveTwoEntriesWithTheLogicalProcessorsOfTheirSockets)
{
    const auto stats = load (TableBuilder()
        .add (4, processorBody (100, 3000, 2000), { "P0", "AMD", "EPYC" })
        .add (4, processorBody (133, 3100, 2100), { "P1", "AMD", "EPYC" })
        .end().get());
    ASSERT_EQ (stats.getProcessorsStats().size(), 2u);
    EXPECT_EQ (stats.getProcessorsStats()[0]->socketDesignation.get(), "P0");
    EXPECT_EQ (stats.getProcessorsStats()[1]->socketDesignation.get(), "P1");
    EXPECT_EQ (stats.getProcessorsStats()[1]->externalClockSpeed.get(), "133MHz");
    const juce::File cpus ("/sys/devices/system/cpu");
    EXPECT_EQ (getLogicalProcessors (*stats.getProcessorsStats()[0]), toInt64 (ExtentedProcessorStats::readLogicalProcessors (cpus, 0)));
    EXPECT_EQ (getLogicalProcessors (*stats.getProcessorsStats()[1]), toInt64 (ExtentedProcessorStats::readLogicalProcessors (cpus, 1)));
    EXPECT_FALSE (stats.getProcessorsStats()[0]->logicalProcessors.size() == 0);
}

TEST (SystemStatsTest, AnEmptyTableChangesNothing)
{
    SystemStats stats;
    juce::MemoryBlock empty;
    stats.loadFromTable (empty);
    EXPECT_EQ (stats.makeState()->toString(), SystemStats().makeState()->toString());
}

//==============================================================================
TEST (SystemStatsTest, TheVariablesKeepTheirOrderAndOldNames)
{
    auto* type = SystemStats().getClass();
    juce::StringArray names;
    for (size_t i = 0; i < type->getNumMemberVariables(); ++i)
        names.add (type->getMemberVariableSignature (i)->getName() + ":" + type->getMemberVariableSignature (i)->getValueClass()->getName());
    EXPECT_EQ (names.joinIntoString (" "),
               "operatingSystemType:OperatingSystemType operatingSystemName:String operatingSystem64Bit:Boolean "
               "networkStats:NetworkStats numCpuCores:PositiveInteger numCpuThreads:PositiveInteger "
               "cpuCapabilities:ProcessorCapabilities memorySizeInMegabytes:PositiveInteger biosVendor:String "
               "biosReleaseDate:String biosVersion:String biosSystemVersion:String biosFrimwareVersion:String "
               "motherBoardManufacturer:String motherBoardProductName:String motherBoardRevision:String "
               "motherBoardSerialNumber:String chassisAssetTag:String systemSerialNumber:String systemUUID:String "
               "processorsStats:OwnedVector(ExtentedProcessorStats)");
}

TEST (SystemStatsTest, TheOperatingSystemTypesAreInTheirOrder)
{
    auto* type = dynamic_cast<EnumerationClass*> (OperatingSystemType().getClass());
    ASSERT_NE (type, nullptr);
    juce::StringArray names;
    for (size_t i = 0; i < type->getNumElements(); ++i)
        names.add (type->getElementName (i));
    EXPECT_EQ (names.joinIntoString (" "),
               "unknownOS macOSX macOSX104 macOSX105 macOSX106 macOSX107 macOSX108 macOSX109 macOSX1010 macOSX1011 "
               "macOSX1012 macOSX1013 macOSX1014 macOSX1015 macOSX1016 windows win2000 winXP winVista win7 win8_0 "
               "win8_1 win10 linuxOS android iOS");
}

TEST (SystemStatsTest, JuceOperatingSystemTypesMapToTheirElements)
{
    using S = juce::SystemStats;
    EXPECT_EQ (OperatingSystemType::fromJuce (S::Linux), OperatingSystemType::linuxOS);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::Android), OperatingSystemType::android);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::iOS), OperatingSystemType::iOS);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::MacOSX_10_7), OperatingSystemType::macOSX107);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::MacOSX_10_15), OperatingSystemType::macOSX1015);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::MacOS_13), OperatingSystemType::macOSX);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::Win2000), OperatingSystemType::win2000);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::Windows10), OperatingSystemType::win10);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::Windows11), OperatingSystemType::windows);
    EXPECT_EQ (OperatingSystemType::fromJuce (S::UnknownOS), OperatingSystemType::unknownOS);
}

TEST (SystemStatsTest, TheLocalSystemIsThisMachineAsJuceSeesIt)
{
    SystemStats stats;
    stats.refreshFromLocalSystem (false);
    EXPECT_EQ (stats.getOperatingSystemType().get(), OperatingSystemType::linuxOS);
    EXPECT_EQ (stats.getOperatingSystemName().get(), juce::SystemStats::getOperatingSystemName());
    EXPECT_TRUE (stats.getOperatingSystem64Bit().get());
    EXPECT_EQ (stats.getNumCpuThreads().get(), juce::SystemStats::getNumCpus());
    EXPECT_EQ (stats.getNumCpuCores().get(), juce::SystemStats::getNumPhysicalCpus());
    EXPECT_EQ (stats.getMemorySizeInMegabytes().get(), juce::SystemStats::getMemorySizeInMegabytes());
    EXPECT_EQ (stats.getCpuCapabilities().hasSSE2.get(), juce::SystemStats::hasSSE2());
    EXPECT_EQ (stats.getCpuCapabilities().hasAVX2.get(), juce::SystemStats::hasAVX2());
    // Without the network the network part stays empty.
    EXPECT_EQ (stats.getNetworkStats().hostName.get(), "");
}

TEST (SystemStatsTest, WithTheNetworkTheSnapshotHoldsTheHostName)
{
    SystemStats stats;
    stats.refreshFromLocalSystem (true);
    EXPECT_EQ (stats.getNetworkStats().hostName.get(), juce::SystemStats::getComputerName());
}

TEST (SystemStatsTest, ASnapshotSavesAndLoadsBackEqual)
{
    SystemStats stats;
    stats.refreshFromLocalSystem (true);
    auto table = TableBuilder().add (0, biosBody (24), { "V", "1", "d" }).add (4, processorBody (1, 2, 3), { "S", "M", "V" }).end().get();
    stats.loadFromTable (table);

    tov::testing::RecordingExecutionContext context;
    SystemStats loaded;
    ASSERT_TRUE (loaded.loadFromState (context, stats.makeState()));
    EXPECT_TRUE (loaded.equals (stats));
    EXPECT_EQ (loaded.makeState()->toString(), stats.makeState()->toString());
    EXPECT_EQ (loaded.toString(), stats.toString());

    // A machine with another BIOS compares different.
    auto other = TableBuilder().add (0, biosBody (24), { "W", "1", "d" }).end().get();
    loaded.loadFromTable (other);
    EXPECT_FALSE (loaded.equals (stats));
}

TEST (SystemStatsTest, TheReportHasItsLabelsInOrder)
{
    SystemStats stats;
    auto table = TableBuilder()
        .add (0, biosBody (24), { "Vendor", "1.0", "01/02/2025" })
        .add (1, systemBody (25), { "SN" })
        .add (2, body (15, { { 4, 1 }, { 5, 2 }, { 6, 3 }, { 7, 4 } }), { "Maker", "Board", "A", "B7" })
        .add (3, body (21, { { 8, 1 } }), { "Tag" })
        .add (4, processorBody (100, 4000, 3000), { "CPU0", "Intel", "Xeon" })
        .end().get();
    stats.loadFromTable (table);
    const auto text = stats.toString();
    const auto processorsAndFirmware = text.fromFirstOccurrenceOf ("CPU Features: \n", false, false);
    EXPECT_TRUE (text.startsWith ("OS Type: unknownOS () 32 bits\n\nCPU Core: 0 (Threads: 0)\nCPU Features: \n")) << text;
    EXPECT_EQ (processorsAndFirmware,
               "CPU Manufacturer: Intel\nCPU Version: Xeon\nCPU Socket: CPU0\nCPU External Clock Speed: 100MHz\n"
               "CPU Max Speed: 4000MHz\nCPU Current Speed: 3000MHz\n"
               "BIOS Vendor: Vendor\nBIOS Release Date: 01/02/2025\nBIOS Version: 1.0\nBIOS System Version: 5.17\n"
               "BIOS Firmware Version: 2.9\nMother Board Manufacturer: Maker\nMother Board Name: Board\n"
               "Mother Board Revision: A\nMother Board Id: B7\nChassis Asset Tag: Tag\nSystem Id: SN\n"
               "System UUId: 0A1A2A3A-4A5A-6A7A-8A9A-AABACADAEAFA\n");
}

//==============================================================================
TEST (ProcessorStatsTest, CapabilitiesListTheSetFeaturesNewestFirst)
{
    ProcessorCapabilities none, some, all;
    EXPECT_EQ (none.toString(), "");
    some.hasSSE2.set (true, false);
    some.hasAVX.set (true, false);
    some.hasMMX.set (true, false);
    EXPECT_EQ (some.toString(), "AVX, SSE2, MMX, ");
    for (size_t i = 0; i < all.getClass()->getNumMemberVariables(); ++i)
        dynamic_cast<Boolean*> (all.getClass()->getMemberVariable (&all, i))->set (true, false);
    EXPECT_EQ (all.toString(), "AVX512VPOPCNTDQAVX512VL, AVX512VBMI, AVX512PF, AVX512IFMA, AVX512ER, AVX512DQ, AVX512CD, "
                               "AVX512BW, AVX512F, AVX2, AVX, SSE4.2, SSE4.1, SSE3, SSE2, SSE, MMX, 3DNow, ");
}

TEST (ProcessorStatsTest, CapabilitiesAreNineteenBooleansInOrder)
{
    auto* type = ProcessorCapabilities().getClass();
    juce::StringArray names;
    for (size_t i = 0; i < type->getNumMemberVariables(); ++i)
        names.add (type->getMemberVariableSignature (i)->getName());
    EXPECT_EQ (names.joinIntoString (" "), "hasMMX has3DNow hasSSE hasSSE2 hasSSE3 hasSSE41 hasSSE42 hasAVX hasAVX2 hasAVX512F "
                                           "hasAVX512BW hasAVX512CD hasAVX512DQ hasAVX512ER hasAVX512IFMA hasAVX512PF "
                                           "hasAVX512VBMI hasAVX512VL hasAVX512VPOPCNTDQ");
}

TEST (ProcessorStatsTest, AProcessorKeepsItsOldClassNameAndShowsItsTexts)
{
    ExtentedProcessorStats processor;
    EXPECT_EQ (processor.getClass()->getName(), "ExtentedProcessorStats");
    processor.manufacturer.set ("AMD", false);
    processor.maxSpeed.set ("3000MHz", false);
    EXPECT_EQ (processor.toString(), "CPU Manufacturer: AMD\nCPU Version: \nCPU Socket: \nCPU External Clock Speed: \n"
                                     "CPU Max Speed: 3000MHz\nCPU Current Speed: \n");
}

TEST (ProcessorStatsTest, LogicalProcessorsComeFromTheTopologyOfTheirSocket)
{
    const tov::test::ScratchDirectory scratch;
    const auto& root = scratch.getFile();
    const std::pair<const char*, int> cpus[] = { { "cpu0", 0 }, { "cpu1", 1 }, { "cpu2", 0 }, { "cpu10", 1 }, { "cpu3", 1 } };
    for (const auto& [name, package] : cpus)
    {
        const auto topology = root.getChildFile (name).getChildFile ("topology");
        ASSERT_TRUE (topology.createDirectory());
        ASSERT_TRUE (topology.getChildFile ("physical_package_id").replaceWithText (juce::String (package) + "\n"));
    }
    root.getChildFile ("cpufreq").createDirectory();
    root.getChildFile ("cpu4").createDirectory();    // offline: no topology
    EXPECT_EQ (ExtentedProcessorStats::readLogicalProcessors (root, 0), (std::vector<int> { 0, 2 }));
    EXPECT_EQ (ExtentedProcessorStats::readLogicalProcessors (root, 1), (std::vector<int> { 1, 3, 10 }));
    EXPECT_EQ (ExtentedProcessorStats::readLogicalProcessors (root, 2), (std::vector<int> {}));
}
