#pragma once

#include "SoftwareVersion.h"
#include <utility>
#include <vector>

namespace tov
{

/** Looks through directories and web listings for the newest build of a program. */
class SoftwareVersionFinder
{
public:
    using Entry = std::pair<juce::URL, SoftwareVersion>;

    void addDirectory (const juce::File& directory)   { urls.push_back (juce::URL (directory)); }
    void addUrl (const juce::URL& url)                { urls.push_back (url); }
    const std::vector<juce::URL>& getUrls() const noexcept { return urls; }

    /** The newest entry of all places, in the order they were added; false when there is none. */
    bool findLastVersion (SoftwareVersion& version, juce::URL& where, const juce::String& wildcard,
                          int depth, const SoftwareVersion* minimum) const;

    /** Appends the builds of one place: a directory's files, or the links of a web listing,
        whose child directories are followed down to depth levels. Entries below minimum are left out. */
    static bool getDataBaseFromUrl (std::vector<Entry>& result, const juce::URL& url, const juce::String& wildcard,
                                    int depth, const SoftwareVersion* minimum);

private:
    std::vector<juce::URL> urls;
};

} // namespace tov
