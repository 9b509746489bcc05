#include "foundation/vd_log.h"

#include "foundation/vd_time_start.h"

#include <climits>

bool VDLogServer::m_initialized = false;
int VDLogServer::m_curMarginOffset = 0;
VDString VDLogServer::m_curMarginOffsetString;

void VDLogServer::init(bool) {
    m_initialized = true;
    ::gettimeofday(&s_startTimeVal, nullptr);
}

// The margin text is two blanks per unit, but never longer than kLongestMarginText: no
// text is ever shown, and a margin pushed to INT_MAX / 2 by a stray increment would
// otherwise build a string of gigabytes. The number itself is capped only so that
// arithmetic on it never overflows.
void VDLogServer::setMargin(long long margin) {
    constexpr int kLongestMarginText = 1024;
    if (margin > INT_MAX / 2) margin = INT_MAX / 2;
    if (margin < INT_MIN) margin = INT_MIN;
    m_curMarginOffset = static_cast<int>(margin);
    const int blanks =
        m_curMarginOffset > kLongestMarginText / 2 ? kLongestMarginText : 2 * m_curMarginOffset;
    m_curMarginOffsetString.create(blanks, ' ');
}

void VDLogServer::setMarginOffset(int n) {
    setMargin(n < 0 ? 0 : n);
}

void VDLogServer::incrMarginOffset(int n) {
    setMargin(static_cast<long long>(m_curMarginOffset) + n);
}

void VDLogServer::decrMarginOffset(int n) {
    const long long margin = static_cast<long long>(m_curMarginOffset) - n;
    setMargin(margin < 0 ? 0 : margin);
}

void VDLogBloc::start(const VDString& title, const VDString& name, int increment) {
    if (m_active) return;
    // A title line would be printed here; output is off.
    (void)title;
    VDLogServer::incrMarginOffset(2);
    m_active = true;
    m_increment = increment;
    m_title = name;
}

void VDLogBloc::start(int increment) {
    if (m_active) return;
    VDLogServer::incrMarginOffset(increment);
    m_active = true;
    m_increment = increment;
    m_title.clear();
}

void VDLogBloc::end() {
    if (!m_active) return;
    VDLogServer::decrMarginOffset(m_increment);
    // A closing line with the title would be printed here; output is off.
    m_active = false;
    m_increment = 0;
    m_title.clear();
}
