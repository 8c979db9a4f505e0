#pragma once

#include "ServiceTestSupport.h"
#include "Support/ScratchDirectory.h"
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
        context.addView (new EventRecordingView (events));
    }

    /** A file in the folder with the text in it. */
    juce::File makeFile (const juce::String& relativePath, const juce::String& text = "content")
    {
        const auto file = folder.getChildFile (relativePath);
        file.getParentDirectory().createDirectory();
        EXPECT_TRUE (file.replaceWithText (text));
        return file;
    }

    ScratchDirectory scratch;
    const juce::File folder = scratch.getFile();
    std::vector<juce::String> events;
    ExecutionContext context;
};

} // namespace tov::test
