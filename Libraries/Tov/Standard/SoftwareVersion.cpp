#include "SoftwareVersion.h"

namespace tov
{

TOV_BEGIN_CLASS (SoftwareVersion)
    TOV_VARIABLE (programName, { "jsonIdentifier", "\"program\"" })
    TOV_VARIABLE (branchName, { "jsonIdentifier", "\"branch\"" })
    TOV_VARIABLE (majorVersion, { "jsonIdentifier", "\"major\"" })
    TOV_VARIABLE (minorVersion, { "jsonIdentifier", "\"minor\"" })
    TOV_VARIABLE (buildRevision, { "jsonIdentifier", "\"revision\"" })
    TOV_VARIABLE (commitHash, { "jsonIdentifier", "\"commit\"" })
    TOV_VARIABLE (targetPlatform, { "jsonIdentifier", "\"platform\"" })
TOV_END_CLASS()

SoftwareVersion::SoftwareVersion (const juce::String& programName, const juce::String& branchName,
                                  uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash)
{
    set (programName, branchName, majorVersion, minorVersion, buildRevision, commitHash);
}

// Member by member: this works before the class tables exist, as a program's version must.
SoftwareVersion& SoftwareVersion::operator= (const SoftwareVersion& other)
{
    set (other.programName.get(), other.branchName.get(), other.getMajor(), other.getMinor(), other.getRevision(), other.commitHash.get());
    targetPlatform.set (other.targetPlatform.get());
    return *this;
}

void SoftwareVersion::set (const juce::String& newProgramName, const juce::String& newBranchName,
                           uint64_t newMajor, uint64_t newMinor, uint64_t newRevision, const juce::String& newCommitHash)
{
    programName.set (newProgramName);
    branchName.set (newBranchName);
    majorVersion.set ((int64_t) newMajor);
    minorVersion.set ((int64_t) newMinor);
    buildRevision.set ((int64_t) newRevision);
    commitHash.set (newCommitHash);
}

juce::String SoftwareVersion::versionNumberToString (const juce::String& separator) const
{
    return juce::String ((juce::uint64) getMajor()) + separator
         + juce::String ((juce::uint64) getMinor()) + separator
         + juce::String ((juce::uint64) getRevision());
}

juce::String SoftwareVersion::toString() const
{
    juce::String result = programName.get();
    if (branchName.isNotEmpty())
        result += (result.isEmpty() ? "" : "-") + branchName.get();
    if (result.isNotEmpty())
        result += "-";
    result += versionNumberToString (".");
    if (commitHash.isNotEmpty())
        result += "." + commitHash.get();
    if (targetPlatform.isNotEmpty())
        result += "-" + targetPlatform.get();
    return result;
}

bool SoftwareVersion::fromString (const juce::String& text)
{
    juce::StringArray tokens;
    tokens.addTokens (text, "-", {});
    programName.set (tokens[0]);
    branchName.set (tokens[1]);
    if (tokens.size() <= 2)
        return false;

    juce::StringArray numbers;
    numbers.addTokens (tokens[2], ".", {});
    majorVersion.set (numbers[0].getLargeIntValue());
    minorVersion.set (numbers[1].getLargeIntValue());
    buildRevision.set (numbers[2].getLargeIntValue());
    commitHash.set (numbers[3]);
    targetPlatform.set (tokens[3]);
    return numbers.size() >= 3;
}

bool SoftwareVersion::operator< (const SoftwareVersion& other) const noexcept
{
    if (getMajor() != other.getMajor())
        return getMajor() < other.getMajor();
    if (getMinor() != other.getMinor())
        return getMinor() < other.getMinor();
    return getRevision() < other.getRevision();
}

bool SoftwareVersion::operator== (const SoftwareVersion& other) const noexcept
{
    return getMajor() == other.getMajor() && getMinor() == other.getMinor() && getRevision() == other.getRevision();
}

bool SoftwareVersion::isLessOrEqualTo (uint64_t major, uint64_t minor) const noexcept
{
    return getMajor() < major || (getMajor() == major && getMinor() <= minor);
}

bool SoftwareVersion::isStable() const
{
    return branchName.get().containsOnly (".0123456789");
}

bool SoftwareVersion::isNull() const noexcept
{
    return getMajor() == 0 && getMinor() == 0 && getRevision() == 0;
}

bool SoftwareVersion::loadVariable (ObjectImporter& importer, juce::StringRef name)
{
    if (name == juce::StringRef ("revisionString"))
        return importer.load (commitHash);
    return Object::loadVariable (importer, name);
}

} // namespace tov
