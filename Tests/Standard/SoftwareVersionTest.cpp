#include <Tov/Core/Class.h>
#include <Tov/Core/State.h>
#include <Tov/Standard/SoftwareVersion.h>
#include <Tov/Standard/ToStringExecutionContext.h>
#include <gtest/gtest.h>

using namespace tov;

namespace
{
SoftwareVersion numbers (uint64_t major, uint64_t minor, uint64_t revision)
{
    return SoftwareVersion ({}, {}, major, minor, revision, {});
}
} // namespace

TEST (SoftwareVersionTest, IsAReflectedClassWithSevenVariablesInOrder)
{
    SoftwareVersion version;
    EXPECT_EQ (version.getClassName(), "SoftwareVersion");
    ASSERT_EQ (version.getNumVariables(), 7u);
    const char* names[] = { "programName", "branchName", "majorVersion", "minorVersion", "buildRevision", "commitHash", "targetPlatform" };
    const char* classes[] = { "String", "String", "PositiveInteger", "PositiveInteger", "PositiveInteger", "String", "String" };
    for (size_t i = 0; i < 7; ++i)
    {
        EXPECT_EQ (version.getVariableSignature (i)->getName(), names[i]);
        EXPECT_EQ (version.getVariable (i)->getClassName(), classes[i]);
    }
}

TEST (SoftwareVersionTest, VariablesCarryTheirJsonIdentifiers)
{
    SoftwareVersion version;
    const char* identifiers[] = { "\"program\"", "\"branch\"", "\"major\"", "\"minor\"", "\"revision\"", "\"commit\"", "\"platform\"" };
    for (size_t i = 0; i < 7; ++i)
    {
        auto attribute = version.getVariableSignature (i)->getAttribute ("jsonIdentifier");
        ASSERT_NE (attribute, nullptr);
        EXPECT_EQ (attribute->toString(), identifiers[i]);
    }
}

TEST (SoftwareVersionTest, ConstructorAndSetLeaveThePlatformAlone)
{
    SoftwareVersion version ("tool", "main", 3, 2, 117, "abc123");
    EXPECT_EQ (version.getProgramName().get(), "tool");
    EXPECT_EQ (version.getBranchName().get(), "main");
    EXPECT_EQ (version.getMajorVersion().get(), 3);
    EXPECT_EQ (version.getMinorVersion().get(), 2);
    EXPECT_EQ (version.getBuildRevision().get(), 117);
    EXPECT_EQ (version.getCommitHash().get(), "abc123");
    EXPECT_EQ (version.getTargetPlatform().get(), "");

    version.getTargetPlatform().set ("linux64");
    version.set ("other", "beta", 4, 0, 1, "def");
    EXPECT_EQ (version.toString(), "other-beta-4.0.1.def-linux64");
}

TEST (SoftwareVersionTest, VersionNumberToStringUsesTheSeparator)
{
    const SoftwareVersion version ("tool", "main", 3, 2, 117, "abc123");
    EXPECT_EQ (version.versionNumberToString ("."), "3.2.117");
    EXPECT_EQ (version.versionNumberToString ("_"), "3_2_117");
    EXPECT_EQ (version.versionNumberToString (""), "32117");
    EXPECT_EQ (version.getFriendlyName(), "3.2.117");
}

TEST (SoftwareVersionTest, ToStringLeavesOutWhatIsEmpty)
{
    EXPECT_EQ (numbers (1, 2, 3).toString(), "1.2.3");
    EXPECT_EQ (SoftwareVersion ("tool", {}, 1, 2, 3, {}).toString(), "tool-1.2.3");
    EXPECT_EQ (SoftwareVersion ({}, "main", 1, 2, 3, {}).toString(), "main-1.2.3");
    EXPECT_EQ (SoftwareVersion ("tool", "main", 1, 2, 3, {}).toString(), "tool-main-1.2.3");
    EXPECT_EQ (SoftwareVersion ({}, {}, 1, 2, 3, "abc").toString(), "1.2.3.abc");

    SoftwareVersion withPlatform ({}, {}, 1, 2, 3, {});
    withPlatform.getTargetPlatform().set ("win64");
    EXPECT_EQ (withPlatform.toString(), "1.2.3-win64");
}

TEST (SoftwareVersionTest, FromStringReadsEveryPart)
{
    SoftwareVersion version;
    EXPECT_TRUE (version.fromString ("tool-main-3.2.117.abc123-win64"));
    EXPECT_EQ (version.getProgramName().get(), "tool");
    EXPECT_EQ (version.getBranchName().get(), "main");
    EXPECT_EQ (version.versionNumberToString ("."), "3.2.117");
    EXPECT_EQ (version.getCommitHash().get(), "abc123");
    EXPECT_EQ (version.getTargetPlatform().get(), "win64");
    EXPECT_EQ (version.toString(), "tool-main-3.2.117.abc123-win64");
}

TEST (SoftwareVersionTest, FromStringWithoutNumbersFailsAndKeepsTheNumbers)
{
    SoftwareVersion version ("old", "old", 7, 8, 9, "old");
    EXPECT_FALSE (version.fromString ("tool-main"));
    EXPECT_EQ (version.getProgramName().get(), "tool");
    EXPECT_EQ (version.getBranchName().get(), "main");
    EXPECT_EQ (version.versionNumberToString ("."), "7.8.9");
    EXPECT_EQ (version.getCommitHash().get(), "old");

    EXPECT_FALSE (version.fromString ("tool"));
    EXPECT_EQ (version.getBranchName().get(), "");
}

