#include <Tov/Network/FrameReader.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace tov;

namespace
{
constexpr juce::uint32 magic = 0xf2b49e2c;

std::string frame (const std::string& block, juce::uint32 magicNumber = magic)
{
    std::string bytes (FrameReader::headerSize, '\0');
    FrameReader::writeHeader (magicNumber, (juce::uint32) block.size(), bytes.data());
    return bytes + block;
}

std::string header (juce::uint32 magicNumber, juce::uint32 size)
{
    std::string bytes (FrameReader::headerSize, '\0');
    FrameReader::writeHeader (magicNumber, size, bytes.data());
    return bytes;
}

class FrameReaderTest : public ::testing::Test
{
protected:
    FrameReader reader { magic };
    std::vector<std::string> blocks;

    FrameReader::Result read (const std::string& bytes)
    {
        return reader.read (bytes.data(), bytes.size(), [this] (const juce::MemoryBlock& block)
        {
            blocks.emplace_back (static_cast<const char*> (block.getData()), block.getSize());
        });
    }
};
} // namespace

TEST_F (FrameReaderTest, TheHeaderIsTheMagicNumberThenTheSizeLittleEndian)
{
    EXPECT_EQ (header (magic, 0x01020304), std::string ("\x2c\x9e\xb4\xf2\x04\x03\x02\x01", 8));
}

TEST_F (FrameReaderTest, FramesInOnePieceGiveTheirBlocksInOrder)
{
    EXPECT_EQ (read (frame ("first") + frame ("second block") + frame ("3")), FrameReader::Result::ok);
    EXPECT_EQ (blocks, (std::vector<std::string> { "first", "second block", "3" }));
    EXPECT_FALSE (reader.isInsideFrame());
}

TEST_F (FrameReaderTest, FramesByteByByteGiveTheSameBlocks)
{
    const auto bytes = frame ("first") + frame (std::string (1000, 'x')) + frame ("last");
    for (char byte : bytes)
        ASSERT_EQ (read (std::string (1, byte)), FrameReader::Result::ok);
    EXPECT_EQ (blocks, (std::vector<std::string> { "first", std::string (1000, 'x'), "last" }));
}

TEST_F (FrameReaderTest, ABlockLargerThanTheFirstPieceArrivesWhole)
{
    std::string block (300000, '\0');
    for (size_t i = 0; i < block.size(); ++i)
        block[i] = (char) (i * 7);
    const auto bytes = frame (block);
    for (size_t start = 0; start < bytes.size(); start += 4099)
        ASSERT_EQ (read (bytes.substr (start, 4099)), FrameReader::Result::ok);
    ASSERT_EQ (blocks.size(), 1u);
    EXPECT_EQ (blocks[0], block);
}

TEST_F (FrameReaderTest, AnEmptyBlockIsSkipped)
{
    EXPECT_EQ (read (frame ("") + frame ("after")), FrameReader::Result::ok);
    EXPECT_EQ (blocks, (std::vector<std::string> { "after" }));
}

TEST_F (FrameReaderTest, AFrameCutShortIsHeldAndNotDelivered)
{
    EXPECT_EQ (read (frame ("whole") + frame ("cut in the middle").substr (0, 14)), FrameReader::Result::ok);
    EXPECT_EQ (blocks, (std::vector<std::string> { "whole" }));
    EXPECT_TRUE (reader.isInsideFrame());
}

TEST_F (FrameReaderTest, AWrongMagicNumberStopsTheReader)
{
    EXPECT_EQ (read (frame ("good") + frame ("bad", 0x12345678) + frame ("never")), FrameReader::Result::wrongMagicNumber);
    EXPECT_EQ (blocks, (std::vector<std::string> { "good" }));
    EXPECT_EQ (read (frame ("later")), FrameReader::Result::wrongMagicNumber);
    EXPECT_EQ (blocks.size(), 1u);
}

TEST_F (FrameReaderTest, ASizeAboveTheLimitStopsTheReaderWithoutRoom)
{
    EXPECT_EQ (read (header (magic, 0x80000000u) + "abc"), FrameReader::Result::blockTooLarge);
    EXPECT_TRUE (blocks.empty());
    EXPECT_EQ (reader.getRoomHeld(), 0u);
}

TEST_F (FrameReaderTest, TheLimitItselfIsAllowed)
{
    FrameReader small (magic, 4);
    std::vector<std::string> received;
    const auto bytes = frame ("four") + frame ("fives");
    const auto result = small.read (bytes.data(), bytes.size(), [&] (const juce::MemoryBlock& b)
    {
        received.emplace_back (static_cast<const char*> (b.getData()), b.getSize());
    });
    EXPECT_EQ (result, FrameReader::Result::blockTooLarge);
    EXPECT_EQ (received, (std::vector<std::string> { "four" }));
}

TEST_F (FrameReaderTest, RoomForAHugeBlockGrowsOnlyWithItsBytes)
{
    EXPECT_EQ (read (header (magic, 200u * 1024 * 1024) + std::string (100, 'a')), FrameReader::Result::ok);
    EXPECT_EQ (reader.getRoomHeld(), 64u * 1024);
    EXPECT_EQ (read (std::string (70000, 'b')), FrameReader::Result::ok);
    EXPECT_EQ (reader.getRoomHeld(), 128u * 1024);
    EXPECT_TRUE (blocks.empty());
}

TEST_F (FrameReaderTest, ASmallBlockGetsExactlyItsRoom)
{
    EXPECT_EQ (read (header (magic, 10) + "abc"), FrameReader::Result::ok);
    EXPECT_EQ (reader.getRoomHeld(), 10u);
}
