#include "SoftwareVersionFinder.h"
#include <algorithm>

namespace tov
{

static bool isWebListing (const juce::URL& url)
{
    const auto scheme = url.getScheme();
    return scheme.equalsIgnoreCase ("http") || scheme.equalsIgnoreCase ("https");
}

static void addEntry (std::vector<SoftwareVersionFinder::Entry>& result, const juce::URL& url,
                      const juce::String& name, const SoftwareVersion* minimum)
{
    SoftwareVersion version;
    version.fromString (name);
    if (minimum != nullptr && version < *minimum)
        return;
    result.emplace_back (url, version);
}

// The href="..." values of a listing, in the order they stand.
static juce::StringArray getLinks (const juce::String& listing)
{
    juce::StringArray links;
    static const juce::String marker ("href=\"");
    for (int start = listing.indexOf (marker); start >= 0; start = listing.indexOf (start, marker))
    {
        start += marker.length();
        const int end = listing.indexOfChar (start, '"');
        if (end < 0)
            break;
        links.add (listing.substring (start, end));
        start = end;
    }
    return links;
}

// Links of listings are absolute, rooted at the server, or relative to the listing.
static juce::String resolveLink (const juce::URL& listing, const juce::String& base, const juce::String& link)
{
    if (link.contains ("://"))
        return link;
    if (link.startsWithChar ('/'))
        return listing.getScheme() + "://" + listing.getDomain()
               + (listing.getPort() > 0 ? ":" + juce::String (listing.getPort()) : juce::String()) + link;
    return base + link;
}

static void readWebListing (std::vector<SoftwareVersionFinder::Entry>& result, const juce::URL& url,
                            const juce::String& wildcard, int depth, const SoftwareVersion* minimum)
{
    const auto listing = url.readEntireTextStream();
    const auto base = url.toString (false).trimCharactersAtEnd ("/") + "/";
    for (auto link : getLinks (listing))
    {
        const bool isDirectory = link.endsWithChar ('/');
        const auto name = link.trimCharactersAtEnd ("/").fromLastOccurrenceOf ("/", false, false);
        if (name.isEmpty() || name == "." || name == "..")
            continue;
        const juce::URL child (resolveLink (url, base, link));
        if (isDirectory)
        {
            if (depth > 0)
                readWebListing (result, child, wildcard, depth - 1, minimum);
        }
        else if (name.matchesWildcard (wildcard, false))
        {
            addEntry (result, child, name, minimum);
        }
    }
}

static void readDirectory (std::vector<SoftwareVersionFinder::Entry>& result, const juce::File& directory,
                           const juce::String& wildcard, int depth, const SoftwareVersion* minimum)
{
    for (const auto& child : directory.findChildFiles (juce::File::findFilesAndDirectories, false))
    {
        if (child.isDirectory())
        {
            if (depth > 0)
                readDirectory (result, child, wildcard, depth - 1, minimum);
        }
        else if (child.getFileName().matchesWildcard (wildcard, false))
        {
            addEntry (result, juce::URL (child), child.getFileName(), minimum);
        }
    }
}

bool SoftwareVersionFinder::getDataBaseFromUrl (std::vector<Entry>& result, const juce::URL& url, const juce::String& wildcard,
                                                int depth, const SoftwareVersion* minimum)
{
    const auto before = result.size();
    if (isWebListing (url))
        readWebListing (result, url, wildcard, depth, minimum);
    else if (url.isLocalFile())
        readDirectory (result, url.getLocalFile(), wildcard, depth, minimum);
    return result.size() > before;
}

bool SoftwareVersionFinder::findLastVersion (SoftwareVersion& version, juce::URL& where, const juce::String& wildcard,
                                             int depth, const SoftwareVersion* minimum) const
{
    std::vector<Entry> entries;
    for (const auto& url : urls)
        getDataBaseFromUrl (entries, url, wildcard, depth, minimum);
    if (entries.empty())
        return false;

    // Newest first; among equal numbers the first found stays first.
    std::stable_sort (entries.begin(), entries.end(), [] (const Entry& a, const Entry& b) { return b.second < a.second; });
    version = entries.front().second;
    where = entries.front().first;
    return true;
}

} // namespace tov
