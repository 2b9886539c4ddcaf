#include "frame/FrameTestSupport.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iStreamHandler.h>
#include <iModelStage/frame/iValueTypes.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

typedef std::map<std::string, int> Codes;

// A buffer that cannot seek, so a reader cannot tell how much is left.
struct NoSeekBuffer : std::streambuf {
    explicit NoSeekBuffer(std::string bytes) : bytes(std::move(bytes))
    {
        setg(&this->bytes[0], &this->bytes[0], &this->bytes[0] + this->bytes.size());
    }
    std::string bytes;
};

// A reader over hand-made bytes.
template <class Buffer = iMemoryBuffer>
struct Reader {
    explicit Reader(std::string const& bytes) : buffer(bytes), in(&buffer) {}
    Buffer buffer;
    iInStream in;
};

} // namespace

TEST(StreamTest, PrimitivesHaveTheirFixedBytes)
{
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    out.writeInt(0x01020304);
    out.writeLong(-2);
    out.writeDouble(1.5);
    out.writeBool(true);
    out.writeString("ab");
    out.writeString("");
    std::string const onePointFive("\x00\x00\x00\x00\x00\x00\xf8\x3f", 8);
    EXPECT_EQ(buffer.str(), "\x04\x03\x02\x01" + i32(-2) + onePointFive + "\x01" + str("ab") + str(""));
    iInStream in(&buffer);
    EXPECT_EQ(in.readInt(), 0x01020304);
    EXPECT_EQ(in.readLong(), -2L);
    EXPECT_EQ(in.readDouble(), 1.5);
    EXPECT_TRUE(in.readBool());
    EXPECT_EQ(in.readString(), "ab");
    EXPECT_EQ(in.readString(), "");
    EXPECT_THROW(in.readBool(), std::exception);
    EXPECT_TRUE(Reader<>("\x7f").in.readBool());
}

TEST(StreamTest, ShortStreamsAndLyingLengthsFail)
{
    Reader<> shortInt("\x01\x02\x03");
    EXPECT_THROW(shortInt.in.readInt(), std::exception);
    EXPECT_FALSE(shortInt.in.good());
    // Two billion bytes claimed, three present, whether the stream can seek or not.
    std::string const lying = i32(2000000000) + "abc";
    EXPECT_THROW(Reader<>(lying).in.readString(), std::exception);
    EXPECT_THROW(Reader<NoSeekBuffer>(lying).in.readString(), std::exception);
    EXPECT_THROW(Reader<>(i32(-1) + "abc").in.readString(), std::exception);

    EXPECT_THROW(Reader<>(i32(1000000000) + std::string(16, 'x')).in.readCount(4), std::exception);
    EXPECT_THROW(Reader<>(i32(-3) + std::string(16, 'x')).in.readCount(4), std::exception);
    EXPECT_EQ(Reader<>(i32(2) + std::string(8, 'x')).in.readCount(4), 2);
    EXPECT_EQ(Reader<>(i32(2000) + std::string(8000, 'x')).in.readCount(4), 2000);
}

TEST(StreamTest, StringEndingAtTheStreamEndReads)
{
    std::string const big(5000, 'q');
    for (std::string const& text : {std::string("abc"), big}) {
        Reader<> memory(str(text));
        EXPECT_EQ(memory.in.readString(), text);
        EXPECT_THROW(memory.in.readInt(), std::exception);
        EXPECT_EQ(Reader<NoSeekBuffer>(str(text)).in.readString(), text);
        // One byte short of its length.
        EXPECT_THROW(Reader<>(str(text).substr(0, 3 + text.size())).in.readString(), std::exception);
    }
}

TEST(StreamHandlerTest, ColourAndMapListForms)
{
    ASSERT_NE(iStreamHandler::getReadHandler("iColor4"), nullptr);
    ASSERT_NE(iStreamHandler::getReadHandler("iMapList"), nullptr);
    EXPECT_EQ(iStreamHandler::getReadHandler("tNoSuchType"), nullptr);
    iColor4 colour(0.1f, 0.5f, 1.0f, 0.25f);
    iMapList list(Codes{{"zeta", 3}, {"alpha", -1}}, 3, "");
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    iStreamHandler::getWriteHandler("iColor4")(out, &colour);
    iStreamHandler::getWriteHandler("iMapList")(out, &list);
    // Doubles of the float components; entries in key order.
    EXPECT_EQ(buffer.str(), f64(static_cast<double>(0.1f)) + f64(0.5) + f64(1.0) + f64(0.25) + i32(2) +
                                str("alpha") + i32(-1) + str("zeta") + i32(3) + i32(3));

    iInStream in(&buffer);
    iColor4 colourBack;
    iMapList listBack(Codes{{"stale", 9}}, 0, "");
    iStreamHandler::getReadHandler("iColor4")(in, &colourBack);
    iStreamHandler::getReadHandler("iMapList")(in, &listBack);
    EXPECT_EQ(colourBack, colour);
    EXPECT_FALSE(listBack != list);
    Reader<> lying(i32(1000000000) + str("a") + i32(1));
    EXPECT_THROW(iStreamHandler::getReadHandler("iMapList")(lying.in, &listBack), std::exception);
}
