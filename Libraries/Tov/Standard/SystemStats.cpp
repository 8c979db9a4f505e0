#include "SystemStats.h"
#include "SmbiosTable.h"

namespace tov
{

TOV_BEGIN_CLASS (SystemStats)
    TOV_VARIABLE (operatingSystemType)
    TOV_VARIABLE (operatingSystemName)
    TOV_VARIABLE (operatingSystem64Bit)
    TOV_VARIABLE (networkStats)
    TOV_VARIABLE (numCpuCores)
    TOV_VARIABLE (numCpuThreads)
    TOV_VARIABLE (cpuCapabilities)
    TOV_VARIABLE (memorySizeInMegabytes)
    TOV_VARIABLE (biosVendor)
    TOV_VARIABLE (biosReleaseDate)
    TOV_VARIABLE (biosVersion)
    TOV_VARIABLE (biosSystemVersion)
    TOV_VARIABLE (biosFrimwareVersion)
    TOV_VARIABLE (motherBoardManufacturer)
    TOV_VARIABLE (motherBoardProductName)
    TOV_VARIABLE (motherBoardRevision)
    TOV_VARIABLE (motherBoardSerialNumber)
    TOV_VARIABLE (chassisAssetTag)
    TOV_VARIABLE (systemSerialNumber)
    TOV_VARIABLE (systemUUID)
    TOV_VARIABLE (processorsStats)
TOV_END_CLASS()

//==============================================================================
/** Reads each kind of structure of a firmware table into the snapshot. */
class SystemStatsTableReader
{
public:
    explicit SystemStatsTableReader (SystemStats& stats) : stats (stats) {}

    void read (const SmbiosTable::Structure& structure)
    {
        switch (structure.getType())
        {
            case 0: readBios (structure); break;
            case 1: readSystem (structure); break;
            case 2: readBaseboard (structure); break;
            case 3: stats.chassisAssetTag.set (structure.getString (8), false); break;
            case 4: readProcessor (structure); break;
            default: break;
        }
    }

private:
    SystemStats& stats;
    int numProcessors = 0;

    static juce::String getVersion (const SmbiosTable::Structure& structure, size_t offset)
    {
        return juce::String (structure.getByte (offset)) + "." + juce::String (structure.getByte (offset + 1));
    }

    void readBios (const SmbiosTable::Structure& structure)
    {
        stats.biosVendor.set (structure.getString (4), false);
        stats.biosVersion.set (structure.getString (5), false);
        stats.biosReleaseDate.set (structure.getString (8), false);
        if (structure.getLength() <= 21)
            return;
        stats.biosSystemVersion.set (getVersion (structure, 20), false);
        stats.biosFrimwareVersion.set (getVersion (structure, 22), false);
    }

    void readSystem (const SmbiosTable::Structure& structure)
    {
        stats.systemSerialNumber.set (structure.getString (7), false);
        if (structure.getLength() <= 8)
            return;
        juce::String uuid;
        for (size_t i = 0; i < 16; ++i)
        {
            if (i == 4 || i == 6 || i == 8 || i == 10)
                uuid += "-";
            uuid += juce::String::toHexString (structure.getByte (8 + i)).paddedLeft ('0', 2).toUpperCase();
        }
        stats.systemUUID.set (uuid, false);
    }

    void readBaseboard (const SmbiosTable::Structure& structure)
    {
        stats.motherBoardManufacturer.set (structure.getString (4), false);
        stats.motherBoardProductName.set (structure.getString (5), false);
        stats.motherBoardRevision.set (structure.getString (6), false);
        stats.motherBoardSerialNumber.set (structure.getString (7), false);
    }

    void readProcessor (const SmbiosTable::Structure& structure)
    {
        auto* processor = new ExtentedProcessorStats();
        processor->socketDesignation.set (structure.getString (4), false);
        processor->manufacturer.set (structure.getString (7), false);
        processor->version.set (structure.getString (16), false);
        processor->externalClockSpeed.set (juce::String (structure.getWord (18)) + "MHz", false);
        processor->maxSpeed.set (juce::String (structure.getWord (20)) + "MHz", false);
        processor->currentSpeed.set (juce::String (structure.getWord (22)) + "MHz", false);
        for (const int id : ExtentedProcessorStats::readLogicalProcessors (juce::File ("/sys/devices/system/cpu"), numProcessors++))
        {
            auto* logical = new PositiveInteger();
            logical->set (id, false);
            processor->logicalProcessors.append (logical, false);
        }
        stats.processorsStats.append (processor, false);
    }
};

//==============================================================================
juce::File SystemStats::getFirmwareTableFile()
{
    return juce::File ("/sys/firmware/dmi/tables/DMI");
}

void SystemStats::refreshFromLocalSystem (bool includeNetwork)
{
    if (includeNetwork)
        networkStats.refreshFromLocalSystem();

    using S = juce::SystemStats;
    operatingSystemType.set (OperatingSystemType::fromJuce ((int) S::getOperatingSystemType()), false);
    operatingSystemName.set (S::getOperatingSystemName(), false);
    operatingSystem64Bit.set (S::isOperatingSystem64Bit(), false);
    numCpuCores.set (S::getNumPhysicalCpus(), false);
    numCpuThreads.set (S::getNumCpus(), false);
    cpuCapabilities.refreshFromLocalSystem();
    memorySizeInMegabytes.set (S::getMemorySizeInMegabytes(), false);

    // A refresh describes the processors of now, not those of every earlier refresh too.
    juce::MemoryBlock table;
    if (getFirmwareTableFile().loadFileAsData (table) && table.getSize() > 0)
    {
        processorsStats.clear (false);
        loadFromTable (table);
    }
}

void SystemStats::loadFromTable (juce::MemoryBlock& table)
{
    SystemStatsTableReader reader (*this);
    SmbiosTable (table).forEachStructure ([&reader] (const SmbiosTable::Structure& structure) { reader.read (structure); });
}

juce::String SystemStats::toString() const
{
    juce::String result;
    result << "OS Type: " << operatingSystemType.toString() << " (" << operatingSystemName.get() << ") "
           << (operatingSystem64Bit.get() ? "64" : "32") << " bits\n\n";
    result << "CPU Core: " << numCpuCores.get() << " (Threads: " << numCpuThreads.get() << ")\n";
    result << "CPU Features: " << cpuCapabilities.toString() << "\n";
    for (const auto* processor : processorsStats)
        result << processor->toString();
    result << "BIOS Vendor: " << biosVendor.get() << "\n"
           << "BIOS Release Date: " << biosReleaseDate.get() << "\n"
           << "BIOS Version: " << biosVersion.get() << "\n"
           << "BIOS System Version: " << biosSystemVersion.get() << "\n"
           << "BIOS Firmware Version: " << biosFrimwareVersion.get() << "\n"
           << "Mother Board Manufacturer: " << motherBoardManufacturer.get() << "\n"
           << "Mother Board Name: " << motherBoardProductName.get() << "\n"
           << "Mother Board Revision: " << motherBoardRevision.get() << "\n"
           << "Mother Board Id: " << motherBoardSerialNumber.get() << "\n"
           << "Chassis Asset Tag: " << chassisAssetTag.get() << "\n"
           << "System Id: " << systemSerialNumber.get() << "\n"
           << "System UUId: " << systemUUID.get() << "\n";
    return result;
}

} // namespace tov