TEST (SoftwareVersionTest, FromStringWithTwoNumbersSetsThemButFails)
{
    SoftwareVersion version ("a", "b", 7, 8, 9, "c");
    version.getTargetPlatform().set ("p");
    EXPECT_FALSE (version.fromString ("tool-main-4.5"));
    EXPECT_EQ (version.versionNumberToString ("."), "4.5.0");
    EXPECT_EQ (version.getCommitHash().get(), "");
    EXPECT_EQ (version.getTargetPlatform().get(), "");
}

TEST (SoftwareVersionTest, OrderIsByMajorMinorAndRevisionOnly)
{
    EXPECT_TRUE (numbers (1, 9, 9) < numbers (2, 0, 0));
    EXPECT_TRUE (numbers (2, 0, 9) < numbers (2, 1, 0));
    EXPECT_TRUE (numbers (2, 1, 0) < numbers (2, 1, 1));
    EXPECT_FALSE (numbers (2, 1, 1) < numbers (2, 1, 1));
    EXPECT_FALSE (numbers (3, 0, 0) < numbers (2, 9, 9));

    const SoftwareVersion main ("tool", "main", 1, 2, 3, "abc");
    const SoftwareVersion feature ("other", "feature", 1, 2, 3, "def");
    EXPECT_TRUE (main == feature);
    EXPECT_FALSE (main < feature);
    EXPECT_FALSE (feature < main);
    EXPECT_TRUE (main != numbers (1, 2, 4));
}

TEST (SoftwareVersionTest, IsLessOrEqualToComparesMajorAndMinor)
{
    const auto version = numbers (3, 2, 117);
    EXPECT_TRUE (version.isLessOrEqualTo (4, 0));
    EXPECT_TRUE (version.isLessOrEqualTo (3, 2));
    EXPECT_TRUE (version.isLessOrEqualTo (3, 5));
    EXPECT_FALSE (version.isLessOrEqualTo (3, 1));
    EXPECT_FALSE (version.isLessOrEqualTo (2, 9));
}

TEST (SoftwareVersionTest, StableBranchesAreMadeOfDigitsAndDots)
{
    EXPECT_TRUE (SoftwareVersion ({}, "2024.1", 1, 0, 0, {}).isStable());
    EXPECT_FALSE (SoftwareVersion ({}, "2024.1", 1, 0, 0, {}).isBeta());
    EXPECT_TRUE (SoftwareVersion ({}, "feature", 1, 0, 0, {}).isBeta());
    EXPECT_FALSE (SoftwareVersion ({}, "feature", 1, 0, 0, {}).isStable());
    EXPECT_TRUE (SoftwareVersion ({}, {}, 1, 0, 0, {}).isStable()) << "an empty branch is stable";
    EXPECT_TRUE (SoftwareVersion ({}, "2024-1", 1, 0, 0, {}).isBeta());
}

TEST (SoftwareVersionTest, NullMeansAllNumbersZero)
{
    EXPECT_TRUE (SoftwareVersion().isNull());
    EXPECT_TRUE (SoftwareVersion ("tool", "main", 0, 0, 0, "abc").isNull());
    EXPECT_FALSE (numbers (0, 0, 1).isNull());
    EXPECT_FALSE (numbers (0, 1, 0).isNull());
    EXPECT_FALSE (numbers (1, 0, 0).isNull());
}

TEST (SoftwareVersionTest, WildcardString)
{
    EXPECT_EQ (SoftwareVersion::getWildcardString(), "*-*-*.*.*.*");
    EXPECT_TRUE (juce::String ("tool-main-3.2.117.abc123").matchesWildcard (SoftwareVersion::getWildcardString(), false));
    EXPECT_FALSE (juce::String ("tool-3.2.117").matchesWildcard (SoftwareVersion::getWildcardString(), false));
}

TEST (SoftwareVersionTest, StateFormRoundTrips)
{
    SoftwareVersion version ("tool", "main", 3, 2, 117, "abc123");
    version.getTargetPlatform().set ("linux64");
    const auto state = version.makeState();
    EXPECT_EQ (state->saveToString().trim(), "{\n  programName = \"tool\", \n  branchName = \"main\", \n  majorVersion = 3, \n  minorVersion = 2, \n"
                                         "  buildRevision = 117, \n  commitHash = \"abc123\", \n  targetPlatform = \"linux64\"\n}");

    SoftwareVersion loaded;
    juce::String messages;
    ToStringExecutionContext context (messages);
    ASSERT_TRUE (loaded.loadFromState (context, state));
    EXPECT_EQ (loaded.toString(), "tool-main-3.2.117.abc123-linux64");
    EXPECT_EQ (messages, "");
}

TEST (SoftwareVersionTest, OldRevisionStringLoadsIntoTheCommitHash)
{
    SoftwareVersion loaded;
    juce::String messages;
    ToStringExecutionContext context (messages);
    ASSERT_TRUE (loaded.loadFromState (context, State::createFromStateString (context, "{majorVersion = 1, revisionString = \"f00d\"}", "test")));
    EXPECT_EQ (messages, "");
    EXPECT_EQ (loaded.getCommitHash().get(), "f00d");
    EXPECT_EQ (loaded.versionNumberToString ("."), "1.0.0");
}

TEST (SoftwareVersionTest, CopiesAndAssignmentsTakeEveryPart)
{
    SoftwareVersion version ("tool", "main", 3, 2, 117, "abc123");
    version.getTargetPlatform().set ("linux64");
    SoftwareVersion copy (version);
    EXPECT_EQ (copy.toString(), "tool-main-3.2.117.abc123-linux64");
    SoftwareVersion assigned;
    assigned = version;
    EXPECT_EQ (assigned.toString(), "tool-main-3.2.117.abc123-linux64");
    std::unique_ptr<Object> clone (version.clone());
    ASSERT_NE (clone, nullptr);
    EXPECT_EQ (clone->toString(), "tool-main-3.2.117.abc123-linux64");
}
