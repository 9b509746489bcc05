#include "foundation/vd_log.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

std::string margin() {
    return VDLogServer::m_curMarginOffsetString.c_str();
}

// Each margin operation and the offset and margin text it leaves, in sequence. Huge
// steps neither overflow nor wrap, and the text they would make stays short.
TEST(LogServer, MarginBookkeeping) {
    const struct {
        void (*op)(int);
        int amount, offset, textLength;
    } steps[] = {
        {VDLogServer::setMarginOffset, 3, 3, 6},
        {VDLogServer::setMarginOffset, -4, 0, 0},
        {VDLogServer::decrMarginOffset, 5, 0, 0},
        {VDLogServer::incrMarginOffset, -2, -2, 0},
        {VDLogServer::incrMarginOffset, 3, 1, 2},
        {VDLogServer::decrMarginOffset, 1, 0, 0},
        {VDLogServer::decrMarginOffset, INT_MIN, INT_MAX / 2, 1024},
        {VDLogServer::incrMarginOffset, INT_MAX, INT_MAX / 2, 1024},
        {VDLogServer::setMarginOffset, 512, 512, 1024},
        {VDLogServer::setMarginOffset, 0, 0, 0},
    };
    for (const auto& step : steps) {
        step.op(step.amount);
        EXPECT_EQ(VDLogServer::m_curMarginOffset, step.offset) << step.amount;
        EXPECT_EQ(margin(), std::string(step.textLength, ' ')) << step.amount;
    }
    // Inert output.
    VDLogServer::printLine(VDString("%s"), "ignored");
    VDLogServer::setLogFile(VDString("/nonexistent/log.txt"));
    VDLogServer::showLogWindow(true);
    VDLogServer::enableLogWindow(true);
    VDLogServer::clear();
    EXPECT_EQ(VDLogServer::m_curMarginOffset, 0);
}

TEST(LogBloc, TitledBlocksWidenByTwoAndNarrowByTheirIncrement) {
    VDLogServer::setMarginOffset(5);
    {
        VDLogBloc bloc;
        bloc.start(VDString("title"), VDString("name"), 3);
        EXPECT_EQ(VDLogServer::m_curMarginOffset, 7);
        EXPECT_TRUE(bloc.isActive() && bloc.getTitle() == VDString("name"));
        // A second start while active changes nothing.
        bloc.start(10);
        bloc.start(VDString("t"), VDString("other"), 9);
        EXPECT_EQ(VDLogServer::m_curMarginOffset, 7);
        EXPECT_EQ(bloc.getIncrement(), 3);
    } // the destructor ends it
    EXPECT_EQ(VDLogServer::m_curMarginOffset, 4);

    VDLogBloc plain;
    plain.start(4);
    EXPECT_EQ(VDLogServer::m_curMarginOffset, 8);
    EXPECT_TRUE(plain.getTitle().isEmpty());
    plain.end();
    plain.end();
    EXPECT_EQ(VDLogServer::m_curMarginOffset, 4);
    EXPECT_TRUE(!plain.isActive() && plain.getIncrement() == 0);

    // The end clamps at 0.
    VDLogServer::setMarginOffset(0);
    VDLogBloc big;
    big.start(VDString(), VDString("b"), 9);
    big.end();
    EXPECT_EQ(VDLogServer::m_curMarginOffset, 0);
}

TEST(TimeService, InitClockAndSleep) {
    s_startTimeVal = {0, 0};
    VDLogServer::init(false);
    EXPECT_TRUE(VDLogServer::m_initialized);
    EXPECT_GT(s_startTimeVal.tv_sec, 0) << "init records the start time";
    const int before = VDTimeService::getCurTimeInMS();
    EXPECT_GE(before, 0);
    EXPECT_GE(VDTimeService::getCurTimeInMS(), before);
    VDTimeService::sleep(0);
    VDTimeService::sleep(2);
}

} // namespace
