#pragma once

#include "../Atomic/PositiveInteger.h"
#include "../Atomic/String.h"
#include <cstdint>

namespace tov
{

/** One build of one program: "tool-main-3.2.117.abc123-linux64".

    Ordered by major, minor and revision only: two builds of the same numbers
    on different branches are equal in order. The text form also serves as a
    file name.
*/
class SoftwareVersion : public Object
{
public:
    TOV_DECLARE_CLASS (SoftwareVersion, Object)

    SoftwareVersion() = default;
    SoftwareVersion (const juce::String& programName, const juce::String& branchName,
                     uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash);
    SoftwareVersion (const SoftwareVersion&) = default;
    SoftwareVersion& operator= (const SoftwareVersion& other);

    /** Everything but the target platform, which stays as it is. */
    void set (const juce::String& programName, const juce::String& branchName,
              uint64_t majorVersion, uint64_t minorVersion, uint64_t buildRevision, const juce::String& commitHash);

    /** major, separator, minor, separator, revision. */
    juce::String versionNumberToString (const juce::String& separator) const;
    /** program-branch-major.minor.revision.commit-platform, leaving out what is empty. */
    juce::String toString() const override;
    juce::String getFriendlyName() const override     { return versionNumberToString ("."); }
    /** Reads the form of toString; true when the numbers part had at least three numbers. */
    bool fromString (const juce::String& text);
    static juce::String getWildcardString()           { return "*-*-*.*.*.*"; }

    bool operator< (const SoftwareVersion& other) const noexcept;
    bool operator== (const SoftwareVersion& other) const noexcept;
    bool operator!= (const SoftwareVersion& other) const noexcept { return ! operator== (other); }
    /** Major below, or major equal and minor at most. */
    bool isLessOrEqualTo (uint64_t major, uint64_t minor) const noexcept;
    /** A branch named only with digits and dots, or none, is a stable one. */
    bool isStable() const;
    bool isBeta() const                               { return ! isStable(); }
    /** 0.0.0. */
    bool isNull() const noexcept;

    //==============================================================================
    String& getProgramName() noexcept                 { return programName; }
    const String& getProgramName() const noexcept     { return programName; }
    String& getBranchName() noexcept                  { return branchName; }
    const String& getBranchName() const noexcept      { return branchName; }
    PositiveInteger& getMajorVersion() noexcept       { return majorVersion; }
    const PositiveInteger& getMajorVersion() const noexcept { return majorVersion; }
    PositiveInteger& getMinorVersion() noexcept       { return minorVersion; }
    const PositiveInteger& getMinorVersion() const noexcept { return minorVersion; }
    PositiveInteger& getBuildRevision() noexcept      { return buildRevision; }
    const PositiveInteger& getBuildRevision() const noexcept { return buildRevision; }
    String& getCommitHash() noexcept                  { return commitHash; }
    const String& getCommitHash() const noexcept      { return commitHash; }
    String& getTargetPlatform() noexcept              { return targetPlatform; }
    const String& getTargetPlatform() const noexcept  { return targetPlatform; }

    /** Files of older versions named the commit hash "revisionString". */
    bool loadVariable (ObjectImporter& importer, juce::StringRef name) override;

private:
    String programName;
    String branchName;
    PositiveInteger majorVersion;
    PositiveInteger minorVersion;
    PositiveInteger buildRevision;
    String commitHash;
    String targetPlatform;

    uint64_t getMajor() const noexcept                { return (uint64_t) majorVersion.get(); }
    uint64_t getMinor() const noexcept                { return (uint64_t) minorVersion.get(); }
    uint64_t getRevision() const noexcept             { return (uint64_t) buildRevision.get(); }
};

} // namespace tov
