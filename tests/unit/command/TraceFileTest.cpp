#include "command/TraceFile.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "CaptureReader.h"
#include "comm/DevCommBaseUnit.h"
#ifndef _WIN32
#include "tests/support/FileLimit.h"
#endif
#include "tests/support/ScratchFolder.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

using std::chrono::microseconds;
using std::chrono::system_clock;
using namespace std::string_literals;

// 2 January 2024, 03:04:05.678901 UTC; in hexadecimal 60DEDC0582F35.
constexpr system_clock::time_point kMoment{microseconds(1'704'164'645'678'901)};

system_clock::time_point AtThatMoment() {
    return kMoment;
}

const TCmdBuffer kVersionRequest = {0x04, 0x0D, 0x14, 0x5C, 0x5C, 0x03};

TTracedScale Scale(std::int32_t number, std::string_view name) {
    return {number, std::string(name), "TCP (h:1)", 1, 2};
}

// The blocks by hand. All have their length at either end.
const std::string kSection =
    "\x0A\x0D\x0D\x0A"
    "\x2C\0\0\0"
    "\x4D\x3C\x2B\x1A"
    "\x01\0\0\0"
    "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
    "\x04\0\x07\0tolvane\0"
    "\0\0\0\0"
    "\x2C\0\0\0"s;
const std::string kScale3 =
    "\x01\0\0\0"
    "\x34\0\0\0"
    "\x93\0\0\0"
    "\0\0\0\0"
    "\x02\0\x07\0scale 3\0"
    "\x03\0\x09\0TCP (h:1)\0\0\0"
    "\0\0\0\0"
    "\x34\0\0\0"s;
const std::string kRequest =
    "\x06\0\0\0"
    "\x40\0\0\0"
    "\0\0\0\0"
    "\xED\x0D\x06\0"
    "\x35\x2F\x58\xC0"
    "\x12\0\0\0"
    "\x12\0\0\0"
    "\x01\x01\0\0"
    "\x03\0\0\0"
    "\x02\0\0\0"
    "\x04\x0D\x14\x5C\x5C\x03\0\0"
    "\x02\0\x04\0\x02\0\0\0"
    "\0\0\0\0"
    "\x40\0\0\0"s;

class TraceFileTest : public testing::Test {
protected:
    TScratchFolder folder_;
    std::filesystem::path path_ = folder_ / "run.pcapng";
};

TEST_F(TraceFileTest, EachBlockIsInTheFileAtOnce) {
    TTraceFile trace(path_, AtThatMoment);
    EXPECT_EQ(GetFile(path_), kSection);
    EXPECT_EQ(trace.AddScale(Scale(3, "")), 0U);
    EXPECT_EQ(GetFile(path_), kSection + kScale3);
    trace.Add(0, {TTraceDirection::Request, 0, kVersionRequest, ""});
    EXPECT_EQ(GetFile(path_), kSection + kScale3 + kRequest);
}

TEST_F(TraceFileTest, AFailureIsTheCommentOfItsPacket) {
    TTraceFile trace(path_, AtThatMoment);
    trace.AddScale(Scale(3, ""));
    trace.Add(0, {TTraceDirection::Reply, 2, {}, "Изтече"_cp1251});
    const std::string packet =
        "\x06\0\0\0"
        "\x48\0\0\0"
        "\0\0\0\0"
        "\xED\x0D\x06\0"
        "\x35\x2F\x58\xC0"
        "\x0C\0\0\0"
        "\x0C\0\0\0"
        "\x01\x01\x01\x02"
        "\x03\0\0\0"
        "\x02\0\0\0"
        "\x01\0\x0C\0\xD0\x98\xD0\xB7\xD1\x82\xD0\xB5\xD1\x87\xD0\xB5"
        "\x02\0\x04\0\x01\0\0\0"
        "\0\0\0\0"
        "\x48\0\0\0"s;
    EXPECT_EQ(GetFile(path_), kSection + kScale3 + packet);
}

TEST_F(TraceFileTest, AScaleIsNamedInUtf8) {
    TTraceFile trace(path_, AtThatMoment);
    trace.AddScale(Scale(60, "Щанд"_cp1251));
    EXPECT_NE(GetFile(path_).find("\x02\0\x11\0scale 60 \xD0\xA9\xD0\xB0\xD0\xBD\xD0\xB4\0\0\0"s),
              std::string::npos);
}

TEST_F(TraceFileTest, AScaleIsDescribedOnce) {
    TTraceFile trace(path_, AtThatMoment);
    EXPECT_EQ(trace.AddScale(Scale(3, "a")), 0U);
    EXPECT_EQ(trace.AddScale(Scale(4, "a")), 1U);
    EXPECT_EQ(trace.AddScale(Scale(3, "a")), 0U);
    EXPECT_EQ(test::ReadCapture(path_).interfaces.size(), 2U);
}

TEST_F(TraceFileTest, NumbersAndCodeTablesOutOfTheOrdinaryAreKept) {
    TTraceFile trace(path_, AtThatMoment);
    TTracedScale scale = Scale(-2, "");
    for (const std::int32_t table : {-1, 0, 3, 256}) {
        scale.codeTable = table;
        trace.Add(trace.AddScale(scale), {TTraceDirection::Reply, 4, {}, ""});
    }
    const auto packets = test::ReadCapture(path_).packets;
    ASSERT_EQ(packets.size(), 4U);
    EXPECT_EQ(packets[0].content, "\x01\x01\x01\x04\xFE\xFF\xFF\xFF\xFF\0\0\0"s);
    EXPECT_EQ(packets[1].content, "\x01\x01\x01\x04\xFE\xFF\xFF\xFF\0\0\0\0"s);
    EXPECT_EQ(packets[2].content, "\x01\x01\x01\x04\xFE\xFF\xFF\xFF\xFF\0\0\0"s);
    EXPECT_EQ(packets[3].content, "\x01\x01\x01\x04\xFE\xFF\xFF\xFF\xFF\0\0\0"s);
}

TEST_F(TraceFileTest, AFileThatCannotBeMadeIsNamedWithTheSystemsWords) {
    const std::filesystem::path file = folder_ / "missing" / "run.pcapng";
    try {
        const TTraceFile trace(file, AtThatMoment);
        FAIL() << "the file was made";
    } catch (const TFailure& failure) {
#ifdef _WIN32
        const std::string words = "Path not found (3)";
#else
        const std::string words = "No such file or directory (2)";
#endif
        EXPECT_EQ(failure.Text(), "The trace file " + file.string() + " cannot be made: " + words);
    }
}

#ifndef _WIN32
// Linux has a disk that is always full.
TEST_F(TraceFileTest, AFullDiskIsToldWhenTheFileIsMade) {
    try {
        const TTraceFile trace("/dev/full", AtThatMoment);
        FAIL() << "the file was made";
    } catch (const TFailure& failure) {
        EXPECT_EQ(failure.Text(),
                  "The trace file /dev/full cannot be made: No space left on device (28)");
    }
}

TEST_F(TraceFileTest, WhatCannotBeWrittenEndsTheTraceAndIsToldOnce) {
    TTraceFile trace(path_, AtThatMoment);
    trace.AddScale(Scale(3, ""));
    EXPECT_EQ(trace.TakeFailure(), std::nullopt);
    {
        const test::TFileLimit limit(kSection.size() + kScale3.size() + kRequest.size() + 5);
        trace.Add(0, {TTraceDirection::Request, 0, kVersionRequest, ""});
        EXPECT_EQ(trace.TakeFailure(), std::nullopt);
        trace.Add(0, {TTraceDirection::Request, 0, kVersionRequest, ""});
    }
    // There is room again, and yet nothing more is written.
    trace.Add(0, {TTraceDirection::Request, 0, kVersionRequest, ""});
    EXPECT_EQ(trace.AddScale(Scale(4, "")), 1U);
    trace.Add(1, {TTraceDirection::Request, 0, kVersionRequest, ""});
    EXPECT_EQ(GetFile(path_), kSection + kScale3 + kRequest);
    EXPECT_EQ(trace.TakeFailure(), "The trace ends early, as " + path_.string() +
                                       " cannot be written: File too large (27)");
    EXPECT_EQ(trace.TakeFailure(), std::nullopt);
}
#endif

TEST_F(TraceFileTest, ThreadsShareATrace) {
    constexpr std::size_t kThreads = 8;
    constexpr std::size_t kPackets = 200;
    std::int64_t ticks = 0;  // the trace asks for one time after the other
    TTraceFile trace(path_, [&] { return system_clock::time_point(microseconds(++ticks)); });
    std::vector<std::thread> threads;
    for (std::size_t n = 0; n < kThreads; ++n) {
        threads.emplace_back([&trace, n] {
            const std::uint32_t scale = trace.AddScale(Scale(static_cast<std::int32_t>(n), ""));
            const TCmdBuffer bytes(n + 1, static_cast<std::uint8_t>(n));
            for (std::size_t i = 0; i < kPackets; ++i)
                trace.Add(scale, {TTraceDirection::Request, 0, bytes, ""});
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const test::TCapture capture = test::ReadCapture(path_);
    EXPECT_EQ(capture.interfaces.size(), kThreads);
    ASSERT_EQ(capture.packets.size(), kThreads * kPackets);
    std::vector<std::size_t> counts(kThreads);
    for (std::size_t i = 0; i < capture.packets.size(); ++i) {
        const test::TCapturedPacket& packet = capture.packets[i];
        EXPECT_EQ(packet.microseconds, i + 1);
        const auto n = static_cast<std::size_t>(packet.content.at(4));
        EXPECT_EQ(packet.content.substr(12), std::string(n + 1, static_cast<char>(n)));
        ++counts.at(n);
    }
    EXPECT_EQ(counts, std::vector<std::size_t>(kThreads, kPackets));
}

}  // namespace
}  // namespace tolvane
