#pragma once

#include "ExtentedProcessorStats.h"
#include "OperatingSystemType.h"
#include "ProcessorCapabilities.h"
#include "../Atomic/Boolean.h"
#include "../Network/NetworkStats.h"

namespace tov
{

/** A snapshot of a machine: operating system, processors, memory, firmware and board
    identification, and network adapters.

    A plain value: it is saved, compared and sent like any object, so that one machine can show
    another's hardware. Nothing in the library depends on what it holds.
*/
class SystemStats : public Object
{
public:
    TOV_DECLARE_CLASS (SystemStats, Object)

    /** Fills the snapshot from this machine; the firmware part only where the firmware table can be read. */
    void refreshFromLocalSystem (bool includeNetwork);
    /** Fills the firmware-derived variables from the structures of a raw SMBIOS table; each
        processor structure appends an entry to the processors. */
    void loadFromTable (juce::MemoryBlock& table);
    /** Where this machine's firmware table is read from; unreadable without privileges. */
    static juce::File getFirmwareTableFile();

    /** A line per value, with a blank line after the operating system. */
    juce::String toString() const override;

    //==============================================================================
    const OperatingSystemType& getOperatingSystemType() const noexcept { return operatingSystemType; }
    const String& getOperatingSystemName() const noexcept         { return operatingSystemName; }
    const Boolean& getOperatingSystem64Bit() const noexcept       { return operatingSystem64Bit; }
    const NetworkStats& getNetworkStats() const noexcept          { return networkStats; }
    const PositiveInteger& getNumCpuCores() const noexcept        { return numCpuCores; }
    const PositiveInteger& getNumCpuThreads() const noexcept      { return numCpuThreads; }
    const ProcessorCapabilities& getCpuCapabilities() const noexcept { return cpuCapabilities; }
    const PositiveInteger& getMemorySizeInMegabytes() const noexcept { return memorySizeInMegabytes; }
    const String& getBiosVendor() const noexcept                  { return biosVendor; }
    const String& getBiosReleaseDate() const noexcept             { return biosReleaseDate; }
    const String& getBiosVersion() const noexcept                 { return biosVersion; }
    const String& getBiosSystemVersion() const noexcept           { return biosSystemVersion; }
    const String& getBiosFrimwareVersion() const noexcept         { return biosFrimwareVersion; }
    const String& getMotherBoardManufacturer() const noexcept     { return motherBoardManufacturer; }
    const String& getMotherBoardProductName() const noexcept      { return motherBoardProductName; }
    const String& getMotherBoardRevision() const noexcept         { return motherBoardRevision; }
    const String& getMotherBoardSerialNumber() const noexcept     { return motherBoardSerialNumber; }
    const String& getChassisAssetTag() const noexcept             { return chassisAssetTag; }
    const String& getSystemSerialNumber() const noexcept          { return systemSerialNumber; }
    const String& getSystemUUID() const noexcept                  { return systemUUID; }
    const OwnedVector<ExtentedProcessorStats>& getProcessorsStats() const noexcept { return processorsStats; }

private:
    OperatingSystemType operatingSystemType;
    String operatingSystemName;
    Boolean operatingSystem64Bit;
    NetworkStats networkStats;
    PositiveInteger numCpuCores;
    PositiveInteger numCpuThreads;
    ProcessorCapabilities cpuCapabilities;
    PositiveInteger memorySizeInMegabytes;
    String biosVendor;
    String biosReleaseDate;
    String biosVersion;
    String biosSystemVersion;
    String biosFrimwareVersion;   // so spelled in saved snapshots
    String motherBoardManufacturer;
    String motherBoardProductName;
    String motherBoardRevision;
    String motherBoardSerialNumber;
    String chassisAssetTag;
    String systemSerialNumber;
    String systemUUID;
    OwnedVector<ExtentedProcessorStats> processorsStats;

    friend class SystemStatsTableReader;
};

} // namespace tov
