// The directories, log files and configuration files of a Program.
#include "Program.h"
#include "../Core/Class.h"
#include "../Core/State.h"
#include "../Core/StateObjectExporter.h"
#include <algorithm>

namespace tov
{

juce::File Program::getProgramDirectory (const juce::String& subdirectory)
{
    const auto base = juce::File::getSpecialLocation (juce::File::hostApplicationPath).getParentDirectory();
    if (subdirectory.isEmpty())
        return base;

    static juce::CriticalSection cacheLock;
    static std::map<juce::String, juce::File> cache;
    const juce::ScopedLock lock (cacheLock);
    const auto cached = cache.find (subdirectory);
    if (cached != cache.end())
        return cached->second;

    // The search climbs to the root, so that a development tree, in which the
    // executable sits deep below the resources, works without configuration.
    auto directory = base;
    while (! directory.getChildFile (subdirectory).isDirectory())
    {
        const auto parent = directory.getParentDirectory();
        if (parent == juce::File() || parent == directory)
            break;
        directory = parent;
    }
    const auto child = directory.getChildFile (subdirectory);
    return cache[subdirectory] = child.isDirectory() ? child : base;
}

juce::File Program::getProgramDataDirectory (const juce::String& subdirectory, bool forCurrentUser) const
{
    juce::File root;
    if (forCurrentUser)
    {
        root = juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory);
    }
    else
    {
        // Only the machine-wide path has a company folder.
        const auto programData = juce::SystemStats::getEnvironmentVariable ("ProgramData", {});
        root = programData.isNotEmpty() && juce::File::isAbsolutePath (programData)
                   ? juce::File (programData)
                   : juce::File::getSpecialLocation (juce::File::commonApplicationDataDirectory);
        root = root.getChildFile ("KelvoTech");
    }

    const auto directory = root.getChildFile (getProgramName());
    if (subdirectory.isEmpty())
    {
        if (! directory.exists())
            directory.createDirectory();
        return directory;
    }

    // Known children cost no file-system access; this is on the path of every new log.
    const auto child = directory.getChildFile (subdirectory);
    const juce::ScopedLock lock (dataDirectoriesLock);
    if (knownDataDirectories.find (child) != knownDataDirectories.end())
        return child;
    if (! child.exists())
        child.createDirectory();
    knownDataDirectories[child] = child.exists();
    return child;
}

juce::File Program::getLogFile (const juce::String& name, const juce::String& extension, bool withStartTime) const
{
    auto fileName = getProgramName() + " " + softwareVersion.getBranchName().get() + " " + name;
    if (withStartTime)
        fileName += " " + startTime.toFileNameString();
    return getLogsDirectory (true).getChildFile (fileName + extension);
}

void Program::revealLastLogInExplorer() const
{
    const auto pattern = getLogFile ("*", "*", true);
    auto found = pattern.getParentDirectory().findChildFiles (juce::File::findFilesAndDirectories, false, pattern.getFileName());
    if (found.isEmpty())
        return;
    std::stable_sort (found.begin(), found.end(), [] (const juce::File& a, const juce::File& b)
                      { return a.getLastModificationTime() > b.getLastModificationTime(); });

    // There is nothing to show the file in without a display.
    if (hasDisplay())
        found.getFirst().revealToUser();
}

bool Program::hasDisplay()
{
    return juce::SystemStats::getEnvironmentVariable ("DISPLAY", {}).isNotEmpty()
        || juce::SystemStats::getEnvironmentVariable ("WAYLAND_DISPLAY", {}).isNotEmpty();
}

//==============================================================================
juce::File Program::getConfigurationFile (const juce::String& name) const
{
    return getConfigurationsDirectory (true).getChildFile (name + "_" + softwareVersion.versionNumberToString ("_") + ".configuration");
}

// name_major_minor[_revision].configuration: the numbers after the name.
static SoftwareVersion getConfigurationFileVersion (const juce::File& file, const juce::String& name)
{
    juce::StringArray tokens;
    tokens.addTokens (file.getFileNameWithoutExtension().substring (name.length() + 1), "_", {});
    return SoftwareVersion ({}, {}, (uint64_t) tokens[0].getIntValue(), (uint64_t) tokens[1].getIntValue(),
                            tokens.size() > 2 ? (uint64_t) tokens[2].getIntValue() : 0, {});
}

juce::File Program::findConfigurationFile (ExecutionContext& context, const juce::String& name) const
{
    const auto current = getConfigurationFile (name);
    if (current.exists())
        return current;

    const auto files = getConfigurationsDirectory (true).findChildFiles (juce::File::findFiles, false, name + "*_*_*configuration");
    if (files.isEmpty())
        return {};
    context.information ("Could not find configuration with software version " + softwareVersion.versionNumberToString ("."));

    std::vector<std::pair<SoftwareVersion, juce::File>> lower;
    bool anyHigher = false;
    for (const auto& file : files)
    {
        auto version = getConfigurationFileVersion (file, name);
        if (version < softwareVersion)
            lower.emplace_back (version, file);
        else
            anyHigher = true;
    }
    if (anyHigher)
        context.information ("A file higher than your version was discarded");
    if (lower.empty())
        return {};

    std::stable_sort (lower.begin(), lower.end(), [] (const auto& a, const auto& b) { return a.first < b.first; });
    context.information ("Loading the " + lower.back().first.toString() + " file version instead");
    return lower.back().second;
}

bool Program::loadConfiguration (ExecutionContext& context, const juce::String& name, Object& target) const
{
    context.enter ("Loading " + name + " Configuration");

    // Variables missing from the file, or a missing file, leave defaults and not stale values.
    if (auto* targetClass = target.getClass())
        if (auto* defaults = targetClass->getDefaultObject())
            defaults->copyTo (target);

    bool result = true;
    const auto file = findConfigurationFile (context, name);
    if (file == juce::File())
        context.information ("No existing " + getConfigurationFile (name).getFileName() + " file");
    else
        result = target.loadFromFile (context, file);
    context.leave();
    return result;
}

bool Program::saveConfiguration (ExecutionContext& context, const juce::String& name, const Object& source) const
{
    return saveConfiguration (context, name, *source.makeState());
}

bool Program::saveConfiguration (ExecutionContext& context, const juce::String& name, const State& state) const
{
    // Said before anything is written, also when the writing fails.
    context.information (name + " configuration saved");
    return state.saveToFile (context, getConfigurationFile (name));
}

} // namespace tov
