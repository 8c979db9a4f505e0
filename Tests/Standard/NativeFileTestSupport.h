#pragma once

#include "ServiceTestSupport.h"
#include <gtest/gtest.h>

namespace tov::test
{

/** A fresh folder for each test, removed afterwards, and a context whose events the test reads
    as lines ("enter X", "error X", "leave"). */
class NativeFileFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder = juce::File::createTempFile ("nativeFile");
        ASSERT_TRUE (folder.createDirectory().wasOk());
        context.addView (new EventRecordingView (events));
    }

    void TearDown() override
    {
        folder.deleteRecursively();
    }

    /** A file in the folder with the text in it. */
    juce::File makeFile (const juce::String& relativePath, const juce::String& text = "content")
    {
        const auto file = folder.getChildFile (relativePath);
        file.getParentDirectory().createDirectory();
        EXPECT_TRUE (file.replaceWithText (text));
        return file;
    }

    juce::File folder;
    std::vector<juce::String> events;
    ExecutionContext context;
};

} // namespace tov::test
